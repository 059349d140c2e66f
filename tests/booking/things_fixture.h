#pragma once

#include "booking/booking_fixture.h"
#include "booking/booking_parts.h"

namespace vantry::test {

/// The windows of circulation as far as bookings use them here: notes are only noted.
struct NotedCirculation : CirculationWindows {
  std::vector<std::string> notes;
  void showReplyNotes(std::string_view, int, int) override {}
  void showNote(std::string_view text) override { notes.emplace_back(text); }
  [[nodiscard]] std::string discharge(int) override { return "2"; }
};

/// A window with the parts of booking 7 in room 40.
struct ThingsWindow : Form {
  explicit ThingsWindow(App& program) : Form(program.windows, "frmThings"), app(program) {
    record.BookingId = 7;
    record.PatronGroupId = 2;
    record.RoomId = 40;
    record.ItemLimit = record.EquipmentLimit = 9;
    times.showTimes("2026-11-24 09:00:00", "2026-11-24 10:30:00");
    media.Changed = [this] { ++changes; };
    equipment.Changed = [this] { ++changes; };
    Load();
  }

  App& app;
  Frame fraRequester{*this, "fraRequester"};
  Frame fraTimes{*this, "fraTimes"};
  Frame fraMedia{*this, "fraMedia"};
  Frame fraPlace{*this, "fraPlace"};
  Frame fraEquipment{*this, "fraEquipment"};
  BookingParts parts{app, {fraRequester, fraTimes, fraMedia, fraPlace, fraEquipment}};
  BookingRecord& record = parts.record;
  TimesPanel& times = parts.times;
  MediaPanel& media = parts.media;
  EquipmentPanel& equipment = parts.equipment;
  int changes = 0;

  /// The rows of media, each as its ids and its texts.
  std::vector<std::string> mediaRows() const {
    std::vector<std::string> rows;
    for (int row = 1; row < media.faMedia.Rows; ++row) {
      std::string text;
      for (int col = 0; col < media.faMedia.Cols; ++col) {
        if (col > 0) text += '|';
        text += media.faMedia.TextMatrix(row, col);
      }
      rows.push_back(text);
    }
    return rows;
  }
};

/// A node and all below it: "key text [columns] (image)", one blank deeper at each level.
inline std::string inWords(const TreeNode& node, const std::string& indent = {}) {
  std::string text = indent + node.key + " " + node.text;
  for (const std::string& column : node.columns) text += " [" + column + "]";
  if (node.image != 0) text += " (" + std::to_string(node.image) + ")";
  text += '\n';
  for (const TreeNode* child : node.children) text += inWords(*child, indent + " ");
  return text;
}

struct ThingsTest : BookingTest {
  NotedCirculation circulation;
  ThingsWindow window{app};

  ThingsTest() {
    app.setCirculation(circulation);
    app.bibSearch.Initialise(app.message, app.session, false);
    grant({Right::OVOTR});
  }

  static constexpr const char* kTimes = "STIME=2026-11-24 09:00:00 ETIME=2026-11-24 10:30:00";
  static std::string withTimes(std::string tags) { return tags + " " + kTimes; }
  std::string below(const Tree& tree, std::string_view root) const { return inWords(*tree.find(root)); }
};

}  // namespace vantry::test
