#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "booking/booking_fixture.h"
#include "platform/text.h"
#include "server/store/database.h"
#include "server/store/query.h"
#include "support/noon.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"

namespace vantry::test {

/// The demo library of these tests, made once; each suite works on a copy of it.
inline void copyLibrary(const std::filesystem::path& file) {
  static const std::filesystem::path made = [&] {
    const std::filesystem::path first =
        std::filesystem::temp_directory_path() / ("vantry-library-" + std::to_string(::getpid()));
    DemoOptions demo;
    demo.date = "2026-11-24";
    demo.daysBack = 3;
    demo.daysAhead = 5;
    createDemoDatabase(first.string(), demo);
    return first;
  }();
  static const std::shared_ptr<void> gone(nullptr, [](void*) { std::filesystem::remove(made); });
  std::filesystem::copy_file(made, file);
}

/// One value out of a library, for finding an example in it; a test without its example fails.
inline std::string valueIn(const std::filesystem::path& library, const std::string& sql) {
  server::Database database(library.string(), {.connections = 1, .patience = 10});
  std::string value;
  database.read([&](server::Connection& db) {
    server::Query query(db, sql);
    query.into(value);
    query.next();
  });
  EXPECT_NE(value, "") << "the demo library has no example: " << sql;
  return value;
}

/// A desk at the demo library on the real server, around 24 November 2026.
struct RealLibrary : testing::Test {
  static inline std::filesystem::path folder;
  static inline std::unique_ptr<EmbeddedServer> embedded;

  static void SetUpTestSuite() {
    std::string name = (std::filesystem::temp_directory_path() / "vantry-booking-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
    folder = name;
    copyLibrary(folder / "library.sqlite");
    embedded =
        std::make_unique<EmbeddedServer>(EmbeddedServer::Options{folder / "library.sqlite", {}, true, noon});
  }
  static void TearDownTestSuite() {
    embedded.reset();
    std::filesystem::remove_all(folder);
  }

  ScriptedDesktop desktop;
  HttpTransport transport{{embedded->address()}};
  FixedClock clock;
  MemorySettings settings;
  NotedComponents components;
  App app{{desktop, transport, clock, settings, components, {}, {}}, ""};

  void SetUp() override {
    app.daySlots = daySlots(6, 10, 1);
    ASSERT_EQ(transport.logon("desk", "desk-demo"), LogonResult::Accepted);
    ASSERT_EQ(send("RLL", {{"OI", "desk"}}), 0);
    ASSERT_TRUE(app.message.NextRecord("LNA"));
    ASSERT_EQ(send("SLL", {{"LOC", app.message.Get("LOC")}}), 0);
  }

  int send(std::string_view code, const std::vector<TagValue>& tags) {
    for (const auto& [tag, value] : tags) app.message.Add(tag, value);
    return app.message.Send(code);
  }
  std::string get(std::string_view tag) { return app.message.Get(tag); }

  std::vector<std::string> liveBookings() {
    std::vector<std::string> ids;
    for (const char* date : {"2026-11-25", "2026-11-26", "2026-11-27"}) {
      if (send("BOOKDAY", {{"DATE", date}, {"HBK", "N"}}) != 0) continue;
      while (app.message.NextRecord("BOOKID")) {
        if (intOf(get("BKRES")) == 0) ids.push_back(get("BOOKID"));
      }
    }
    return ids;
  }

  /// A live booking whose `code` lists a thing with this tag; its record, and the thing's tags.
  struct Found {
    BookingRecord record;
    std::vector<TagValue> thing;
  };
  Found find(std::string_view code, std::string_view tag, std::initializer_list<std::string_view> tags) {
    for (const std::string& id : liveBookings()) {
      Found found;
      if (send("GETMSD", {{"BOOKID", id}}) != 0) continue;
      ReadBookingHead(app.message, found.record);
      if (found.record.PatronGroupId == 0 || send(code, {{"BOOKID", id}}) != 0) continue;
      const bool single = code == "GETSRM";
      while (single || app.message.NextRecord(tag)) {
        if (intOf(get(tag)) != 0) {
          for (const std::string_view wanted : tags)
            found.thing.push_back({std::string(wanted), get(wanted)});
          return found;
        }
        if (single) break;
      }
    }
    throw std::runtime_error("the demo library has no booking with a " + std::string(tag));
  }

  std::vector<TagValue> withTimes(const Found& found, std::vector<TagValue> first) {
    first.push_back({"PGID", std::to_string(found.record.PatronGroupId)});
    first.push_back({"STIME", found.record.StartTime});
    first.push_back({"ETIME", found.record.EndTime});
    first.insert(first.end(), found.thing.begin(), found.thing.end());
    return first;
  }
};

}  // namespace vantry::test
