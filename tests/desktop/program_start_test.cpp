#include <QLabel>

#include <cstdlib>

#include "desktop/desktop_test.h"
#include "desktop/note_window.h"
#include "desktop/program_options.h"

namespace vantry::test {
namespace {

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

TEST(NoteWindow, StandsWhileNothingElseRuns) {
  const NoteWindow note("Making the small library...");
  EXPECT_TRUE(note.isVisible());
  EXPECT_EQ(note.findChildren<QLabel*>().back()->text(), "Making the small library...");
}

}  // namespace
}  // namespace vantry::test
