// What a charge assigned, as its window prints it.
#include "reports/assignments.h"

#include <gmock/gmock.h>

#include "booking/editor_fixture.h"
#include "reports/modPrint.h"

namespace vantry::test {
namespace {

struct Assignments : EditorTest {
  modPrint real{app};
  Assignments() { app.setReports(real); }
  std::string printed(std::string_view reply) {
    receive("CBK", "BOOKID=7", 0, reply);
    frmGenAssign window(app, assignedCounts(app.message));
    window.Load();
    window.cmdPrint_Click();
    return desktop.pages.printed.back();
  }
};

TEST_F(Assignments, ThePartsThatShowArePrinted) {
  EXPECT_EQ(printed(R"(
    EID=12 ETY=Set AENO=G1 EIU=Y RNM=Store
    IM=300 TITL=Atlas MDSC=Map LO=Main CP=2 EN=v1 CH=1999 YR=1999
    RID=40 RNM=Hall)"),
            R"({Times Roman 16 bold} Generic Assignments

----

{Times Roman 10 bold} The following room has been assigned and charged:

{Times Roman 10} Hall
----

{Times Roman 10 bold} The following media items have been assigned and charged:

Title | Media Type | Location | Copy Number | Enumeration
{Times Roman 10} Atlas | Map | Main | 2 | v1
----

{Times Roman 10 bold} The following equipment has been assigned and charged:

Equipment Type | Equipment Number | Group? | Room
{Times Roman 10} Set | G1 | Y | Store


Printed: 11/24/2026  09:00 AM
)");
  EXPECT_THAT(printed("IM=300 TITL=Atlas"), testing::Not(testing::HasSubstr("equipment")));
}

}  // namespace
}  // namespace vantry::test
