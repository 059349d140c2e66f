#pragma once

#include <string>
#include <string_view>

#include "frame/app.h"
#include "frame/modMain.h"
#include "inventory/inventory_window.h"
#include "platform/tree.h"
#include "records/records.h"
#include "support/desk.h"

namespace vantry::test {

inline constexpr const char* kTooLong =
    "This text is too long to be stored: it may have about a million characters.\n\nPlease shorten it.";

/// A desk with types of equipment, groups and rooms, for the windows of their records.
struct RecordFixture : Desk {
  void start(const std::string& rights = allRightsBut()) {
    build();
    expectLogOn();
    server.expect("RLL", "OI=desk").replies("LNA=\"Main Desk\" LOC=3 OLN=\"City Library\"");
    server.expect("SLL", "LOC=3").replies(rights);
    server.expect("GETLOCS").replies("LNA=\"Main Desk\" LOC=3\nLNA=Branch LOC=4");
    server.expect("GETOPS");
    expectCategories();
    server.expect("BOOKDAY", "DATE=2026-11-24 HBK=N");
    ASSERT_TRUE(Main(*app));
    server.checkAllCame();
  }
  void expectCategories() {
    server.expect("GETECAT").replies("ETI=4 ETY=Television MIC=2\nETI=5 ETY=Camera MIC=1");
    server.expect("GETGCAT").replies("ETI=8 ETY=\"Video Set\" MIC=1\nETI=9 ETY=\"Slide Set\" MIC=0");
    server.expect("GETRCAT").replies("RTI=1 RTY=Seminar MIC=1 RST=N\nRTI=2 RTY=Store MIC=1 RST=Y");
    server.expect("GETMYER");
  }
  /// The server has nothing against a deletion, the operator agrees to it, and the record is removed.
  void expectRemoval(const std::string& verified, std::string_view code, const std::string& tags) {
    server.expect("VERDELE", verified);
    desktop.expectQuestion("Are you sure you want to DELETE this record?", true);
    server.expect(code, tags);
  }
  static void save(InventoryWindow& window) { window.barBooking.choose(window.barBooking.tool("abSave")); }
  /// The nodes of a tree, those below a root after it.
  static std::string nodes(const Tree& tree) {
    std::string all;
    for (const TreeNode* root : tree.Roots()) {
      all += root->text + ":";
      for (const TreeNode* node : root->children) all += ' ' + node->text;
      all += '\n';
    }
    return all;
  }
};

}  // namespace vantry::test
