#include <gmock/gmock.h>

#include "frame/frmVersionInfo.h"
#include "support/desk.h"

namespace vantry::test {
namespace {

struct ScriptedFiles : ComponentFiles {
  std::optional<FoundComponent> found;
  std::optional<FoundComponent> find(const std::string&) const override { return found; }
};

TEST(ComponentTable, TheTableAndTheListOfThisProgramAgree) {
  const auto entries = readComponents(resourceVersions(), resourceList());
  ASSERT_TRUE(entries);
  EXPECT_EQ(entries->size(), resourceList().size());
}

TEST(ComponentTable, ATableThatCannotBeTrustedIsNone) {
  const std::string_view good[] = {"a.so~1.0~2.0~+~", "b.so~1.0~1.0~=~"};
  const std::string_view wrongSign[] = {"a.so~1.0~2.0~-~"};
  const std::string_view halfEntry[] = {"a.so~1.0~2.0~"};
  const std::string_view twoInOne[] = {"a.so~1.0~2.0~+~b.so~1.0~1.0~=~"};
  EXPECT_TRUE(readComponents("a.so~1.0~2.0~+~b.so~1.0~1.0~=~", good));
  EXPECT_FALSE(readComponents("a.so~1.0~2.0~+~b.so~1.1~1.0~=~", good)) << "another entry";
  EXPECT_FALSE(readComponents("a.so~1.0~2.0~+~", good)) << "one too few";
  EXPECT_FALSE(readComponents("a.so~1.0~2.0~-~", wrongSign));
  EXPECT_FALSE(readComponents("a.so~1.0~2.0~", halfEntry));
  EXPECT_FALSE(readComponents("a.so~1.0~2.0~+~b.so~1.0~1.0~=~", twoInOne)) << "another count";
}

TEST(ComponentTable, VersionsAreComparedPartByPart) {
  struct Case {
    const char* minimum;
    bool exact;
    std::optional<FoundComponent> found;
    const char* error;
  };
  for (const Case& c :
       {Case{"6.4.0.0", false, std::nullopt, "File is missing."},
        Case{"6.4.0.0", false, FoundComponent{}, "No version Info."},
        Case{"6.4.0.0", false, FoundComponent{"6.4.2", "6.4.2"}, ""},
        Case{"6.4.0.0", false, FoundComponent{"6.10.0", "6.10.0"}, ""},
        Case{"6.4.0.0", false, FoundComponent{"10.0", "10.0"}, ""},
        Case{"6.4.0.0", false, FoundComponent{"6.3.9.9", "6.4"}, "Wrong File Version:  (6.3.9.9)"},
        Case{"6.4.0.0", false, FoundComponent{"6.4", "5.15.8"}, "Wrong Product Version:  (5.15.8)"},
        Case{"6.4.0.0", true, FoundComponent{"6.4", "6.4.0.0"}, ""},
        Case{"6.4.0.0", true, FoundComponent{"6.4.0.1", "6.4"}, "Wrong File Version:  (6.4.0.1)"},
        Case{"", false, FoundComponent{}, ""}, Case{"", false, std::nullopt, "File is missing."}}) {
    ScriptedFiles files;
    files.found = c.found;
    const auto failures = checkComponents({{"a.so", c.minimum, c.minimum, c.exact}}, files);
    EXPECT_EQ(failures.empty() ? "" : failures.front().error, c.error) << c.minimum << ' ' << c.exact;
  }
  const auto range = checkComponents({{"a.so", "6.0.88.62", "6.1.98.16", false}}, ScriptedFiles{});
  EXPECT_EQ(range.front().required, "a.so  -  6.0.88.62..6.1.98.16");
}

using ComponentWindow = Desk;

TEST_F(ComponentWindow, ListsAndPrintsWhatIsWrong) {
  const std::string_view list[] = {"a.so~1.0~1.0~=~", "b.ini~~~+~"};
  desktop.expectModalWindow<frmVersionInfo>("frmVersionInfo", [&](frmVersionInfo& window) {
    ASSERT_EQ(window.lstV_I_Resource.ListCount(), 2);
    EXPECT_EQ(window.lstV_I_Resource.List(0), "a.so  -  1.0           File is missing.");
    window.cmdV_I_PrintList.press();
    window.cmdV_I_Exit.press();
  });
  EXPECT_FALSE(ComponentsAreValid(desktop, clock, ScriptedFiles{}, "a.so~1.0~1.0~=~b.ini~~~+~", list));
  ASSERT_EQ(desktop.pages.printed.size(), 1U);
  EXPECT_THAT(desktop.pages.printed.front(), testing::HasSubstr("Resource Validation Errors"));
  EXPECT_THAT(desktop.pages.printed.front(), testing::HasSubstr("24/11/2026  09:00:00 AM"));
  EXPECT_THAT(desktop.pages.printed.front(), testing::HasSubstr("b.ini           File is missing."));
}

TEST_F(ComponentWindow, TellsWhereTheListWentAndWhyItDidNot) {
  const std::string_view list[] = {"a.so~1.0~1.0~=~"};
  desktop.expectModalWindow<frmVersionInfo>("frmVersionInfo", [&](frmVersionInfo& window) {
    desktop.pages.result = {PrintResult::Outcome::Filed, "/home/desk/list.pdf"};
    desktop.expectInformation("Printed to \"/home/desk/list.pdf\"");
    window.cmdV_I_PrintList.press();
    desktop.pages.result = {PrintResult::Outcome::Failed, "No space is left."};
    desktop.expectCritical("The list could not be printed.\n\nNo space is left.");
    window.cmdV_I_PrintList.press();
    window.cmdV_I_Exit.press();
  });
  EXPECT_FALSE(ComponentsAreValid(desktop, clock, ScriptedFiles{}, list[0], list));
}

TEST_F(ComponentWindow, TablesThatDifferAreToldInABox) {
  desktop.expectBox(Box::Kind::Critical, "Resource List/Count and/or\n Version Table mismatch!", 0,
                    "Resource Error");
  EXPECT_FALSE(ComponentsAreValid(desktop, clock, ScriptedFiles{}, "a.so~1.0~1.0~=~", {}));
}

}  // namespace
}  // namespace vantry::test
