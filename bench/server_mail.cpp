// What mail costs a desk: a save without it, with it, with 1,000 mails waiting for a mail server that is
// away, and while 1,000 are being sent by a program that takes each.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <httplib.h>

#include "failures.h"
#include "figures.h"
#include "server/base/moment.h"
#include "server/program/server.h"
#include "server/store/database.h"
#include "server/store/query.h"
#include "support/server_booking.h"

namespace {

using namespace vantry;
using namespace vantry::server;

constexpr int saves = 1500;
constexpr int waiting = 1000;
const Moment noon = makeMoment(2026, 11, 24, 12);

struct Case {
  const char* name;
  bool sends;
  bool queued;
  const char* through;
};
constexpr Case cases[] = {
    {"No mail", false, false, ""},
    {"Mail", true, false, "smtp://127.0.0.1:9"},
    {"1,000 wait, the mail server is away", true, true, "smtp://127.0.0.1:9"},
    {"1,000 are being sent", true, true, "/bin/true"},
};

/// A new library each, so that all begin alike.
std::string makeLibrary(const std::filesystem::path& folder, const Case& each) {
  const std::string file = (folder / (std::to_string(&each - cases) + ".sqlite")).string();
  DemoOptions options;
  options.date = "2026-11-24";
  createDemoDatabase(file, options);
  Database database(file);
  database.write([&](Connection& db) {
    db.run("update patrons set withheld = 0, email = 'patron' || id || '@example.org'");
    db.run("update patron_barcodes set patron_group_id = 1 where patron_id = 1");
    if (!each.queued) return;
    // About bookings that were deleted: nothing takes them out but the sending.
    db.run(
        "insert into outbox (kind, booking_id, patron_id, about, queued_at, due_at) with recursive n(i) as "
        "(select "
        "1 union all select i + 1 from n where i < " +
        std::to_string(waiting) + ") select 3, i, 1, " + std::to_string(noon + 30 * day) + ", " +
        std::to_string(noon) + ", 0 from n");
    db.run("update outbox set kept = '{\"number\":\"1\"}'");
  });
  return file;
}

std::string bookingOf(int number) {
  const Moment starts = noon + (1 + number % 300) * day + number / 300 * hour;
  std::string body = "{\"tags\":[";
  const test::Tags tags = test::NewBooking{.from = starts, .until = starts + hour, .patron = "1"}.tags();
  for (const auto& [tag, value] : tags)
    body += (body.back() == '[' ? "[\"" : ",[\"") + tag + "\",\"" + value + "\"]";
  return body + "]}";
}

void measure(const std::string& file, const Case& each, const Figures& figures, Failures& failures) {
  Server::Options options;
  options.database = file;
  options.clock = [] { return noon; };
  options.trustsClock = true;
  if (each.sends) {
    options.mail.kinds.add(MailKind::Confirmed).add(MailKind::Cancelled);
    options.mail.from = "desk@library.example";
    options.mail.through = each.through;
  }
  Server server(options);
  server.start();
  httplib::Client client("127.0.0.1", server.port());
  client.set_keep_alive(true);
  client.set_tcp_nodelay(true);
  const auto login =
      client.Post("/v1/login", R"({"operator":"admin","password":"admin-demo"})", "application/json");
  if (!login) return failures.note("login", false);
  const std::size_t from = login->body.find("\"session\":\"") + 11;
  const std::string token = login->body.substr(from, login->body.find('"', from) - from);
  int sent = 0;
  const auto post = [&](const char* code, const std::string& body) {
    const httplib::Headers headers{{"Authorization", "Bearer " + token},
                                   {"Request-Id", std::to_string(++sent)}};
    const auto answer =
        client.Post((std::string("/v1/request/") + code).c_str(), headers, body, "application/json");
    failures.note(code, answer && hasCode(answer->body, 0));
  };
  post("SLL", R"({"tags":[["LOC","1"]]})");
  std::vector<double> times;
  for (int number = 0; number < saves; ++number) {
    const std::string body = bookingOf(number);
    const auto before = std::chrono::steady_clock::now();
    post("NEWBK", body);
    times.push_back(
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - before).count());
  }
  std::ranges::sort(times);
  figures.tell(each.name, "Median", times[times.size() / 2]);
  figures.tell(each.name, "99 %", times[times.size() * 99 / 100]);
  std::printf("%-40s median %.3f ms, 99 %% %.3f ms\n", each.name, times[times.size() / 2],
              times[times.size() * 99 / 100]);
}

}  // namespace

int main() {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "vantry-bench-mail";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  Failures failures;
  const Figures figures("mail");
  for (const Case& each : cases) measure(makeLibrary(folder, each), each, figures, failures);
  std::filesystem::remove_all(folder);
  return failures.tell();
}
