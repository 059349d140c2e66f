// The details of the inventory's records on paper, from their windows and from the lists.
#include "reports/record_details.h"

#include <gmock/gmock.h>

#include "inventory/inventory_view.h"
#include "inventory/record_fixture.h"

namespace vantry::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kPiece =
    R"(ENO=TV1 BNO=B11 EMA=Tovan EFO=HD EMO=V-55 ESN=S1 STY="Not Charged" EQVP=1200.50
  EQVR=0.90 ESU=Hale EDP=2025-03-01 ENM=2027-01-15 GRPNO=SET1 GRPID=21 CNM="Ink, Ina"
  UNM="Vale, Tom" CDT="2025-03-01 08:00:00" UDT="2026-02-03 08:00:00" CLN="Main Desk" ULN=Branch EHB=7 EHM=2
  TRNM=Hall LNA="Main Desk" LOC=3 RNM=Store RID=2)";
constexpr const char* kRoomRecord =
    R"(head: RNO=102 LOC=3 RNM=Store RCA=40 STY=Available LNA="Main Desk" RST=Y CNM="Ink, Ina" UNM= )"
    R"(CDT="2025-03-01 08:00:00" UDT= CLN="Main Desk" CLI=3 ULN= EHB=7 )"
    R"(| RDI=5 RDTY=Screen RDTL="White, 2 m" | RDI=6 RDTY=Power RDTL="6 sockets")";

struct RecordDetails : RecordFixture {
  void SetUp() override { start(); }
  void expectPiece(const std::string& id) {
    server.expect("GETEGTN", "EID=" + id).replies("ETY=Television ETI=4");
    server.expect("GETEDTL", "EID=" + id).replies(kPiece);
    server.expect("GETARLOC", "LOC=3").replies("RID=2 RNO=102 RNM=Store");
    server.expect("ADDREQP", "EID=" + id + " RID=2");
  }
  void expectNotes(const std::string& id, const char* types) {
    server.expect("GETEGNS", "EID=" + id).replies(types);
  }
  template <class Window>
  Window& open(int kind, const char* id) {
    return dynamic_cast<Window&>(*OpenRecordWindow(*app, {kind, id, kSourceMainWindow}));
  }
  std::string printed() {
    return desktop.pages.printed.empty() ? std::string() : desktop.pages.printed.back();
  }
};

TEST_F(RecordDetails, APieceReadsLikeItsPage) {
  expectPiece("11");
  auto& piece = open<frmEquipment>(kEquipment, "11");
  expectNotes("11", "ENID=1 NX=Y ENTY=Repair\nENID=2 NX=N ENTY=General\nENID=3 NX=Y ENTY=Loan");
  server.expect("GETEGN", "EID=11 ENID=1").fails(1);
  desktop.expectModal("frmError", [](Form& form) { form.Hide(); });
  server.expect("GETEGN", "EID=11 ENID=3").replies("MNO=\"With remote\"");
  piece.mnuFilePrint.choose();
  EXPECT_EQ(printed(), R"({16 bold} Equipment Inventory - TV1

----

{10 bold} Details

{10} Equipment Type:  | Television | Status:  | Not Charged
Number:  | TV1 | Purchase Value:  | $1,200.50
Barcode:  | B11 | Replacement Value:  | $.90
Manufacturer:  | Tovan | Dealer:  | Hale
Format:  | HD | Acquisition Date:  | 01/03/2025
Model Number:  | V-55 | Location:  | Main Desk
Serial Number:  | S1 | Room:  | 102 - Store
Group:  | SET1 | Currently At:  | Hall
----

{10 bold} Notes

{10} Loan:
{10 italic} With remote
----

{10 bold} Properties

{10} Created By:  | Ink, Ina | Updated By:  | Vale, Tom
Create Date:  | 01/03/2025 | Update Date:  | 03/02/2026
Create Location:  | Main Desk | Update Location:  | Branch
Historical Bookings:  | 7 | Historical Maintenance:  | 2


Printed: 11/24/2026  09:00 AM
)");
}

TEST_F(RecordDetails, AGroupListsItsMembers) {
  server.expect("GETEGTN", "EID=21").replies("ETY=\"Video Set\" ETI=8");
  server.expect("GETGDTL", "EID=21")
      .replies("ENO=SET1 BNO=G1 STY=\"Not Charged\" EQVR=1234567 LNA=\"Main Desk\" LOC=3 RNM=Store RID=2");
  server.expect("GETARLOC", "LOC=3").replies("RID=2 RNO=102 RNM=Store");
  server.expect("ADDREQP", "EID=21 RID=2");
  auto& group = open<frmGroup>(kGroup, "21");
  server.expect("GETGEQ", "EID=21").replies("EID=11 BNO=B11 ENO=TV1 EMA=Tovan EMO=V-55 ESN=S1 EFO=HD");
  server.expect("GETEASC", "EID=21");
  server.expect("GETEAVC");
  expectNotes("21", "ENID=1 NX=N ENTY=Repair");
  group.mnuFilePrint.choose();
  EXPECT_EQ(printed(), R"({16 bold} Group Inventory - SET1

----

{10 bold} Details

{10} Equipment Type:  | Video Set
Number:  | SET1
Barcode:  | G1
Location:  | Main Desk
Room:  | 102 - Store
Currently At:  | 
Status:  | Not Charged
Purchase Value:  | $1,234,567.00
----

{10 bold} Members

Number | Manufacturer | Model | Serial | Format
{10} B11 | Tovan | V-55 | S1 | HD
----

{10 bold} Properties

{10} Created By:  |  | Updated By:  | 
Create Date:  |  | Update Date:  | 
Create Location:  |  | Update Location:  | 
Historical Bookings:  | 


Printed: 11/24/2026  09:00 AM
)");
}

TEST_F(RecordDetails, ARoomListsItsDetailsAndItsEquipment) {
  server.expect("GETRTN", "RID=2").replies("RTY=Store RTI=2");
  server.expect("GETRDTL", "RID=2").replies(kRoomRecord);
  auto& room = open<frmRoom>(vantry::kRoom, "2");
  server.expect("GETREQP", "RID=2").replies("EID=11 BNO=B11 ENO=TV1 ETY=Television EIU=N ESDS=Good");
  server.expect("GETGCAT", "RID=2");
  server.expect("GETEAVC", "RID=2");
  server.expect("GETRNS", "RID=2").replies("RNID=1 NX=Y RNTY=Key");
  server.expect("GETRN", "RID=2 RNID=1").replies("MNO=\"At the desk\"");
  room.mnuFilePrint.choose();
  EXPECT_EQ(printed(), R"({16 bold} Room Inventory - 102

----

{10 bold} Details

{10} Room Type:  | Store
Location:  | Main Desk
Number:  | 102
Room Name:  | Store
Storage?  | Yes
Capacity:  | 40
Status:  | Available

{10 bold} Detail Type | Details
{10} Screen | White, 2 m
Power | 6 sockets
----

{10 bold} Equipment

Number | Type | Status
{10} B11 | Television | Good
----

{10 bold} Notes

{10} Key:
{10 italic} At the desk
----

{10 bold} Properties

{10} Created By:  | Ink, Ina | Updated By:  | 
Create Date:  | 01/03/2025 | Update Date:  | 
Create Location:  | Main Desk | Update Location:  | 
Historical Bookings:  | 7


Printed: 11/24/2026  09:00 AM
)");
}

TEST_F(RecordDetails, AMaintenanceListsWhatWasDone) {
  server.expect("GETMDTL", "MID=9").replies(R"(
    head: EID=11 ETY=Television ENO=TV1 BNO=B11 MDI=2026-03-04 MDO= ENM=2027-03-09 MNO="Lamp 3" STY="In Maintenance" CNM="Ink, Ina" UNM=Vale CLN="Main Desk" ULN=Branch CDT="2026-03-04 08:00:00" UDT="2026-03-09 08:00:00" MNT=Yearly
    MDID=1 MTI=2 MTY=Lamp MCO="New lamp")");
  server.expect("GETEGSTY").replies("SID=8 SPR=3 STY=\"In Maintenance\"");
  auto& window = open<frmMaintenance>(kMaintenance, "9");
  window.mnuFilePrint.choose();
  EXPECT_EQ(printed(), R"({16 bold} Maintenance - TV1

----

{10 bold} Details

{10} Number:  | TV1
Barcode:  | B11
In Maintenance?  | Yes
Date In:  | 04/03/2026
Date Out:  | 
Next Maintenance:  | 09/03/2027

{10 bold} Detail Type | Note
{10} Lamp | New lamp
Notes | Lamp 3

Maintenance Note:
Yearly
----

{10 bold} Properties

{10} Created By:  | Ink, Ina | Updated By:  | Vale
Create Date:  | 04/03/2026 | Update Date:  | 09/03/2026
Create Location:  | Main Desk | Update Location:  | Branch


Printed: 11/24/2026  09:00 AM
)");
}

TEST_F(RecordDetails, ANewRecordPrintsItsControls) {
  auto& room = open<frmRoom>(vantry::kRoom, "");
  room.txtROOM_NAME.type("Attic");
  PrintRoomDetail(*app, room);
  EXPECT_THAT(printed(), HasSubstr("Room Name:  | Attic\nStorage?  | No\n"));
}

TEST_F(RecordDetails, AListPrintsTheDetailsOfTheSelectedRowOrOfAll) {
  main().showView(ViewId::Equipment);
  server.expect("GETEITM", "ETI=4").replies("EID=11 BNO=B11\nEID=12 BNO=B12");
  auto& view = viewAs<InventoryView>(main(), ViewId::Equipment);
  view.tvwDB.click("4|Television");
  view.fa.click(2, 1);
  const auto expect = [this](const char* id) {
    expectPiece(id);
    expectNotes(id, "ENID=1 NX=N ENTY=Repair");
  };
  expect("12");
  main().menus.mnuFilePrintDetail.choose();
  EXPECT_EQ(desktop.pages.printed.size(), 1U);
  expect("11");
  expect("12");
  main().menus.mnuPopupToolsPrintDetailAll.choose();
  EXPECT_EQ(desktop.pages.printed.size(), 3U);
  EXPECT_EQ(windowsShown(), 1) << "nobody sees their windows";
  EXPECT_EQ(app->windows.Count(), 1) << "and none stays";

  expect("11");
  desktop.pages.result = {PrintResult::Outcome::Failed, "No paper."};
  desktop.expectCritical("The report could not be printed.\n\nNo paper.");
  main().menus.mnuFilePrintDetailAll.choose();
  server.checkAllCame();  // the second record is not even read
}

}  // namespace
}  // namespace vantry::test
