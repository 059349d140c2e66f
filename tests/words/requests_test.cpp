#include "words/requests.h"

#include "words/messages.h"

namespace vantry {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string verdictOn(std::string_view code, std::string_view message) {
  const RequestRow* row = findRequest(code);
  return row ? wordsFor(checkMessage(*row, messageOf(message))) : "no such request";
}

struct Sent {
  std::string_view code;
  std::string_view message;
};

// Forms that no window sends. The others are checked where a test of a window expects them.
const Sent kSound[] = {
    {"NEWEGSTS", "EID=1 SID=2 ULI=1"},
    {"VALDLO", "RID=1 PGID=2 MTID=1 BI=2 MI=3 IM=4 EID=1 EQIR=Y EID=2 ETI=3 IFL=N"},
    {"SSD", "IM=12?"},
    {"FIND", "SRCHTAG=10 SRCHTAG=22 SRCHVAL=Lee? SRCHTAG=24 SRCHVAL=Ann SRCHFOR=1 SRCHLOC=4 SRCHOP=AND"},
    {"FIND", "SRCHFOR=0 SRCHLOC=0"},
};

TEST(CheckMessage, TakesFormsThatNoWindowSends) {
  for (const Sent& row : kSound)
    EXPECT_EQ(verdictOn(row.code, row.message), "sound") << row.code << " " << row.message;
}

struct Refused {
  std::string_view code;
  std::string_view message;
  std::string_view verdict;
};

const Refused kRefused[] = {
    {"GETLOCS", "LOC=1", "Unexpected LOC"},
    {"OPOV", "BKADD=Y OI=chief PW=abc", "Unexpected BKADD"},
    {"DELOPS", "", "Missing PID"},
    {"BOOKDAY", "DATE=2026-11-24", "Missing HBK"},
    {"BOOKDAY", "DATE=2026-02-30 HBK=N", "BadValue DATE"},
    {"BOOKDAY", "DATE=2026-11-24 HBK=3", "BadValue HBK"},
    {"UPAI", "PID=4 LTRE=0 HBK=Y CANBK=1 UNBK=0", "BadValue HBK"},
    {"BOOKMTH", "DATE=2026-09-01 HBK=Y MNTHS=Y YRS=Y", "Unexpected YRS"},
    {"NEWROOMD", "RTI=1 RTY=x RNO=1 RNM LOC=1 RCA=30 RDI=1 RDI=2 RDTL=y", "Unexpected RDI"},
    {"UPDEMAINTD", "MID=1 EID=2 BNO=x MNO", "Missing MDI"},
    {"VALEAVL", "BOOKID=0 LOC=1 PGID=2 STIME=2026-11-24 ETIME=2026-11-24 EID=1 EQIR=Y", "Unexpected EQIR"},
    {"VALRMAVL", "BOOKID=1 STIME=2026-11-24 ETIME=2026-11-24 STIME=2026-11-25 ETIME=2026-11-25 RID=1 PGID=1",
     "Unexpected STIME"},
    {"CDELTM", "PGID=1 ADBK=N STIME=2026-11-24 ETIME=2026-11-24", "Missing SDOW"},
    {"VALPLO", "LOC=1 PGID=2 ETI=1", "Missing IFL"},
    {"SSC", "IM=1", "Unexpected IM"},
    {"SSD", "CN=QA76", "Missing CNTY"},
    {"SSD", "PLN=Lee QD=Y", "Unexpected QD"},
    {"DBK", "BOOKID=1 EID=1 IM=2", "Unexpected IM"},
    {"DBK", "BOOKID=1 IM=1 IM=12?", "BadValue IM"},
    {"DELD", "HRS=24", "Missing LOC"},
    {"CHKUPD", "BOOKID=one UDT=yesterday", "BadValue BOOKID"},
    {"FIND", "SRCHVAL=x SRCHFOR=1 SRCHLOC=4", "Unexpected SRCHVAL"},
};

TEST(CheckMessage, NamesTheTagThatMakesAMessageUnfit) {
  for (const Refused& row : kRefused) {
    EXPECT_EQ(verdictOn(row.code, row.message), row.verdict) << row.code << " " << row.message;
  }
}

TEST(WordsOf, SplitsAtBlanksOnly) {
  EXPECT_THAT(wordsOf(""), IsEmpty());
  EXPECT_THAT(wordsOf("  "), IsEmpty());
  EXPECT_THAT(wordsOf("A"), ElementsAre("A"));
  EXPECT_THAT(wordsOf(" A  B-C "), ElementsAre("A", "B-C"));
}

}  // namespace
}  // namespace vantry
