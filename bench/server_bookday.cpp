// How long a day's list takes, in the server and over the wire, for days of 50, 1,000 and 10,000 bookings.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <httplib.h>

#include "failures.h"
#include "figures.h"
#include "median.h"
#include "server/base/moment.h"
#include "server/program/server.h"
#include "server/requests/runner.h"
#include "server/store/database.h"

namespace {

using namespace vantry;
using namespace vantry::server;

constexpr const char* date = "2026-12-01";

std::string makeDatabase(const std::filesystem::path& folder, int bookings) {
  const std::string file = (folder / ("day" + std::to_string(bookings) + ".sqlite")).string();
  DemoOptions options;
  options.date = "2026-11-24";
  options.bookingsOn = date;
  options.bookingsOnCount = bookings;
  const auto before = std::chrono::steady_clock::now();
  createDemoDatabase(file, options);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
  std::printf("%6d bookings: library made in %.2f s\n", bookings, taken.count());
  return file;
}

void measure(const std::string& file, int bookings, const Figures& figures, Failures& failures) {
  Database database(file);
  RequestRunner runner(
      database, [] { return makeMoment(2026, 11, 24, 12, 0); }, HashCost::Quick);
  const std::string token = runner.login("admin", "admin-demo", "bench").token;
  const std::vector<TagValue> location{{"LOC", "1"}};
  (void)runner.run({.token = token, .code = "SLL", .requestId = "1", .tags = location});
  const std::vector<TagValue> tags{{"DATE", date}, {"HBK", "N"}};
  std::size_t bytes = 0;
  const auto note = [&](const std::string& json) {
    bytes = json.size();
    // A record takes a hundred bytes and more.
    failures.note("BOOKDAY", hasCode(json, 0) && bytes > static_cast<std::size_t>(bookings) * 10);
  };
  const double inServer = medianOf(31, [&](int) {
    note(runner.run({.token = token, .code = "BOOKDAY", .requestId = "2", .tags = tags}).json);
  });

  Server::Options options;
  options.database = file;
  options.clock = [] { return makeMoment(2026, 11, 24, 12, 0); };
  Server server(options);
  server.start();
  httplib::Client client("127.0.0.1", server.port());
  client.set_keep_alive(true);
  client.set_tcp_nodelay(true);
  const httplib::Headers headers{{"Authorization", "Bearer " + token}, {"Request-Id", "3"}};
  const std::string body = std::string(R"({"tags":[["DATE",")") + date + R"("],["HBK","N"]]})";
  const double overWire = medianOf(31, [&](int) {
    const auto answer = client.Post("/v1/request/BOOKDAY", headers, body, "application/json");
    note(answer ? answer->body : std::string());
  });
  figures.tell(std::to_string(bookings), "In the server", inServer);
  figures.tell(std::to_string(bookings), "With the wire", overWire);
  std::printf("        BOOKDAY %9zu bytes: in the server %8.3f ms, with the wire %8.3f ms\n", bytes, inServer,
              overWire);
}

}  // namespace

int main() {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vantry-bench-bookday";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  Failures failures;
  const Figures figures("bookday");
  for (const int bookings : {50, 1'000, 10'000})
    measure(makeDatabase(folder, bookings), bookings, figures, failures);
  std::filesystem::remove_all(folder);
  return failures.tell();
}
