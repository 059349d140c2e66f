#include "circulation/circulation_fixture.h"

namespace vantry::test {
namespace {

struct PopupNoteTest : CirculationTest {
  void SetUp() override { start(); }
  void receive(std::string_view notes) {
    server.expect("DBK", "BOOKID=7").replies(notes);
    app->message.Add("BOOKID", "7");
    ASSERT_EQ(app->message.Send("DBK"), 0);
  }
  void show(int rooms, int pieces, std::function<void(frmPopupNote&)> play) {
    desktop.expectModalWindow<frmPopupNote>("frmPopupNote", std::move(play));
    app->circulation().showReplyNotes("D", rooms, pieces);
  }
};

TEST_F(PopupNoteTest, OneNoteHasOnlyOk) {
  receive("ENO=TV1 PMSG=\"Count the cables.\"");
  show(0, 1, [](frmPopupNote& window) {
    EXPECT_EQ(window.Caption, "Discharge Popup Note:  TV1");
    EXPECT_EQ(window.txtPopupNote.Text, "Count the cables.");
    EXPECT_FALSE(window.cmdNext.Visible);
    EXPECT_FALSE(window.cmdPrevious.Visible);
    EXPECT_EQ(window.ActiveControl(), &window.cmdOK) << "Enter closes it";
    window.cmdOK.press();
  });
}

TEST_F(PopupNoteTest, SeveralNotesAreWalkedForthAndBack) {
  receive("ENO=TV1 PMSG=Cables\nENO=TV2 PMSG=Remote\nRNO=101 PMSG=Key");
  const auto expectNote = [](const frmPopupNote& window, const char* of, const char* text) {
    EXPECT_EQ(window.Caption, std::string("Discharge Popup Note:  ") + of);
    EXPECT_EQ(window.txtPopupNote.Text, text);
    EXPECT_EQ(window.NoteText, text);
  };
  show(1, 2, [&](frmPopupNote& window) {
    expectNote(window, "101", "Key");
    EXPECT_FALSE(window.cmdOK.Visible);
    EXPECT_FALSE(window.cmdPrevious.Enabled);
    EXPECT_EQ(window.ActiveControl(), &window.cmdNext);
    window.cmdNext.press();
    expectNote(window, "TV1", "Cables");
    EXPECT_EQ(window.cmdNext.Caption, "&Next >");
    window.cmdNext.press();
    expectNote(window, "TV2", "Remote");
    EXPECT_EQ(window.cmdNext.Caption, "&OK");
    EXPECT_EQ(window.cmdNext.Tag, "3");
    EXPECT_EQ(window.cmdPrevious.Tag, "1");
    window.cmdPrevious.press();
    expectNote(window, "TV1", "Cables");
    EXPECT_EQ(window.cmdNext.Caption, "&Next >");
    window.cmdPrevious.press();
    expectNote(window, "101", "Key");
    EXPECT_FALSE(window.cmdPrevious.Enabled);
    for (int press = 0; press < 2; ++press) window.cmdNext.press();
    expectNote(window, "TV2", "Remote");
    window.cmdNext.press();
    EXPECT_FALSE(window.isShown()) << "the last one's button closes it";
  });
}

TEST_F(PopupNoteTest, NoNoteShowsNothingAndASingleTextShowsAlone) {
  receive("");
  app->circulation().showReplyNotes("C", 0, 0);
  expectNotes("Popup Note", "Schedule Popup Note:  Room 1 - Take the key.");
  app->circulation().showNote("Schedule Popup Note:  Room 1 - Take the key.");
}

}  // namespace
}  // namespace vantry::test
