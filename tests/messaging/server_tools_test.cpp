#include "messaging/server_tools.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "messaging/modGlobal.h"
#include "messaging/server_session.h"
#include "platform/controls.h"
#include "support/scripted_desktop.h"
#include "support/scripted_server.h"

namespace vantry::test {
namespace {

struct Tools : testing::Test {
  ScriptedDesktop desktop;
  Windows windows{desktop};
  ServerTools tools{desktop};
  Form form{windows, "frmTest"};
  DateField date{form, "dtServerDate"};
  TimeField time{form, "txtServerTime"};
};

TEST_F(Tools, DatesAndTimesGoToTheServerInItsForm) {
  EXPECT_EQ(ServerTools::GetControlDate(date), "");
  EXPECT_EQ(ServerTools::GetControlDate(date, &time), "");
  time.Value = Time{9, 5, 0};
  EXPECT_EQ(ServerTools::GetControlDate(date, &time), "") << "a time without its date says nothing";
  date.Value = Date{2026, 3, 4};
  EXPECT_EQ(ServerTools::GetControlDate(date), "2026-03-04");
  EXPECT_EQ(ServerTools::GetControlDate(date, &time), "2026-03-04 09:05:00");
  time.Value = std::nullopt;
  EXPECT_EQ(ServerTools::GetControlDate(date, &time), "2026-03-04 00:00:00");
}

TEST_F(Tools, TheServersMomentsShowInTheControls) {
  struct Case {
    std::string_view value;
    std::optional<Date> date;
    std::optional<Time> time;
  };
  const Date day{2026, 11, 24};
  const std::vector<Case> cases = {
      {"2026-11-24 09:30:15", day, Time{9, 30, 15}}, {"2026-11-24", day, Time{0, 0, 0}},
      {"2026-02-29", std::nullopt, std::nullopt},    {"2026-11-24 24:00:00", std::nullopt, std::nullopt},
      {"24.11.2026", std::nullopt, std::nullopt},    {"0930", std::nullopt, Time{9, 30, 0}},
      {"2400", std::nullopt, std::nullopt},          {"0960", std::nullopt, std::nullopt},
      {"09:3", std::nullopt, std::nullopt},          {"", std::nullopt, std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.value);
    date.Value = Date{2000, 1, 1};
    time.Value = Time{1, 2, 3};
    ServerTools::PutControlDate(c.value, date);
    ServerTools::PutControlTime(c.value, time);
    EXPECT_TRUE(date.Value.get() == c.date);
    EXPECT_TRUE(time.Value.get() == c.time);
  }
}

TEST(NextToken, TakesTokensUntilItsPositionIsZero) {
  struct Case {
    std::string_view text;
    std::string_view delimiter;
    std::vector<std::string> tokens;
  };
  const std::vector<Case> cases = {
      {"4|17|9", "|", {"4", "17", "9"}},
      {"4", "|", {"4"}},
      {"", "|", {""}},
      {"4||9", "|", {"4", "", "9"}},
      {"|4", "|", {"", "4"}},
      {"4|", "|", {"4", ""}},
      {"|", "|", {"", ""}},
      {"a, b,c", ", ", {"a", "b,c"}},
      {std::string_view("x=1\0y=2", 7), std::string_view("\0", 1), {"x=1", "y=2"}},
      {"a|b", "", {"a|b"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    std::vector<std::string> tokens;
    int position = 1;
    while (position != 0 && tokens.size() < 9)
      tokens.push_back(ServerTools::NextToken(position, c.text, c.delimiter));
    EXPECT_EQ(tokens, c.tokens);
  }
}

TEST(NextToken, StartsWhereItIsTold) {
  int position = 3;
  EXPECT_EQ(ServerTools::NextToken(position, "ab|cd|ef", "|"), "");
  EXPECT_EQ(position, 4);
  position = 5;
  EXPECT_EQ(ServerTools::NextToken(position, "ab|cd|ef", "|"), "d");
  EXPECT_EQ(position, 7);
  for (const int beyond : {0, -1, 9, 100}) {
    position = beyond;
    EXPECT_EQ(ServerTools::NextToken(position, "ab|cd|ef", "|"), "");
    EXPECT_EQ(position, 0);
  }
}

TEST_F(Tools, APreparedWindowIsEnabledAndStandsOpenWithoutFocus) {
  Button button(form, "cmdOK", "&OK");
  button.SetFocus();
  form.Enabled = false;
  form.WindowState = FormState::Minimized;
  tools.PrepareForm(form);
  EXPECT_TRUE(form.Enabled);
  EXPECT_EQ(form.WindowState, FormState::Normal);
  EXPECT_EQ(form.ActiveControl(), nullptr);
  form.WindowState = FormState::Maximized;
  tools.PrepareForm(form);
  EXPECT_EQ(form.WindowState, FormState::Maximized);
}

TEST_F(Tools, OnlyAQuestionThatNeedsNoWindowStopsTheStart) {
  ScriptedServer server;
  ServerSession session(server);
  const auto stops = [&](std::string_view commandLine) {
    session.Initialise("Vantry", commandLine);
    return tools.CheckStartup(session);
  };
  EXPECT_FALSE(stops(""));
  EXPECT_FALSE(stops("/nocheck https://desk.example/--version"));
  EXPECT_TRUE(stops("--version"));
  EXPECT_TRUE(stops("/nocheck  --help"));
}

TEST(HelpSection, LeadsEachLineByABlankAndTurnsTildesIntoTabs) {
  std::string folder = (std::filesystem::temp_directory_path() / "vantry-help-XXXXXX").string();
  ASSERT_NE(::mkdtemp(folder.data()), nullptr);
  std::filesystem::create_directory(folder + "/misc");
  std::ofstream(folder + "/misc/vantryhelp.ini") << "[Dates]\r\nPick the days.\r\n~One after another.\r\n"
                                                 << "[Empty]\n[Last]\nA~b~c\n";
  IniFile helpMap(folder);
  helpMap.Open("\\misc\\vantryhelp.ini");
  EXPECT_EQ(modGlobal::ReadHelpSection(helpMap, "Dates"), " Pick the days.\n \tOne after another.");
  EXPECT_EQ(modGlobal::ReadHelpSection(helpMap, "last"), " A\tb\tc");
  EXPECT_EQ(modGlobal::ReadHelpSection(helpMap, "Empty"), " ");
  EXPECT_EQ(modGlobal::ReadHelpSection(helpMap, "Missing"), " ");
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace vantry::test
