// The guides, followed to the letter: their files are written, their commands are run.

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>

#include <gmock/gmock.h>

#include "server/program/program_case.h"

namespace vantry::server {
namespace {

using test::Outcome;
using test::ProgramTest;

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

/// The code within the lines of a page, and the lines of its blocks that are not run.
std::set<std::string> commandsIn(const std::string& page) {
  std::set<std::string> commands;
  for (const Block& block : blocksOf(page)) {
    if (block.info == "console") commands.insert(block.lines.begin(), block.lines.end());
  }
  std::ifstream input(page);
  for (std::string line; std::getline(input, line);) {
    if (line.starts_with(fence)) continue;
    std::size_t start = line.find('`');
    while (start != std::string::npos) {
      const std::size_t end = line.find('`', start + 1);
      if (end == std::string::npos) break;
      commands.insert(line.substr(start + 1, end - start - 1));
      start = line.find('`', end + 1);
    }
  }
  return commands;
}

/// What a reader types and this test does not, by its beginning.
struct NotRun {
  std::string_view command;
  std::string_view why;
};
constexpr NotRun notRun[] = {
    {"sudo apt install ", "packaging/test-packages does it in a system of its own"},
    {"sudo vantry-server setup", "writes to /etc; the same without root is run"},
    {"vantry-server setup", "asks on a terminal, as setup_program_test does"},
    {"vantry-server serve", "serves until it is ended, as serving_test does"},
    {"vantry --server ", "opens windows"},
    {"mkdir ~/practice", "the test has a folder of its own"},
    {"cd ~/practice", "the test has a folder of its own"},
    {"export VANTRY_CONFIG=", "holds for a whole terminal, so every command of the test has it"},
    {"cp /usr/share/vantry/books/files/", "the files are taken from the pages themselves"},
    {"sudo install ", "writes to /etc"},
    {"sudo nano ", "is an editor"},
    {"sudo -u postgres ", "needs a PostgreSQL of the system"},
    {"sudo --preserve-env=VANTRY_DATABASE ", "needs a PostgreSQL of the system"},
    {"export VANTRY_DATABASE=", "is for the line behind it"},
    {"systemctl ", "needs systemd as the first process"},
    {"journalctl ", "needs systemd as the first process"},
};

bool isExcused(const std::string& line) {
  return std::ranges::any_of(notRun, [&](const NotRun& each) { return line.starts_with(each.command); });
}

/// Whether the help has the word, and not only the beginning of a longer one.
bool hasOption(const std::string& help, const std::string& option) {
  for (std::size_t at = help.find(option); at != std::string::npos; at = help.find(option, at + 1)) {
    const char next = (help + ' ')[at + option.size()];
    if (next != '-' && std::isalnum(static_cast<unsigned char>(next)) == 0) return true;
  }
  return false;
}

std::string faultOfOptions(const std::string& command, const std::string& help) {
  std::istringstream words(command);
  for (std::string word; words >> word;) {
    const std::string option = word.substr(0, word.find_first_of("=,.;"));
    if (option.starts_with("--") && !hasOption(help, option)) return "there is no " + option;
  }
  return "";
}

class Guide : public ProgramTest {
 protected:
  void SetUp() override {
    std::filesystem::create_directory(folder.file("bin"));
    std::filesystem::create_symlink(VANTRY_SERVER_PROGRAM, folder.file("bin/vantry-server"));
    std::ofstream(folder.file("password")) << password << '\n';
  }

  /// As a reader types it in the practice folder, up to the first command that fails.
  Outcome type(const std::string& commands) {
    return shell("set -e; cd " + folder.file("") +
                 "; unset VANTRY_DATABASE; export VANTRY_CONFIG=" + folder.file("library.conf") + " PATH=\"" +
                 folder.file("bin") + ":$PATH\"; { " + commands + "\n} < password");
  }

  /// Writes the files and runs the commands, in the order of the page. Returns how many commands it ran.
  std::size_t follow(const std::string& page) {
    std::size_t commands = 0;
    for (const Block& block : blocksOf(VANTRY_DOCS "/" + page)) {
      EXPECT_NE(block.info, "") << page << " has a block that is not marked: " << block.lines.front();
      std::string text;
      for (const std::string& line : block.lines) text += line + '\n';
      if (const std::string name = block.fileName(); !name.empty()) std::ofstream(folder.file(name)) << text;
      if (block.info == "console") {
        for (const std::string& line : block.lines) EXPECT_TRUE(isExcused(line)) << page << ": " << line;
      }
      if (block.info != "sh") continue;
      const Outcome outcome = type(text);
      EXPECT_EQ(outcome.code, 0) << page << ":\n" << text << outcome.text;
      commands += block.lines.size();
    }
    return commands;
  }

  const std::string& help(const std::string& command) {
    std::string& text = helps_[command];
    if (text.empty()) text = type("vantry-server " + command + "--help").text;
    return text;
  }

  bool takesCommands(const std::string& command) {
    return help(command).find("\nSubcommands:") != std::string::npos;
  }

  /// What is wrong with a command that a page names, such as "import marc FILE --check"; empty for all that
  /// is no command of the server.
  std::string faultOf(std::string named) {
    if (named.find("...") != std::string::npos) return "";  // a line of the log
    bool isCommand = false;
    for (const std::string_view before : {"sudo ", "vantry-server "}) {
      isCommand = named.starts_with(before);
      if (isCommand) named.erase(0, before.size());
    }
    std::istringstream words(named);
    std::string command, word;
    while (words >> word && takesCommands(command)) {
      const bool isName = word.find_first_not_of("abcdefghijklmnopqrstuvwxyz-") == std::string::npos;
      if (!isName || word.starts_with('-')) break;
      const bool isThere = help(command).find("\n  " + word + " ") != std::string::npos;
      if (!isThere && !isCommand) return "";
      if (!isThere) return "there is no " + command + word;
      isCommand = true;
      command += word + ' ';
    }
    return isCommand ? faultOfOptions(named, help(command) + help("")) : "";
  }

  const std::string password = "a-good-password";

 private:
  std::map<std::string, std::string> helps_;
};

/// The doctor is content, and a desk may do what the page says of its example of rules.
TEST_F(Guide, LeadsToADeskThatCanBook) {
  ASSERT_GT(follow("guide.md"), 20U) << "the page is there, and its blocks are found";
  EXPECT_THAT(type("vantry-server doctor").text, testing::StartsWith("Nothing is wrong.\n"));

  test::DanasDesk dana(database, makeMoment(2027, 1, 4));
  const std::string desk = value("select id from locations where name = 'Main Desk'");
  const std::string students = value("select id from patron_groups where name = 'Students'");
  dana.ask("SLL", "LOC=" + desk);

  struct Case {
    const char* start;
    const char* startDay;  ///< 1 is Sunday
    const char* end;
    const char* endDay;
    const char* refused;
  };
  const Case ofRooms[] = {
      {"2027-01-07 18:00:00", "5", "2027-01-07 20:00:00", "5", ""},
      {"2027-01-07 18:00:00", "5", "2027-01-07 21:00:00", "5", "170"},
      {"2027-01-07 18:00:00", "5", "2027-01-08 09:00:00", "6", ""},
      {"2027-12-24 10:00:00", "6", "2027-12-24 11:00:00", "6", "168,168"},
  };
  const std::string room = value("select id from rooms where number = '102'");
  for (const Case& each : ofRooms) {
    const Got told =
        dana.ask("CRMTM", "PGID=" + students + "; ADBK=N; STIME=" + each.start + "; SDOW=" + each.startDay +
                              "; ETIME=" + each.end + "; EDOW=" + each.endDay + "; RID=" + room);
    EXPECT_EQ(told.all("VUF"), each.refused) << each.start << " to " << each.end;
    EXPECT_EQ(told.rc == 0, *each.refused == '\0') << told.text();
  }

  const std::string camera = value("select id from equipment where number = 'CAM1'");
  const auto bookCamera = [&](const std::string& end) {
    return dana.ask("VEQUSG", "BOOKID=0; EID=" + camera + "; PGID=" + students + "; LOC=" + desk +
                                  "; STIME=2027-01-07 10:00:00; ETIME=" + end);
  };
  EXPECT_EQ(bookCamera("2027-01-09 10:00:00").rc, 0);
  EXPECT_EQ(bookCamera("2027-01-09 10:30:00").all("VUF"), "153") << "two days are the longest";
}

/// The files of the guide are those that the other pages speak of.
TEST_F(Guide, OfWhoeverRunsTheServerWorksOnTheSameLibrary) {
  follow("guide.md");
  EXPECT_GT(follow("server.md"), 10U);
  EXPECT_GT(follow("running.md"), 0U);
  for (const char* file : {"server.conf", "directory.conf", "mail.conf"}) {
    const Outcome told = type(std::string("vantry-server --config ") + file + " config");
    EXPECT_EQ(told.code, 0) << told.text;
  }
}

TEST_F(Guide, NamesNoCommandThatThereIsNot) {
  int named = 0;
  for (const char* page : {"guide.md", "server.md", "running.md", "policy.md", "demo.md"}) {
    for (const std::string& command : commandsIn(VANTRY_DOCS "/" + std::string(page))) {
      EXPECT_EQ(faultOf(command), "") << page << ": " << command;
      ++named;
    }
  }
  EXPECT_GT(named, 100);
  EXPECT_EQ(faultOf("import marc FILE --chec"), "there is no --chec");
  EXPECT_EQ(faultOf("audit forget"), "there is no audit forget");
}

}  // namespace
}  // namespace vantry::server
