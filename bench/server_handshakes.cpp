// What a TLS handshake costs the server, by the kind of its certificate's key, and how long a desk that is
// connected waits while 200 others connect at once, as they do after a restart.
//
//   server_handshakes FOLDER

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <latch>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <httplib.h>

#include "failures.h"
#include "figures.h"
#include "server/program/server.h"
#include "server_process.h"

namespace {

using namespace vantry;
using std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int desks = 200;

struct KeyKind {
  const char* name;
  const char* option;  ///< of openssl
};
constexpr KeyKind kinds[] = {
    {"RSA, 2048 bits", "rsa:2048"},
    {"ECDSA, P-256", "ec -pkeyopt ec_paramgen_curve:P-256"},
};

Server::Options withCertificate(const std::string& folder, const KeyKind& kind) {
  Server::Options options;
  options.database = folder + "/handshakes.sqlite";
  options.certificate = folder + "/certificate.pem";
  options.key = folder + "/key.pem";
  const std::string command = std::string("openssl req -x509 -nodes -days 2 -subj /CN=localhost -newkey ") +
                              kind.option + " -keyout " + options.key + " -out " + options.certificate +
                              " 2> /dev/null";
  if (std::system(command.c_str()) != 0) throw std::runtime_error("no certificate");
  return options;
}

/// A desk with a connection of its own.
class SecureDesk {
 public:
  SecureDesk(int port, Failures& failures) : client_("127.0.0.1", port), failures_(failures) {
    client_.enable_server_certificate_verification(false);
    client_.set_keep_alive(true);
    client_.set_tcp_nodelay(true);
  }
  /// Connects first, when it has not yet.
  void ask() {
    const auto answer = client_.Get("/v1/health");
    failures_.note("a desk's request", answer && answer->status == 200);
  }

 private:
  httplib::SSLClient client_;
  Failures& failures_;
};

void measureOne(const ServerProcess& server, const KeyKind& kind, const Figures& figures,
                Failures& failures) {
  constexpr int rounds = 300;
  const double before = server.processorTime();
  for (int round = 0; round < rounds; ++round) SecureDesk(server.port(), failures).ask();
  figures.tell("processor time of the server for a connection and one request, ms", kind.name,
               (server.processorTime() - before) / rounds * 1000);
  SecureDesk kept(server.port(), failures);
  kept.ask();
  const double beforeKept = server.processorTime();
  for (int round = 0; round < 10 * rounds; ++round) kept.ask();
  figures.tell("the same on a connection that is kept", kind.name,
               (server.processorTime() - beforeKept) / (10 * rounds) * 1000);
}

/// All begin at the same moment, while one that is connected asks on and on.
void measureCrowd(const ServerProcess& server, const KeyKind& kind, const Figures& figures,
                  Failures& failures) {
  SecureDesk kept(server.port(), failures);
  kept.ask();
  std::latch start(desks + 1);
  std::atomic<int> connected = 0;
  std::vector<std::thread> crowd;
  for (int number = 0; number < desks; ++number) {
    crowd.emplace_back([&] {
      SecureDesk desk(server.port(), failures);
      start.arrive_and_wait();
      desk.ask();
      ++connected;
    });
  }
  start.arrive_and_wait();
  const auto begin = steady_clock::now();
  std::vector<Milliseconds> waits;
  while (connected < desks) {
    const auto before = steady_clock::now();
    kept.ask();
    waits.push_back(steady_clock::now() - before);
  }
  const Milliseconds all = steady_clock::now() - begin;
  for (std::thread& each : crowd) each.join();
  figures.tell("200 desks connect at once: until all are served, ms", kind.name, all.count());
  std::ranges::sort(waits);
  figures.tell("a connected desk's request meanwhile, p99, ms", kind.name,
               waits[waits.size() * 99 / 100].count());
  figures.tell("its requests a second", kind.name, static_cast<double>(waits.size()) / all.count() * 1000);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "server_handshakes FOLDER\n");
    return 2;
  }
  allowManyConnections();
  Failures failures;
  const Figures figures("handshakes");
  for (const KeyKind& kind : kinds) {
    Server::Options options = withCertificate(argv[1], kind);
    if (&kind == &kinds[0]) createDemoDatabase(options.database, {});
    const ServerProcess server(options);
    measureOne(server, kind, figures, failures);
    measureCrowd(server, kind, figures, failures);
  }
  return failures.tell();
}
