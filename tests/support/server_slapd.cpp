#include "support/server_slapd.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace vantry::server::test {

namespace {

constexpr const char* program = "/usr/sbin/slapd";
constexpr const char* people = "ou=people,dc=library,dc=example";

sockaddr_in loopback(int port) {
  sockaddr_in place{};
  place.sin_family = AF_INET;
  place.sin_port = htons(static_cast<std::uint16_t>(port));
  place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return place;
}

class Socket {
 public:
  ~Socket() { close(handle_); }
  int bindFree() {
    sockaddr_in place = loopback(0);
    socklen_t size = sizeof place;
    const bool bound = bind(handle_, reinterpret_cast<sockaddr*>(&place), size) == 0 &&
                       getsockname(handle_, reinterpret_cast<sockaddr*>(&place), &size) == 0;
    return bound ? ntohs(place.sin_port) : 0;
  }
  bool reaches(int port) {
    const sockaddr_in place = loopback(port);
    return connect(handle_, reinterpret_cast<const sockaddr*>(&place), sizeof place) == 0;
  }

 private:
  int handle_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

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
    Socket one, other;  // both held, so that the ports differ
    port_ = one.bindFree();
    sealedPort_ = other.bindFree();
  }
  const std::string key = "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 ";
  run(key + "-subj /CN=localhost -addext subjectAltName=IP:127.0.0.1 -keyout key.pem -out certificate.pem");
  run(key + "-subj /CN=localhost -addext subjectAltName=IP:127.0.0.1 -keyout other.key -out other.pem");
  run("mkdir data && cp " + std::string(program) + " slapd");  // a copy, which AppArmor does not confine
  write("slapd.conf",
        "include /etc/ldap/schema/core.schema\ninclude /etc/ldap/schema/cosine.schema\n"
        "include /etc/ldap/schema/inetorgperson.schema\nmodulepath /usr/lib/ldap\nmoduleload back_mdb\n"
        "allow bind_anon_dn\n" +
            std::string(tls_ == Tls::Spoken
                            ? "TLSCertificateFile certificate.pem\nTLSCertificateKeyFile key.pem\n"
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
  while (!Socket().reaches(isSealed ? sealedPort_ : port_)) {
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
          .authority = folder_.file("certificate.pem"),
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
