// The guide for librarians, followed to the letter: its files are written, its commands are run.

#include <filesystem>

#include <gmock/gmock.h>

#include "server/program/program_case.h"
#include "server/requests/runner.h"

namespace vantry::server {
namespace {

using test::Outcome;
using test::ProgramTest;
using testing::HasSubstr;

constexpr std::string_view fence = "```";
constexpr std::string_view nameOfFile = " name=";

/// A fenced block of the page: "sh" for commands, or a word and the name of the file that it shows.
struct Block {
  std::string info;
  std::vector<std::string> lines;

  [[nodiscard]] std::string fileName() const {
    const std::size_t at = info.find(nameOfFile);
    return at == std::string::npos ? std::string() : info.substr(at + nameOfFile.size());
  }
};

std::vector<Block> blocksOf(const std::string& page) {
  std::vector<Block> blocks;
  std::ifstream input(page);
  bool inside = false;
  for (std::string line; std::getline(input, line);) {
    if (line.starts_with(fence)) {
      inside = !inside;
      if (inside) blocks.push_back({line.substr(fence.size()), {}});
    } else if (inside) {
      blocks.back().lines.push_back(line);
    }
  }
  return blocks;
}

class Guide : public ProgramTest {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(folder.file("bin"));
    std::filesystem::create_symlink(VANTRY_SERVER_PROGRAM, folder.file("bin/vantry-server"));
    std::ofstream(folder.file("password")) << password << '\n';
  }

  /// As a reader types it in the practice folder.
  Outcome type(const std::string& line) {
    return shell("cd " + folder.file("") +
                 " && unset VANTRY_DATABASE && export VANTRY_CONFIG=" + folder.file("library.conf") +
                 " PATH=\"" + folder.file("bin") + ":$PATH\" && { " + line + "\n} < password");
  }

  /// Writes the files and runs the commands, in the order of the page. Returns how many commands it ran.
  int follow() {
    int commands = 0;
    for (const Block& block : blocksOf(VANTRY_DOCS "/guide.md")) {
      if (const std::string name = block.fileName(); !name.empty()) {
        std::ofstream file(folder.file(name));
        for (const std::string& line : block.lines) file << line << '\n';
      } else if (block.info == "sh") {
        for (const std::string& line : block.lines) {
          const Outcome outcome = type(line);
          EXPECT_EQ(outcome.code, 0) << line << '\n' << outcome.text;
          ++commands;
        }
      }
    }
    return commands;
  }

  const std::string password = "a-good-password";
};

/// The doctor is content, and a desk may do what the page says of its example of rules.
TEST_F(Guide, LeadsToADeskThatCanBook) {
  ASSERT_GT(follow(), 20) << "the page is there, and its blocks are found";
  EXPECT_THAT(type("vantry-server doctor").text, testing::StartsWith("Nothing is wrong.\n"));

  Database library(database);
  RequestRunner runner(
      library, [] { return makeMoment(2027, 1, 4); }, HashCost::Quick);
  const std::string token = runner.login("dana", password, "127.0.0.1").token;
  int requests = 0;
  const auto ask = [&](const char* code, const std::vector<TagValue>& tags) {
    return runner.run({.token = token, .code = code, .requestId = std::to_string(++requests), .tags = tags})
        .json;
  };
  const std::string desk = value("select id from locations where name = 'Main Desk'");
  const std::string students = value("select id from patron_groups where name = 'Students'");
  ask("SLL", {{"LOC", desk}});

  struct Case {
    const char* start;
    const char* startDay;  ///< 1 is Sunday
    const char* end;
    const char* endDay;
    const char* answer;
  };
  const Case ofRooms[] = {
      {"2027-01-07 18:00:00", "5", "2027-01-07 20:00:00", "5", R"("rc":0)"},
      {"2027-01-07 18:00:00", "5", "2027-01-07 21:00:00", "5", R"("VUF":"170")"},
      {"2027-01-07 18:00:00", "5", "2027-01-08 09:00:00", "6", R"("rc":0)"},
      {"2027-12-24 10:00:00", "6", "2027-12-24 11:00:00", "6", R"("VUF":"168")"},
  };
  const std::string room = value("select id from rooms where number = '102'");
  for (const Case& each : ofRooms) {
    EXPECT_THAT(ask("CRMTM", {{"PGID", students},
                              {"ADBK", "N"},
                              {"STIME", each.start},
                              {"SDOW", each.startDay},
                              {"ETIME", each.end},
                              {"EDOW", each.endDay},
                              {"RID", room}}),
                HasSubstr(each.answer))
        << each.start << " to " << each.end;
  }

  const std::string camera = value("select id from equipment where number = 'CAM1'");
  const auto bookCamera = [&](const char* end) {
    return ask("VEQUSG", {{"BOOKID", "0"},
                          {"EID", camera},
                          {"PGID", students},
                          {"LOC", desk},
                          {"STIME", "2027-01-07 10:00:00"},
                          {"ETIME", end}});
  };
  EXPECT_THAT(bookCamera("2027-01-09 10:00:00"), HasSubstr(R"("rc":0)"));
  EXPECT_THAT(bookCamera("2027-01-09 10:30:00"), HasSubstr(R"("VUF":"153")")) << "two days are the longest";
}

}  // namespace
}  // namespace vantry::server
