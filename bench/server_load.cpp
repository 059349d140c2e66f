// What many desks cost a server of its own process: 200 that ask every five seconds, 1,000 connections that
// do nothing, and, on PostgreSQL, how much two servers of one database get through against one.
//
//   server_load FOLDER [postgresql://...]
//
// The database named must be empty.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <httplib.h>

#include "failures.h"
#include "figures.h"
#include "server/base/moment.h"
#include "server/program/server.h"
#include "server_process.h"

namespace {

using namespace vantry;
using namespace vantry::server;
using std::chrono::steady_clock;

constexpr const char* date = "2026-12-01";

std::string logOn(int port) {
  httplib::Client client("127.0.0.1", port);
  const auto answer =
      client.Post("/v1/login", R"({"operator":"admin","password":"admin-demo"})", "application/json");
  const std::string mark = "\"session\":\"";
  const std::size_t at = answer ? answer->body.find(mark) : std::string::npos;
  if (at == std::string::npos) throw std::runtime_error("the log-on failed");
  const std::size_t from = at + mark.size();
  const std::string token = answer->body.substr(from, answer->body.find('"', from) - from);
  const httplib::Headers headers{{"Authorization", "Bearer " + token}, {"Request-Id", "location"}};
  const auto placed =
      client.Post("/v1/request/SLL", headers, R"({"tags":[["LOC","1"]]})", "application/json");
  if (!placed || !hasCode(placed->body, 0)) throw std::runtime_error("the desk was not taken");
  return token;
}

/// A desk on a connection of its own, which asks for a day's list.
class AskingDesk {
 public:
  AskingDesk(int port, const std::string& token, Failures& failures)
      : client_("127.0.0.1", port),
        headers_{{"Authorization", "Bearer " + token}, {"Request-Id", "list"}},
        failures_(failures) {
    client_.set_keep_alive(true);
    client_.set_tcp_nodelay(true);
  }

  /// Milliseconds until the answer.
  double ask() {
    static const std::string body = std::string(R"({"tags":[["DATE",")") + date + R"("],["HBK","N"]]})";
    const auto before = steady_clock::now();
    const auto answer = client_.Post("/v1/request/BOOKDAY", headers_, body, "application/json");
    failures_.note("BOOKDAY", answer && answer->status == 200 && hasCode(answer->body, 0));
    return std::chrono::duration<double, std::milli>(steady_clock::now() - before).count();
  }

 private:
  httplib::Client client_;
  httplib::Headers headers_;
  Failures& failures_;
};

void measureDesks(const ServerProcess& server, const Figures& figures, Failures& failures) {
  constexpr int desks = 200;
  constexpr int rounds = 5;
  constexpr std::chrono::milliseconds period{5000};
  const std::string token = logOn(server.port());
  std::mutex mutex;
  std::vector<double> all;
  std::vector<std::thread> threads;
  const auto start = steady_clock::now();
  for (int number = 0; number < desks; ++number) {
    threads.emplace_back([&, number] {
      AskingDesk desk(server.port(), token, failures);
      for (int round = 0; round < rounds; ++round) {
        std::this_thread::sleep_until(start + round * period + number * period / desks);
        const double taken = desk.ask();
        const std::lock_guard lock(mutex);
        all.push_back(taken);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::sort(all.begin(), all.end());
  figures.tell("200 desks that ask every five seconds, p50, ms", "", all[all.size() / 2]);
  figures.tell("the same, p99, ms", "", all[all.size() * 99 / 100]);
}

int idleConnection(int port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return socket;
  close(socket);
  return -1;
}

void measureIdle(const ServerProcess& server, const Figures& figures, Failures& failures) {
  constexpr int connections = 1000;
  constexpr std::chrono::seconds span{10};
  const double before = server.megabytes();
  std::vector<int> sockets;
  for (int number = 0; number < connections; ++number) {
    sockets.push_back(idleConnection(server.port()));
    failures.note("a connection", sockets.back() >= 0);
  }
  const std::string token = logOn(server.port());  // others are still answered
  AskingDesk(server.port(), token, failures).ask();
  const double spent = server.processorTime();
  std::this_thread::sleep_for(span);
  const double share = (server.processorTime() - spent) / static_cast<double>(span.count()) * 100;
  figures.tell("1,000 idle connections, % of a core", "", share);
  figures.tell("the same, MB", "", std::max(server.megabytes() - before, 0.0));
  for (const int socket : sockets) close(socket);
}

/// Lists a second that eight desks get, spread over the servers.
double readsPerSecond(const std::vector<const ServerProcess*>& servers, Failures& failures) {
  constexpr int desks = 8;
  constexpr int each = 1000;
  const std::string token = logOn(servers.front()->port());
  std::vector<std::thread> threads;
  const auto before = steady_clock::now();
  for (std::size_t number = 0; number < desks; ++number) {
    threads.emplace_back([&, number] {
      AskingDesk desk(servers[number % servers.size()]->port(), token, failures);
      for (int round = 0; round < each; ++round) desk.ask();
    });
  }
  for (std::thread& thread : threads) thread.join();
  return desks * each / std::chrono::duration<double>(steady_clock::now() - before).count();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "server_load FOLDER [postgresql://...]\n");
    return 2;
  }
  allowManyConnections();
  const std::string database = argc > 2 ? argv[2] : std::string(argv[1]) + "/load.sqlite";
  DemoOptions demo;
  demo.date = "2026-11-24";
  demo.bookingsOn = date;
  demo.bookingsOnCount = 50;
  createDemoDatabase(database, demo);
  Failures failures;
  const Figures figures(argc > 2 ? "load-postgresql" : "load");
  const ServerProcess first({.database = database});
  if (argc > 2) {
    const ServerProcess second({.database = database});
    const double one = readsPerSecond({&first}, failures);
    const double both = readsPerSecond({&first, &second}, failures);
    figures.tell("lists a second from one server", "", one);
    figures.tell("from two on one database", "", both);
  }
  measureDesks(first, figures, failures);
  measureIdle(first, figures, failures);
  return failures.tell();
}
