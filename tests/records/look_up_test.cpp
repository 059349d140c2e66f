#include "records/look_up.h"

#include "inventory/frmMultBarOrNo.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

constexpr const char* kTwoHits = R"(head: SRCHCNT=2
    EID=11 ENO=TV1 BNO=5500 STY="Not Charged" ETY=Television EIU=N RID=4
    EID=12 ENO=SET1 BNO=5500 STY=Charged ETY="TV and VCR" EIU=Y RID=5)";

class LookUp : public Desk {
 public:
  void SetUp() override { start(); }
  void seek(std::string_view text, bool byNumber = false) {
    app->lookUp.text = text;
    (byNumber ? FindEquipmentByNumber : FindEquipmentByBarcode)(*app);
  }
};

TEST_F(LookUp, OneHitIsTheResultAndAsksNothing) {
  app->message.Add("EPT", "2");  // the caller narrows it
  server.expect("GETIBYB", "EPT=2 BARORNO=0 BNO=5500")
      .replies(R"(head: SRCHCNT=1 | EID=11 ENO=TV1 BNO=5500 STY="Not Charged" ETY=Television EIU=N RID=4)");
  seek("5500");
  EXPECT_EQ(app->lookUp.LookupStatus, "");
  ASSERT_EQ(app->lookUp.LookupRows.size(), 1u);
  const LookUpRow& hit = app->lookUp.LookupRows[0];
  EXPECT_EQ(
      hit.EID + '|' + hit.ENO + '|' + hit.BNO + '|' + hit.STY + '|' + hit.ETY + '|' + hit.EIU + '|' + hit.RID,
      "11|TV1|5500|Not Charged|Television|N|4");
  EXPECT_EQ(app->lookUp.barOrNumberMode, 0);
  EXPECT_TRUE(main().Enabled);
}

TEST_F(LookUp, NothingFoundSaysSoInItsOwnWords) {
  server.expect("GETIBYB", "BARORNO=0 BNO=1").replies("head: SRCHCNT=0");
  desktop.expectWarning("Barcode Not Found!");
  seek("1");
  EXPECT_EQ(app->lookUp.LookupStatus, "Not Found");
  server.expect("GETIBYB", "BARORNO=1 ENO=X").replies("head: SRCHCNT=0");
  desktop.expectWarning("Equipment Number Not Found!");
  seek("X", true);
  EXPECT_EQ(app->lookUp.LookupStatus, "Not Found");
}

TEST_F(LookUp, AFailureIsReportedAndFindsNothingOfTheLookUpBefore) {
  server.expect("GETIBYB", "BARORNO=0 BNO=5500")
      .replies("head: SRCHCNT=1 | EID=11 ENO=TV1 BNO=5500 STY=S ETY=T EIU=N RID=4");
  seek("5500");
  expectFailure("GETIBYB", "BARORNO=0 BNO=5501");
  desktop.expectWarning("Barcode Not Found!");
  seek("5501");
  EXPECT_EQ(app->lookUp.LookupStatus, "Not Found");
  EXPECT_TRUE(app->lookUp.LookupRows.empty());
  EXPECT_TRUE(main().Enabled);
}

TEST_F(LookUp, TheRowPickedAmongSeveralIsTheResult) {
  struct Case {
    const char* name;
    std::function<void(frmMultBarOrNo&)> pick;
    const char* status;
    const char* result;
  };
  const std::vector<Case> cases = {
      {"double click", [](frmMultBarOrNo& w) { w.fa.doubleClick(2, 1); }, "", "12"},
      {"OK on the first row, which is selected", [](frmMultBarOrNo& w) { w.cmdOK.press(); }, "", "11"},
      {"row and Enter",
       [](frmMultBarOrNo& w) {
         w.fa.selectRow(2);
         w.cmdOK.press();
       },
       "", "12"},
      {"cancelled", [](frmMultBarOrNo& w) { w.cmdCancel.press(); }, "CANCEL", ""},
      {"closed", [](frmMultBarOrNo& w) { w.closeByOperator(); }, "CANCEL", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    server.expect("GETIBYB", "BARORNO=0 BNO=5500").replies(kTwoHits);
    desktop.expectModalWindow<frmMultBarOrNo>("frmMultBarOrNo", [&](frmMultBarOrNo& window) {
      EXPECT_TRUE(window.lblHeader.Caption.get().starts_with("The barcode you have entered"));
      EXPECT_EQ(window.fa.TextMatrix(2, 5), "Yes");
      EXPECT_EQ(app->lookUp.barOrNumberMode, 2);
      c.pick(window);
    });
    seek("5500");
    EXPECT_EQ(app->lookUp.LookupStatus, c.status);
    if (!*c.result) continue;
    ASSERT_FALSE(app->lookUp.LookupRows.empty());
    EXPECT_EQ(app->lookUp.LookupRows[0].EID, c.result);
  }
}

}  // namespace
}  // namespace vantry::test
