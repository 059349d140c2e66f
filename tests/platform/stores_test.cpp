#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/inifile.h"
#include "platform/settings.h"

namespace vantry::test {
namespace {

namespace fs = std::filesystem;

/// A folder of its own, gone after the test.
struct Stores : testing::Test {
  fs::path folder;
  Stores() {
    std::string name = (fs::temp_directory_path() / "vantry-stores-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
    folder = name;
  }
  ~Stores() override { fs::remove_all(folder); }

  fs::path write(const std::string& name, std::string_view content) const {
    std::ofstream(folder / name, std::ios::binary) << content;
    return folder / name;
  }
  std::string read(const std::string& name) const {
    std::ostringstream content;
    content << std::ifstream(folder / name, std::ios::binary).rdbuf();
    return content.str();
  }
  static std::string get(const Settings& settings, std::string_view key) {
    return settings.GetSetting("CorvaneMedia", "Preferences", key, "default");
  }
};

TEST_F(Stores, SettingsComeBackByKeysWithoutRegardToCase) {
  const fs::path file = folder / "new" / "settings";
  {
    FileSettings settings(file);
    EXPECT_EQ(get(settings, "View"), "default");
    settings.SaveSetting("CorvaneMedia", "Preferences", "View", "5");
    settings.SaveSetting("corvanemedia", "PREFERENCES", "view", "6");
    settings.SaveSetting("CorvaneMedia", "Preferences", "Empty", "");
    settings.SaveSetting("CorvaneMedia", "Other", "View", "7");
  }
  const FileSettings settings(file);
  EXPECT_EQ(get(settings, "VIEW"), "6");
  EXPECT_EQ(get(settings, "Empty"), "") << "an empty text is a text";
  EXPECT_EQ(settings.GetSetting("CorvaneMedia", "Other", "view", "x"), "7");
  EXPECT_EQ(settings.GetSetting("Else", "Preferences", "view", "x"), "x");
}

TEST_F(Stores, SettingsKeepEveryText) {
  const std::vector<std::string> texts = {"a=b",
                                          "[x]",
                                          "; c",
                                          " blanks ",
                                          " ",
                                          "\t\t",
                                          "line\nbreak\r\n",
                                          "back\\slash\\n",
                                          "\"quoted\"",
                                          "Müller",
                                          "\\",
                                          "tab\t",
                                          std::string("nul\0here", 8)};
  {
    FileSettings settings(folder / "settings");
    for (std::size_t i = 0; i < texts.size(); ++i)
      settings.SaveSetting("A", "S", "key" + std::to_string(i), texts[i]);
  }
  const FileSettings settings(folder / "settings");
  for (std::size_t i = 0; i < texts.size(); ++i)
    EXPECT_EQ(settings.GetSetting("A", "S", "key" + std::to_string(i), "lost"), texts[i]);
  EXPECT_FALSE(fs::exists(folder / "settings.bad"));
}

TEST_F(Stores, GarbageIsKeptAsideAndTheRestCounts) {
  const std::string sound = "[corvanemedia\\preferences]\nView=5\n";
  for (const std::string& garbage :
       {std::string("no key at all\n"), std::string("=value\n"), std::string("Bad=ends in a backslash\\\n"),
        std::string("Bad=\\q\n"), std::string("Bad=a\0b\n", 8), std::string("\x7f\x45LF\x02\x01\n")}) {
    SCOPED_TRACE(garbage);
    const std::string content = sound + garbage + "Start=6\n";
    FileSettings settings(write("settings", content));
    EXPECT_EQ(get(settings, "View"), "5");
    EXPECT_EQ(get(settings, "Start"), "6");
    EXPECT_EQ(get(settings, "Bad"), "default");
    EXPECT_EQ(read("settings.bad"), content);
    settings.SaveSetting("CorvaneMedia", "Preferences", "View", "7");
    EXPECT_EQ(read("settings.bad"), content) << "the copy stays as it was";
    EXPECT_EQ(get(FileSettings(folder / "settings"), "Start"), "6");
    fs::remove(folder / "settings.bad");
  }
  const FileSettings headless(write("settings", "View=5\n" + sound));
  EXPECT_TRUE(fs::exists(folder / "settings.bad")) << "a key outside any section";
}

TEST_F(Stores, AnEditorsBlanksAndLineEndsAreNoPartOfKeysAndValues) {
  const FileSettings settings(
      write("settings",
            "; mine\r\n\r\n  [ CorvaneMedia\\Preferences ] \r\n  View = 5\t\n \n\tStart= \r\n ; mine\n"));
  EXPECT_EQ(get(settings, "View"), "5");
  EXPECT_EQ(get(settings, "Start"), "");
  EXPECT_FALSE(fs::exists(folder / "settings.bad"));
}

TEST_F(Stores, AValueThatTheProgramCannotReadKeepsTheStoreAsideOnce) {
  FileSettings settings(write("settings", "[corvanemedia\\preferences]\nView=rubbish\n"));
  settings.keepAside();
  EXPECT_EQ(read("settings.bad"), read("settings"));
  settings.SaveSetting("CorvaneMedia", "Preferences", "View", "1");
  settings.keepAside();
  EXPECT_THAT(read("settings.bad"), testing::HasSubstr("rubbish"));
}

TEST_F(Stores, AWriteKeepsWhatAnotherProgramHasStoredMeanwhile) {
  FileSettings one(folder / "settings");
  FileSettings other(folder / "settings");
  one.SaveSettings("A", "S", {{"first", "1"}, {"both", "one"}});
  other.SaveSettings("A", "S", {{"second", "2"}, {"both", "other"}});
  EXPECT_EQ(other.GetSetting("A", "S", "first", ""), "1");
  const FileSettings stored(folder / "settings");
  EXPECT_EQ(stored.GetSetting("A", "S", "first", ""), "1");
  EXPECT_EQ(stored.GetSetting("A", "S", "second", ""), "2");
  EXPECT_EQ(stored.GetSetting("A", "S", "both", ""), "other");
}

TEST_F(Stores, AWriteThatFailsIsToldAndLeavesTheOldFile) {
  FileSettings settings(write("settings", "[a\\s]\nkey=old\n"));
  fs::create_directory(folder / "settings.new");  // where the fresh file would be written
  EXPECT_THROW(settings.SaveSetting("A", "S", "key", "new"), std::runtime_error);
  EXPECT_EQ(FileSettings(folder / "settings").GetSetting("A", "S", "key", ""), "old");
  fs::remove(folder / "settings.new");
  settings.SaveSetting("A", "S", "key", "new");
  EXPECT_EQ(FileSettings(folder / "settings").GetSetting("A", "S", "key", ""), "new");
  EXPECT_FALSE(fs::exists(folder / "settings.new")) << "nothing is left beside it";
}

std::string section(IniFile& file, std::string_view name) {
  file.SelectSection(name);
  std::string text = file.ReadSection();
  std::replace(text.begin(), text.end(), '\0', '|');
  return text;
}

TEST_F(Stores, AnIniFileGivesASectionsLines) {
  write("vantry.ini",
        "ahead=1\r\n[ListBar]\r\nLastView=3\r\n\r\n  [ two words ]\nLine one.\n~Line two.\n[Empty]\n");
  IniFile file(folder);
  file.Open("vantry.ini");
  EXPECT_EQ(section(file, "LISTBAR"), "LastView=3");
  EXPECT_EQ(section(file, " two words "), "Line one.|~Line two.");
  EXPECT_EQ(section(file, "Empty"), "");
  EXPECT_EQ(section(file, "Missing"), "");
  file.Open("missing.ini");
  EXPECT_EQ(section(file, "ListBar"), "");
}

TEST_F(Stores, AnIniFileWritesOneKeyAndLeavesTheRest) {
  write("vantry.ini", "; mine\n[ListBar]\nOther=1\nlastview=3\n[Next]\nLastView=9\n");
  IniFile file(folder);
  file.Open("vantry.ini");
  file.SelectSection("listbar");
  file.WriteKey("LastView", "13");
  file.WriteKey("Fresh", "a=b");
  EXPECT_EQ(read("vantry.ini"), "; mine\n[ListBar]\nOther=1\nLastView=13\nFresh=a=b\n[Next]\nLastView=9\n");
  file.SelectSection("Added");
  file.WriteKey("Key", "");
  EXPECT_EQ(section(file, "added"), "Key=");
}

TEST_F(Stores, AnIniFileBelowAFolderIsNamedWithEitherSlash) {
  fs::create_directory(folder / "misc");
  IniFile file(folder);
  file.Open("\\misc\\help.ini");
  file.SelectSection("S");
  file.WriteKey("K", "1");
  EXPECT_EQ(read("misc/help.ini"), "[S]\nK=1\n");
  file.Open("/misc/help.ini");
  EXPECT_EQ(section(file, "S"), "K=1");
  file.Open(".");
  EXPECT_THROW(file.WriteKey("K", "1"), std::runtime_error) << "that is a folder";
}

TEST_F(Stores, AnIniFileThatCannotBeReadIsNotReplaced) {
  fs::create_symlink(folder / "loop.ini", folder / "loop.ini");
  IniFile file(folder);
  file.Open("loop.ini");
  file.SelectSection("S");
  EXPECT_THROW(file.WriteKey("K", "1"), std::runtime_error);
  EXPECT_TRUE(fs::is_symlink(folder / "loop.ini"));

  write("vantry.ini", "[S]\nK=old\n");
  fs::permissions(folder / "vantry.ini", fs::perms::none);
  if (std::ifstream(folder / "vantry.ini").is_open()) GTEST_SKIP() << "an administrator reads every file";
  file.Open("vantry.ini");
  EXPECT_THROW(file.WriteKey("K", "1"), std::runtime_error);
  fs::permissions(folder / "vantry.ini", fs::perms::owner_read);
  EXPECT_EQ(read("vantry.ini"), "[S]\nK=old\n");
}

}  // namespace
}  // namespace vantry::test
