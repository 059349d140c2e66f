// The record opener and what record windows share.
#include "records/records.h"
#include "frame/modMain.h"
#include "inventory/frmMultBarOrNo.h"
#include "platform/fields.h"
#include "platform/number_fields.h"
#include "platform/text.h"
#include "records/required_fields.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

/// A record window that notes what its slots said when it loaded.
struct ProbeWindow : Form {
  explicit ProbeWindow(App& app) : Form(app.windows, "frmProbe"), app_(app) {}
  void Form_Load() override {
    const RecordOpening& opening = app_.slots.opening;
    const auto slot = static_cast<std::size_t>(opening.kind);
    told = std::to_string(opening.kind) + " id=" + opening.id + (opening.isNew() ? " new" : "") +
           " type=" + app_.slots.typeNames[slot] + "/" + app_.slots.typeIds[slot] +
           " source=" + std::to_string(opening.source);
  }
  App& app_;
  std::string told;
};

class Records : public Desk {
 public:
  void SetUp() override {
    start();
    for (const int kind : {kEquipment, kGroup, kRoom, kMaintenance, kGroupMember, kBooking, kWizard})
      app->makers.addRecord(kind, [](App& a) { return std::make_unique<ProbeWindow>(a); });
  }
  /// The tags of all record windows, in the order of their loading.
  std::vector<std::string> tags() const {
    std::vector<std::string> found;
    for (int i = 0; i < app->windows.Count(); ++i) {
      if (app->windows[i].Name() == "frmProbe") found.push_back(app->windows[i].Tag);
    }
    return found;
  }
  ProbeWindow& newest() { return dynamic_cast<ProbeWindow&>(app->windows[app->windows.Count() - 1]); }
};

TEST_F(Records, EachKindTellsItsWindowWhatItIs) {
  struct Case {
    int kind;
    const char* code;
    const char* sent;
    const char* reply;
    const char* told;
  };
  for (const Case& c : {Case{kEquipment, "GETEGTN", "EID=5", "ETY=TV ETI=2", "0 id=5 type=TV/2 source=5"},
                        Case{kGroup, "GETEGTN", "EID=5", "ETY=Set ETI=3", "1 id=5 type=Set/3 source=5"},
                        Case{kGroupMember, "GETEGTN", "EID=6", "ETY=TV ETI=2", "4 id=6 type=TV/2 source=5"},
                        Case{kRoom, "GETRTN", "RID=5", "RTY=Lab RTI=9", "2 id=5 type=Lab/9 source=5"},
                        Case{kMaintenance, "", "", "", "3 id=5 type=/ source=5"},
                        Case{kBooking, "", "", "", "7 id=5 type=/ source=5"}}) {
    if (*c.code) server.expect(c.code, c.sent).replies(c.reply);
    const std::string id = c.kind == kGroupMember ? "6" : "5";
    OpenRecordWindow(*app, {c.kind, id, kSourceMainWindow});
    EXPECT_EQ(newest().told, c.told);
    EXPECT_EQ(newest().Tag, std::to_string(c.kind) + " - " + id);
    EXPECT_TRUE(newest().isShown());
    EXPECT_TRUE(main().Enabled);
  }
}

TEST_F(Records, ARecordHasOneWindowWhichComesBack) {
  server.expect("GETRTN", "RID=5").replies("RTY=Lab RTI=9");
  OpenRecordWindow(*app, {kRoom, "5", kSourceMainWindow});
  ProbeWindow& first = newest();
  first.WindowState = FormState::Minimized;
  OpenRecordWindow(*app, {kRoom, "5", kSourceMainWindow});  // and asks the server nothing
  EXPECT_EQ(tags(), std::vector<std::string>{"2 - 5"});
  EXPECT_EQ(first.WindowState, FormState::Normal);
  EXPECT_TRUE(main().Enabled);
  server.expect("GETEGTN", "EID=5").replies("ETY=TV ETI=2");
  OpenRecordWindow(*app,
                   {kEquipment, "5", kSourceMainWindow});  // the same id of another kind is another record
  EXPECT_EQ(tags(), (std::vector<std::string>{"2 - 5", "0 - 5"}));
  OpenRecordWindow(*app, {kGroupMember, "5", kSourceGroupMembers});  // the same piece
  EXPECT_EQ(tags(), (std::vector<std::string>{"2 - 5", "0 - 5"}));
  CloseRecordWindow(*app, kRoom, "5");
  CloseRecordWindow(*app, kRoom, "5");
  EXPECT_EQ(tags(), std::vector<std::string>{"0 - 5"});
}

TEST_F(Records, SeveralNewRecordsStandSideBySide) {
  server.expect("GETEGTN", "EID=5").replies("ETY=TV ETI=2");
  OpenRecordWindow(*app, {kEquipment, "5", kSourceMainWindow});
  for (int i = 0; i < 2; ++i) OpenRecordWindow(*app, {kEquipment, "", kSourceNextEquipment});
  const auto all = tags();
  ASSERT_EQ(all.size(), 3u);
  EXPECT_NE(all[1], all[2]);
  EXPECT_EQ(newest().told, "0 id= new type=TV/2 source=10") << "the type that was used last";
}

TEST_F(Records, ANewRecordIsNotTakenForTheRecordThatHasItsNumber) {
  OpenRecordWindow(*app, {kBooking, "", kSourceMainWindow});
  ASSERT_EQ(tags().size(), 1u);
  for (const char* id : {"1", "2", "3"}) {
    OpenRecordWindow(*app, {kBooking, id, kSourceMainWindow});
    EXPECT_EQ(newest().told, "7 id=" + std::string(id) + " type=/ source=5");
  }
  for (const char* id : {"1", "2", "3"}) CloseRecordWindow(*app, kBooking, id);
  EXPECT_EQ(tags().size(), 1u) << "what is typed into the new one stays";
}

TEST_F(Records, ACopyAndAHiddenWindowStandBesideTheRecordsOwn) {
  RecordOpening opening(kBooking, "7", kSourceMainWindow);
  Form* const own = OpenRecordWindow(*app, opening);
  ASSERT_NE(own, nullptr);
  opening.copy = true;
  const Form* const copy = OpenRecordWindow(*app, opening);
  opening.copy = false;
  opening.hidden = true;
  Form* const hidden = OpenRecordWindow(*app, opening);
  ASSERT_TRUE(copy && hidden);
  EXPECT_TRUE(copy != own && hidden != own && copy != hidden);
  EXPECT_TRUE(hidden->isLoaded());
  EXPECT_FALSE(hidden->isShown());
  EXPECT_EQ(FindRecordWindow(*app, kBooking, "7"), own);
}

TEST_F(Records, AFailedTypeLeavesEmptySlotsAndTheWindowOpens) {
  server.expect("GETEGTN", "EID=5").replies("ETY=TV ETI=2");
  OpenRecordWindow(*app, {kEquipment, "5", kSourceMainWindow});
  expectFailure("GETEGTN", "EID=6");
  OpenRecordWindow(*app, {kEquipment, "6", kSourceMainWindow});
  EXPECT_EQ(newest().told, "0 id=6 type=/ source=5");
  EXPECT_TRUE(main().Enabled);
}

TEST_F(Records, ANewMaintenanceRecordAsksForItsPieceUntilOneIsFound) {
  for (const bool barcodes : {true, false}) {
    app->preferences.Barcodes = barcodes;
    const std::string prompt = barcodes ? "Enter an Equipment Barcode." : "Enter an Equipment Number.";
    const std::string sent = barcodes ? "EPT=1 BARORNO=0 BNO=" : "EPT=1 BARORNO=1 ENO=";
    desktop.expectInput(prompt, "none");
    server.expect("GETIBYB", sent + "none").replies("head: SRCHCNT=0");
    desktop.expectWarning(barcodes ? "Barcode Not Found!" : "Equipment Number Not Found!");
    desktop.expectInput(prompt, " one ");
    server.expect("GETIBYB", sent + "one")
        .replies("head: SRCHCNT=1 | EID=11 ENO=TV1 BNO=5500 STY=S ETY=TV EIU=N RID=4");
    main().menus.mnuFileNewInvMaint.choose();
    ASSERT_FALSE(app->lookUp.LookupRows.empty());
    EXPECT_EQ(app->lookUp.LookupRows[0].EID, "11");
    EXPECT_EQ(newest().told, "3 id= new type=/ source=5");
  }
}

TEST_F(Records, WithoutAPieceNoMaintenanceRecordOpens) {
  for (const char* typed : {"", "  "}) {
    desktop.expectInput("Enter an Equipment Barcode.", typed);
    OpenRecordWindow(*app, {kMaintenance, "", kSourceMainWindow});
  }
  desktop.expectInput("Enter an Equipment Barcode.", std::nullopt);
  OpenRecordWindow(*app, {kMaintenance, "", kSourceMainWindow});
  desktop.expectInput("Enter an Equipment Barcode.", "5500");
  server.expect("GETIBYB", "EPT=1 BARORNO=0 BNO=5500")
      .replies(
          "head: SRCHCNT=2 | EID=11 ENO=A BNO=5500 STY=S ETY=T EIU=N RID=4 | "
          "EID=12 ENO=B BNO=5500 STY=S ETY=T EIU=N RID=4");
  desktop.expectModalWindow<frmMultBarOrNo>("frmMultBarOrNo", [](auto& window) { window.cmdCancel.press(); });
  OpenRecordWindow(*app, {kMaintenance, "", kSourceMainWindow});
  EXPECT_TRUE(tags().empty());
  EXPECT_TRUE(main().Enabled);
  OpenRecordWindow(*app, {kMaintenance, "", kSourceEquipment});  // the piece is the calling window's
  EXPECT_EQ(tags().size(), 1u);
}

TEST_F(Records, AListOfCategoriesThatFailsIsEmptyAndTheOthersAreRead) {
  app->context.categories.groups = {{"9", "of the operator before", "1", false}};
  server.expect("GETECAT").replies("ETI=1 ETY=TV MIC=3 | ETI=2 ETY=Projector MIC=0");
  expectFailure("GETGCAT");
  server.expect("GETRCAT").replies("RTI=4 RTY=Lab MIC=2 RST=Y | RTI=5 RTY=Hall MIC=1 RST=N");
  server.expect("GETMYER").replies("MYE=2025 | MYE=2026");
  LoadCategoryLists(*app);
  const CategoryLists& lists = app->context.categories;
  ASSERT_EQ(lists.equipment.size(), 2u);
  EXPECT_EQ(lists.equipment[1].id + lists.equipment[1].name + lists.equipment[1].count, "2Projector0");
  EXPECT_TRUE(lists.groups.empty());
  ASSERT_EQ(lists.rooms.size(), 2u);
  EXPECT_EQ(lists.rooms[0].id + lists.rooms[0].name + lists.rooms[0].count, "4Lab2");
  EXPECT_TRUE(lists.rooms[0].storage);
  EXPECT_FALSE(lists.rooms[1].storage);
  EXPECT_EQ(lists.years, (std::vector<std::string>{"2025", "2026"}));
}

/// A window with one field of each kind that can be required.
struct FieldsWindow : Form {
  explicit FieldsWindow(App& app) : Form(app.windows, "frmFields") {
    for (Control* control : std::initializer_list<Control*>{&txtNumber, &cboType, &txtDeep, &dtIn, &number})
      control->Tag = "1|" + control->Name() + ":|rest";
    txtFree.Tag = "0|Free:";
    cboType.AddItem("(none)");
    cboType.AddItem("Television");
    cboType.ListIndex = 0;
  }
  TextBox txtNumber{*this, "txtNumber"};
  TextBox txtFree{*this, "txtFree"};
  Frame fraPage{*this, "fraPage"};
  TextBox txtDeep{fraPage, "txtDeep"};
  ComboBox cboType{*this, "cboType"};
  DateField dtIn{*this, "dtIn"};
  NumberField number{*this, "number", 0, 10};
};

TEST_F(Records, MissingFieldsAreToldInTheirOrderAndTheFirstIsShown) {
  FieldsWindow window(*app);
  window.Show();
  window.txtNumber.Text = "   ";
  desktop.expectWarning(
      "Missing Required Fields:\ntxtNumber:|rest\ntxtDeep:|rest\ncboType:|rest\ndtIn:|rest\nnumber:|rest");
  EXPECT_FALSE(CheckRequiredFields(window));
  EXPECT_EQ(window.ActiveControl(), &window.txtNumber);
  window.txtNumber.Text = "TV1";
  window.txtDeep.Text = "x";
  window.dtIn.Value = Date{2026, 11, 24};
  window.number.Value = 0;
  desktop.expectWarning("Missing Required Fields:\ncboType:|rest");
  EXPECT_FALSE(CheckRequiredFields(window));
  window.cboType.ListIndex = 1;
  EXPECT_TRUE(CheckRequiredFields(window));
}

}  // namespace
}  // namespace vantry::test
