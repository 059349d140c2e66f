#include "records/record_window.h"

#include "platform/controls.h"
#include "records/records.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

constexpr RecordWindowKind kPieces{
    kEquipment,
    "frmPiece",
    "equipment",
    "equipment",
    Subject::Equipment,
    {"Changes will be lost!  Do you wish to SAVE this record before exiting?", Box::Kind::Warning, false}};

/// A record window of the other kind than the editor: it closes after a failed save.
class PieceWindow : public RecordWindow {
 public:
  explicit PieceWindow(App& app) : RecordWindow(app, kPieces) {
    commands.save.Run = [this] { save(); };
    txtNumber.Change = [this] { touch(); };
    linkCommands(bar, {{commands.save, nullptr, "", "abSave", "Save", "save"},
                       {commands.saveAndNew, nullptr, "", "abSaveAndNew", "Save and New", "new", true}});
    commands.saveAndNew.Run = [this] { saveAndNew(); };
  }
  ToolBar bar{*this, "barPiece"};
  TextBox txtNumber{*this, "txtNumber"};
  bool saves = true;  ///< whether a save reaches its end
  int saved = 0;
  std::string shown;

  const RecordOpening& told() const { return opening(); }

 protected:
  void loadNew() override { txtNumber.Text = "new"; }
  bool loadRecord() override {
    txtNumber.Text = opening().id;
    return true;
  }
  bool isStored() const override { return !opening().isNew(); }
  void Save() override {
    ++saved;
    SaveOk = saves;
  }
  RecordOpening nextOpening() override { return {kEquipment, "", kSourceNextEquipment}; }
  void merge(bool on) override { shown = on ? "merged" : "apart"; }
};

struct RecordWindowTest : Desk {
  void open(const std::string& rights = allRightsBut()) {
    start(rights);
    app->makers.addRecord(kEquipment, [](App& a) { return std::make_unique<PieceWindow>(a); });
  }
  PieceWindow* openPiece(const char* id) {
    if (*id) server.expect("GETEGTN", std::string("EID=") + id).replies("ETY=TV ETI=2");
    return dynamic_cast<PieceWindow*>(OpenRecordWindow(*app, {kEquipment, id, kSourceMainWindow}));
  }
  void expectQuestion(int answer) {
    desktop.expectBox(Box::Kind::Warning, std::string(kPieces.close.question), answer);
  }
};

TEST_F(RecordWindowTest, AsksBeforeChangesAreLostAndClosesAfterEitherAnswer) {
  open();
  for (const int answer : {0, 1}) {
    PieceWindow& piece = *openPiece("5");
    EXPECT_FALSE(piece.Dirty) << "loading changes nothing";
    piece.txtNumber.type("12");
    piece.saves = false;
    expectQuestion(answer);
    EXPECT_TRUE(piece.Unload());
    EXPECT_EQ(piece.saved, answer == 0 ? 1 : 0);
  }
  PieceWindow& piece = *openPiece("5");
  piece.txtNumber.type("12");
  piece.bar.choose(piece.bar.tool("abSave"));
  EXPECT_TRUE(piece.isLoaded()) << "its save closes nothing";
  EXPECT_TRUE(piece.Unload()) << "and settles the changes";
}

TEST_F(RecordWindowTest, SaveAndNewOpensTheNextFromItsOwnSource) {
  open();
  PieceWindow& first = *openPiece("5");
  first.bar.choose(first.bar.tool("abSaveAndNew"));
  EXPECT_FALSE(first.isLoaded());
  const auto& next = dynamic_cast<PieceWindow&>(app->windows[app->windows.Count() - 1]);
  EXPECT_TRUE(next.told().isNew());
  EXPECT_EQ(next.CallerView, kSourceNextEquipment);
}

TEST_F(RecordWindowTest, RightsDecideWhatCanBeSaved) {
  open(allRightsBut("EQUPD"));
  PieceWindow& stored = *openPiece("5");
  EXPECT_FALSE(stored.commands.save.usable());
  EXPECT_TRUE(stored.commands.copy.usable());
  stored.txtNumber.type("12");
  EXPECT_TRUE(stored.Unload()) << "nobody is asked who may not save";
  EXPECT_TRUE(openPiece("")->commands.save.usable()) << "a new record needs another right";
}

}  // namespace
}  // namespace vantry::test
