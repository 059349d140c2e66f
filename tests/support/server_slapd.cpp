#include "support/server_slapd.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "support/server_certificate.h"
#include "support/server_raw_line.h"

namespace vantry::server::test {

namespace {

constexpr const char* program = "/usr/sbin/slapd";
constexpr const char* people = "ou=people,dc=library,dc=example";

/// `name` as it is, and as a name of an entry needs it.
std::string person(const std::string& name, const std::string& escaped, const std::string& parent = people) {
  return "dn: uid=" + escaped + "," + parent + "\nobjectClass: inetOrgPerson\nuid: " + name +
         "\ncn: x\nsn: x\nuserPassword: house-" + name + "\n\n";
}

}  // namespace

bool Slapd::isInstalled() {
  return access(program, X_OK) == 0;
}

Slapd::Slapd(Tls tls) : tls_(tls) {
  {
    const FreePort one, other;  // both held, so that the ports differ
    port_ = one.number();
    sealedPort_ = other.number();
  }
  for (const char* name : {"house", "other"}) makeCertificate(folder_, name, "IP:127.0.0.1");
  run("mkdir data && cp " + std::string(program) + " slapd");  // a copy, which AppArmor does not confine
  write(
      "slapd.conf",
      "include /etc/ldap/schema/core.schema\ninclude /etc/ldap/schema/cosine.schema\n"
      "include /etc/ldap/schema/inetorgperson.schema\nmodulepath /usr/lib/ldap\nmoduleload back_mdb\n"
      "allow bind_anon_dn\n" +
          std::string(tls_ == Tls::Spoken ? "TLSCertificateFile house.pem\nTLSCertificateKeyFile house.key\n"
                                          : "") +
          "database mdb\nmaxsize 1048576\nsuffix dc=library,dc=example\ndirectory data\n"
          "access to attrs=userPassword by anonymous auth by * none\n"
          "access to * by dn.exact=cn=reader,dc=library,dc=example read by * none\n");
  write(
      "people.ldif",
      "dn: dc=library,dc=example\nobjectClass: domain\ndc: library\n\n"
      "dn: cn=reader,dc=library,dc=example\nobjectClass: person\ncn: reader\nsn: x\nuserPassword: reading\n\n"
      "dn: ou=people,dc=library,dc=example\nobjectClass: organizationalUnit\nou: people\n\n"
      "dn: ou=more,dc=library,dc=example\nobjectClass: organizationalUnit\nou: more\n\n" +
          person("all", "all") + person("view", "view") + person("a,b", "a\\,b") +
          person("*)(uid=*", "*)(uid=*") + person("twin", "twin") +
          person("twin", "twin", "ou=more,dc=library,dc=example"));
  write("reading", "reading\n");
  run("./slapd -T add -f slapd.conf -l people.ldif");
  start();
}

Slapd::~Slapd() {
  stop();
}

void Slapd::write(const std::string& file, const std::string& text) const {
  std::ofstream(folder_.file(file)) << text;
}

void Slapd::run(const std::string& command) const {
  const std::string all = "cd " + folder_.file("") + " && { " + command + "; } > log 2>&1";
  if (std::system(all.c_str()) != 0) throw std::runtime_error("a directory cannot be made: " + command);
}

void Slapd::start() {
  const bool isSealed = tls_ == Tls::Spoken;
  const std::string addresses = address() + "/" + (isSealed ? " " + sealedAddress() + "/" : "");
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (chdir(folder_.file("").c_str()) != 0) _exit(9);
    const int log = open("log", O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(log, STDERR_FILENO);
    execl("./slapd", "slapd", "-d", "0", "-f", "slapd.conf", "-h", addresses.c_str(), nullptr);
    _exit(9);
  }
  while (!isServed(isSealed ? sealedPort_ : port_)) {
    if (waitpid(process_, nullptr, WNOHANG) == process_) throw std::runtime_error("the directory has ended");
    usleep(10'000);
  }
}

void Slapd::stop() {
  if (process_ > 0) kill(process_, SIGKILL);
  if (process_ > 0) waitpid(process_, nullptr, 0);
  process_ = 0;
}

DirectorySettings Slapd::byName() const {
  return {.address = address(),
          .authority = folder_.file("house.pem"),
          .name = std::string("uid={login},") + people,
          .limit = 2};
}

DirectorySettings Slapd::bySearch() const {
  DirectorySettings settings = byName();
  settings.name.clear();
  settings.base = "dc=library,dc=example";
  settings.account = "cn=reader,dc=library,dc=example";
  settings.passwordFile = folder_.file("reading");
  return settings;
}

}  // namespace vantry::server::test
