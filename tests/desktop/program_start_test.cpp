#include <QLabel>
#include <QTemporaryDir>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "desktop/chatter.h"
#include "desktop/desktop_test.h"
#include "desktop/note_window.h"
#include "desktop/program_options.h"

namespace vantry::test {
namespace {

namespace fs = std::filesystem;

TEST(ProgramOptions, QuestionsAboutTheProgramCountBesideOtherWords) {
  for (const char* word : {"--help", "/?"}) {
    const ProgramOptions options = readOptions({"/nocheck", word, "--view", "3"});
    EXPECT_TRUE(options.usage) << word;
    EXPECT_FALSE(options.version);
    EXPECT_EQ(options.rest, std::string("/nocheck ") + word) << "the rest stays as it stood";
  }
  EXPECT_TRUE(readOptions({"--version", "/nocheck"}).version);
  EXPECT_FALSE(readOptions({"--user", "--help"}).usage) << "that is a folder's name";
}

TEST(ProgramOptions, AnOptionWithoutItsValueIsToldAsAFault) {
  EXPECT_EQ(readOptions({"--server"}).fault, "--server wants a value.");
  const ProgramOptions options = readOptions({"--server", "https://desk.example", "--view", "5"});
  EXPECT_EQ(options.fault, "");
  EXPECT_EQ(options.server, "https://desk.example");
  EXPECT_EQ(options.view, 5);
}

QStringList heard;

TEST(Chatter, OnlyWhatIsSaidOfAnUnseenScreenIsDropped) {
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) { heard << text; });
  quietUnseenScreen();
  qWarning("This plugin does not support propagateSizeHints()");
  qWarning("QStandardPaths: XDG_RUNTIME_DIR not set, defaulting to '/tmp'");
  qWarning("Something is wrong");
  EXPECT_EQ(heard, QStringList("Something is wrong"));
  qInstallMessageHandler(nullptr);
  quietUnseenScreen();
}

class SettingsFiles : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("XDG_CONFIG_HOME", (folder / "home").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", ((folder / "site").string() + "::" + (folder / "system").string()).c_str(), 1);
  }
  void TearDown() override {
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XDG_CONFIG_DIRS");
  }
  void write(const char* where, const char* entries) const {
    fs::create_directories(folder / where / "vantry");
    std::ofstream(folder / where / "vantry" / "vantry.ini") << "[Server]\n" << entries;
  }
  static std::string found(const std::vector<std::string>& arguments) {
    const ProgramOptions options = readOptions(arguments);
    return options.server + " " + options.authority;
  }

  const QTemporaryDir scratch;
  const fs::path folder = scratch.path().toStdString();
};

TEST_F(SettingsFiles, EachEntryIsTakenFromTheFirstFileThatHasIt) {
  EXPECT_EQ(found({}), " ") << "no file: the embedded server";
  write("system", "Address=https://system\nAuthority=/etc/ssl/house.pem\n");
  EXPECT_EQ(found({}), "https://system /etc/ssl/house.pem");
  write("site", "authority = ca.pem\n");
  EXPECT_EQ(found({}), "https://system " + (folder / "site/vantry/ca.pem").string()) << "beside its file";
  write("home", "Address=https://mine\nAuthority=\n");
  EXPECT_EQ(found({}), "https://mine ") << "an empty entry sets the machine's aside";
  EXPECT_EQ(found({"--server", "https://here", "--authority", "a.pem"}), "https://here a.pem");
  EXPECT_EQ(found({"--authority", "a.pem"}), "https://mine a.pem");
  EXPECT_EQ(found({"--data", "mine.sqlite"}), " ");
  EXPECT_EQ(found({"--screenshot", "a.png"}), " ");
}

TEST_F(SettingsFiles, OfAnInstalledProgramAreInTheSharedData) {
  EXPECT_EQ(filesOfProgram(folder / "bin"), folder / "bin");
  fs::create_directories(folder / "share" / "vantry");
  EXPECT_EQ(filesOfProgram(folder / "bin"), folder / "share" / "vantry");
}

TEST(NoteWindow, StandsWhileNothingElseRuns) {
  const NoteWindow note("Making the small library...");
  EXPECT_TRUE(note.isVisible());
  EXPECT_EQ(note.findChildren<QLabel*>().back()->text(), "Making the small library...");
}

}  // namespace
}  // namespace vantry::test
