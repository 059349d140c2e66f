#pragma once

#include <gtest/gtest.h>

#include <string>

#include "booking/booking_parts.h"
#include "booking/modBooking_tags.h"
#include "frame/app.h"
#include "support/desk.h"

namespace vantry::test {

/// "Seals" so that a test can read it.
struct PlainSealer : PasswordSealer {
  bool reachable = true;
  [[nodiscard]] std::optional<std::string> seal(std::string_view password) override {
    if (!reachable) return std::nullopt;
    return "sealed " + std::string(password);
  }
};

/// The program around a booking window, with slots from 6 in the morning to 10 in the evening of ten minutes.
struct BookingTest : testing::Test {
  ScriptedDesktop desktop;
  ScriptedServer server;
  FixedClock clock;
  MemorySettings settings;
  NotedComponents components;
  PlainSealer sealer;
  App app{{desktop, server, clock, settings, components, {}, {}}, ""};

  BookingTest() {
    app.daySlots = daySlots(6, 10, 1);
    app.session.setSealer(sealer);
    app.booking.warnings.InitWarningList();
  }

  void grant(std::initializer_list<Right> rights) {
    std::array<std::string, kRights> values;
    for (const Right right : rights) values[static_cast<std::size_t>(right)] = "Y";
    app.context.rights.set(values);
  }

  /// Sends a request and gets the reply; what follows walks it.
  int receive(std::string_view code, std::string_view tags, int rc, std::string_view block) {
    server.expect(code, tags).fails(rc, block);
    for (const auto& [tag, value] : pairsOf(tags)) app.message.Add(tag, value);
    return app.message.Send(code);
  }
};

/// A window with what editor and wizard have in common.
struct TestWindow : Form {
  explicit TestWindow(App& program)
      : Form(program.windows, "frmTest"),
        parts(program, {fraRequester, fraTimes, fraMedia, fraPlace, fraEquipment}) {
    Load();
  }
  Frame fraRequester{*this, "fraRequester"};
  Frame fraTimes{*this, "fraTimes"};
  Frame fraMedia{*this, "fraMedia"};
  Frame fraPlace{*this, "fraPlace"};
  Frame fraEquipment{*this, "fraEquipment"};
  BookingParts parts;
  BookingRecord& record = parts.record;
  TimesPanel& times = parts.times;
  Grid& faMedia = parts.media.faMedia;
  Tree& tvwOtherEquipment = parts.equipment.tvwOtherEquipment;
  Tree& tvwEquipment = parts.equipment.tvwEquipment;

  void addMedia(std::string bib, std::string holdings, std::string item, std::string type) {
    const int row = faMedia.Rows;
    faMedia.Rows = row + 1;
    int col = 0;
    for (std::string* text : {&bib, &holdings, &item, &type}) faMedia.TextMatrix(row, col++, *text);
  }
  static void add(Tree& tree, std::string_view root, std::string key, int image = 0) {
    ASSERT_NE(tree.Add(root, std::move(key), "", image), nullptr);
  }
};

}  // namespace vantry::test
