// The window of a maintenance record.
#include "inventory/frmMaintenance.h"

#include "inventory/frmBarcodes.h"
#include "inventory/frmMaintDetails.h"
#include "inventory/record_fixture.h"

namespace vantry::test {
namespace {

constexpr const char* kRecord = R"(
  head: EID=11 ETY=Television ENO=TV1 BNO=B11 MDI=2026-03-04 MDO=2026-03-09 ENM=2027-03-09 MNO="Lamp 3" STY="In Maintenance" CNM="Ink, Ina" UNM=Vale CLN="Main Desk" ULN=Branch CDT="2026-03-04 08:00:00" UDT="2026-03-09 08:00:00" MNT=Yearly
  MDID=1 MTI=2 MTY=Lamp MCO="New lamp"
  MDID=2 MTI=3 MTY=Cleaning MCO=)";
constexpr const char* kStatuses = "SID=6 SPR=9 STY=\"Not Charged\"\nSID=8 SPR=3 STY=\"In Maintenance\"";

struct FrmMaintenanceTest : RecordFixture {
  void SetUp() override { start(); }
  frmMaintenance& openAs(const RecordOpening& opening) {
    server.expect("GETMDTL", "MID=" + opening.id).replies(kRecord);
    server.expect("GETEGSTY").replies(kStatuses);
    return dynamic_cast<frmMaintenance&>(*OpenRecordWindow(*app, opening));
  }
  frmMaintenance& open(int source = kSourceMainWindow) { return openAs({kMaintenance, "9", source}); }
  /// A new record from the main window, about the piece with this barcode.
  frmMaintenance& openNew() {
    app->context.categories.years = {"2026"};
    desktop.expectInput("Enter an Equipment Barcode.", "B11");
    server.expect("GETIBYB", "EPT=1 BARORNO=0 BNO=B11")
        .replies("head: SRCHCNT=1\nEID=11 ENO=TV1 BNO=B11 ETY=Television");
    server.expect("GETEGSTY").replies(kStatuses);
    return dynamic_cast<frmMaintenance&>(*OpenRecordWindow(*app, {kMaintenance, "", kSourceMainWindow}));
  }
  /// The window of barcodes opens, and leaves another one active.
  void expectBarcode() {
    server.expect("GETEGBTY");
    server.expect("GETEGBAR", "EID=11").replies("BNO=b12 BSI=1");
    desktop.expectModalWindow<frmBarcodes>("frmBarcodes", [](frmBarcodes& dialog) {
      dialog.Unload();
      dialog.barcode = "b12";
    });
  }
  void addDetail(frmMaintenance& window) {
    server.expect("GETMDTY").replies("MTI=3 MTY=Cleaning\nMTI=2 MTY=Lamp");
    desktop.expectModalWindow<frmMaintDetails>("frmMaintDetails", [](frmMaintDetails& dialog) {
      dialog.fa.click(2, 1);
      dialog.txtDetails.type("Old lamp");
      dialog.cmdOK.press();
    });
    window.details.cmdAddDetail.press();
  }
  static std::string dates(const frmMaintenance& window) {
    return window.dtMAINT_DATEIN.shortDate() + "|" + window.dtMAINT_DATEOUT.shortDate() + "|" +
           window.dtEQUIP_NXT_MAINT.shortDate();
  }
};

TEST_F(FrmMaintenanceTest, ShowsARecordWithItsDetails) {
  frmMaintenance& window = open();
  EXPECT_EQ(window.Caption, "Maintenance - TV1");
  EXPECT_EQ(dates(window), "04/03/2026|09/03/2026|09/03/2027");
  EXPECT_TRUE(window.chkIN_MAINT.Value);
  EXPECT_EQ(window.chkIN_MAINT.Tag, "8");
  EXPECT_EQ(window.details.fa.TextMatrix(1, 1) + window.details.fa.TextMatrix(1, 2), "LampNew lamp");
  EXPECT_EQ(window.details.fa.Rows, 3);
  EXPECT_EQ(window.txtMAINTENANCE_NOTE.Text.get() + window.propertyFields.txtCR_OPNAME.Text.get(),
            "YearlyInk, Ina");
  EXPECT_FALSE(window.Dirty);

  RecordOpening copy(kMaintenance, "9", kSourceMainWindow);
  copy.copy = true;
  frmMaintenance& copied = openAs(copy);
  EXPECT_EQ(copied.Caption, "Copy of Maintenance  - TV1");
  EXPECT_EQ(copied.txtMAINTENANCE_NOTE.Text.get() + copied.propertyFields.txtCR_OPNAME.Text.get(), "");
  EXPECT_TRUE(copied.Dirty && !copied.mnuFilePrint.Enabled);
  server
      .expect("NEWEMAINTD",
              "EID=11 BNO=B11 MNO=\"Lamp 3\" MDI=2026-03-04 MDO=2026-03-09 ENM=2027-03-09 MTI=2 MCO=\"New "
              "lamp\" MTI=3 MCO=")
      .replies("MID=10 CNM=Vale");
  server.expect("REMEGSTS", "EID=11 SID=8 ULI=3");
  server.expect("NEWEGSTS", "EID=11 SID=8 ULI=3");
  expectCategories();
  save(copied);
  EXPECT_EQ(copied.Caption, "Maintenance - TV1");
}

TEST_F(FrmMaintenanceTest, ANewRecordIsAboutThePieceThatWasNamed) {
  frmMaintenance& window = openNew();
  EXPECT_EQ(window.Caption, "Maintenance - (New)");
  EXPECT_EQ(window.txtEQUIP_TYPE.Text.get() + window.txtEQUIP_NO.Text.get() + window.txtBARCODE_NO.Text.get(),
            "TelevisionTV1B11");
  EXPECT_EQ(dates(window), "24/11/2026||");
  EXPECT_TRUE(window.mnuView.Enabled) << "a new record has both pages";
  server.expect("NEWEMAINTD", "EID=11 BNO=B11 MNO= MDI=2026-11-24 MDO= ENM=").fails(-98, "CANTREAD=BNO");
  desktop.expectWarning("This barcode is none of the piece's.\n\nNothing was stored.");
  server.expect("REMEGSTS", "EID=11 SID=8 ULI=3");
  save(window);
  window.Unload();
}

TEST_F(FrmMaintenanceTest, ANewRecordKeepsThePiecesNextDateAndAFailedStatusDoesNotHoldItUp) {
  frmMaintenance& window = openNew();
  server.expect("NEWEMAINTD", "EID=11 BNO=B11 MNO= MDI=2026-11-24 MDO= ENM=")
      .replies("MID=12 CNM=Vale ENM=2027-05-01");
  server.expect("REMEGSTS", "EID=11 SID=8 ULI=3").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  save(window);
  EXPECT_TRUE(window.SaveOk) << "a failed status does not hold the save up";
  EXPECT_EQ(window.Tag, "3 - 12");
  EXPECT_TRUE(window.txtBARCODE_NO.Locked && window.mnuFilePrint.Enabled);

  server.expect("UPDEMAINTD", "MID=12 EID=11 BNO=B11 MNO= MDI=2026-11-24 MDO= ENM=2027-05-01");
  server.expect("REMEGSTS", "EID=11 SID=8 ULI=3");
  desktop.expectInput("Enter an Equipment Barcode.", std::nullopt);
  window.barBooking.choose(window.barBooking.tool("abSaveAndNew"));
}

TEST_F(FrmMaintenanceTest, TheDatesKeepTheirOrder) {
  frmMaintenance& window = open();
  struct Round {
    DateField frmMaintenance::*field;
    std::optional<Date> entered;
    const char* dates;
  };
  using W = frmMaintenance;
  for (const Round& round : {
           Round{&W::dtMAINT_DATEIN, Date{2026, 3, 15}, "15/03/2026|15/03/2026|09/03/2027"},
           Round{&W::dtMAINT_DATEOUT, Date{2026, 3, 1}, "01/03/2026|01/03/2026|09/03/2027"},
           Round{&W::dtMAINT_DATEOUT, Date{2028, 1, 1}, "01/03/2026|01/01/2028|01/01/2028"},
           Round{&W::dtEQUIP_NXT_MAINT, Date{2027, 1, 1}, "01/03/2026|01/01/2028|01/01/2028"},
           Round{&W::dtEQUIP_NXT_MAINT, std::nullopt, "01/03/2026|01/01/2028|"},
           Round{&W::dtMAINT_DATEOUT, std::nullopt, "01/03/2026||"},
           Round{&W::dtMAINT_DATEOUT, Date{2026, 4, 1}, "01/03/2026|01/04/2026|01/04/2026"},
           Round{&W::dtMAINT_DATEIN, std::nullopt, "24/11/2026|24/11/2026|24/11/2026"},
       }) {
    (window.*round.field).enter(round.entered);
    EXPECT_EQ(dates(window), round.dates);
  }
  EXPECT_TRUE(window.Dirty);
}

TEST_F(FrmMaintenanceTest, WithoutADayInNothingIsSaved) {
  frmMaintenance& window = open();
  window.dtMAINT_DATEIN.type("31.31.2026", {2026, 11, 24});
  desktop.expectInformation("Please enter a valid date for Date In.");
  save(window);
  EXPECT_FALSE(window.SaveOk);
  app->lookUp.LookupRows.assign(1, LookUpRow{});
  for (const bool withDetail : {false, true}) {
    server.expect("GETEGSTY").replies(kStatuses);
    auto& fresh =
        dynamic_cast<frmMaintenance&>(*OpenRecordWindow(*app, {kMaintenance, "", kSourceEquipment}));
    if (withDetail) addDetail(fresh);
    EXPECT_EQ(dates(fresh), "||");
    desktop.expectWarning("Missing Required Fields:\n\nDate In");
    save(fresh);
    EXPECT_FALSE(fresh.SaveOk);
  }
}

TEST_F(FrmMaintenanceTest, AFailedStepOfASaveIsToldAndTheOthersFollow) {
  for (const bool isNew : {true, false}) {
    for (const std::string failing : {"NEWEMAINTD", "UPDEMAINTD", "REMEGSTS", "NEWEGSTS"}) {
      SCOPED_TRACE(failing + (isNew ? " new" : ""));
      start();
      app->context.categories.years = {"2026"};
      frmMaintenance& window = isNew ? openNew() : open();
      window.chkIN_MAINT.Value = true;
      const auto expectStep = [&](const char* code, const char* tags) {
        auto step = server.expect(code, tags);
        if (code != failing) return;
        step.fails(108);
        desktop.expectWarning("Barcode is not active!");
      };
      if (isNew)
        expectStep("NEWEMAINTD", "EID=11 BNO=B11 MNO= MDI=2026-11-24 MDO= ENM=");
      else
        expectStep("UPDEMAINTD",
                   "MID=9 EID=11 BNO=B11 MNO=\"Lamp 3\" MDI=2026-03-04 MDO=2026-03-09 ENM=2027-03-09 MTI=2 "
                   "MCO=\"New lamp\" MTI=3 MCO=");
      expectStep("REMEGSTS", "EID=11 SID=8 ULI=3");
      expectStep("NEWEGSTS", "EID=11 SID=8 ULI=3");
      save(window);
      EXPECT_TRUE(window.SaveOk && !window.Dirty);
    }
  }
}

TEST_F(FrmMaintenanceTest, TheStatusFollowsTheBoxAndThePieceShowsTheRecord) {
  frmMaintenance& window = open(kSourceEquipment);
  window.chkIN_MAINT.toggle();
  window.details.fa.click(1, 1);
  desktop.expectQuestion("Are you sure you want to REMOVE this detail?", true);
  window.details.cmdRemoveDetail.press();
  addDetail(window);
  server
      .expect("UPDEMAINTD",
              "MID=9 EID=11 BNO=B11 MNO=\"Lamp 3\" MDI=2026-03-04 MDO=2026-03-09 ENM=2027-03-09 MTI=3 MCO= "
              "MTI=2 MCO=\"Old lamp\"")
      .replies("UNM=Ink");
  server.expect("REMEGSTS", "EID=11 SID=8 ULI=3");
  save(window);
  EXPECT_EQ(window.propertyFields.txtUP_OPNAME.Text, "Ink");

  expectBarcode();
  server.expect("UPDEMAINTD", "MID=9 EID=11 BNO=B12").replies("UNM=Vale");
  EXPECT_TRUE(window.txtBARCODE_NO.pressKey("F4"));
  EXPECT_EQ(window.txtBARCODE_NO.Text, "B12");

  desktop.expectQuestion("Are you sure you want to DELETE this record?", true);
  server.expect("REMMAINT", "MID=9");
  window.mnuFileDelete.choose();
  EXPECT_FALSE(FindRecordWindow(*app, kMaintenance, "9"));
}

TEST_F(FrmMaintenanceTest, ABarcodeStoresANewRecordAtOnce) {
  frmMaintenance& window = openNew();
  expectBarcode();
  server.expect("NEWEMAINTD", "EID=11 BNO=B12 MNO= MDI=2026-11-24 MDO= ENM=").replies("MID=12");
  server.expect("REMEGSTS", "EID=11 SID=8 ULI=3");
  window.txtBARCODE_NO.doubleClick();
  EXPECT_EQ(window.Tag.get() + window.txtBARCODE_NO.Text.get(), "3 - 12B12");

  window.txtMEDIA_NOTE.type(std::string(1'000'000, 'x'));
  desktop.expectWarning(kTooLong);
  save(window);
  EXPECT_TRUE(window.Dirty && !window.SaveOk) << "the note is not lost";
  window.txtMEDIA_NOTE.type("Lamp");
  server.expect("UPDEMAINTD", "MID=12 EID=11 BNO=B12 MNO=Lamp MDI=2026-11-24 MDO= ENM=");
  server.expect("REMEGSTS", "EID=11 SID=8 ULI=3");
  save(window);
}

TEST_F(FrmMaintenanceTest, WhoMayOnlyLookChangesNothing) {
  start(onlyRights("EQMV"));
  frmMaintenance& window = open();
  window.details.fa.click(1, 1);
  EXPECT_FALSE(window.commands.save.usable() || window.commands.copy.usable() ||
               window.commands.remove.usable());
  EXPECT_FALSE(window.details.cmdAddDetail.Enabled || window.details.cmdEditDetail.Enabled);
  EXPECT_FALSE(window.dtMAINT_DATEIN.Enabled || window.chkIN_MAINT.Enabled);
  EXPECT_TRUE(window.txtMEDIA_NOTE.Locked);
}

}  // namespace
}  // namespace vantry::test
