// Statements belong to the stores. What decides and what answers requests has none, and cannot run any.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path root = VANTRY_SOURCE_FOLDER;
const std::string statements = "server/store/query.h";

std::string textOf(const fs::path& file) {
  std::ifstream in(file);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> matchesOf(const std::string& text, const std::regex& pattern, std::size_t group) {
  std::vector<std::string> found;
  for (std::sregex_iterator each(text.begin(), text.end(), pattern), end; each != end; ++each)
    found.push_back((*each)[group]);
  return found;
}

/// Adds the file and all that it includes, directly or not.
void follow(const std::string& file, std::set<std::string>& seen) {
  static const std::regex include("#include \"([^\"]+)\"");
  if (!seen.insert(file).second) return;
  for (const std::string& each : matchesOf(textOf(root / file), include, 1)) follow(each, seen);
}

const std::vector<const char*> aboveTheStores = {"server/requests", "server/policy", "server/http"};

std::vector<std::string> filesOf(const std::vector<const char*>& folders) {
  std::vector<std::string> files;
  for (const char* folder : folders) {
    for (const auto& entry : fs::directory_iterator(root / folder))
      files.push_back(entry.path().lexically_relative(root).generic_string());
  }
  return files;
}

}  // namespace

TEST(Statements, CannotBeRunAboveTheStores) {
  ASSERT_FALSE(filesOf(aboveTheStores).empty());
  for (const std::string& file : filesOf(aboveTheStores)) {
    std::set<std::string> reached;
    follow(file, reached);
    EXPECT_FALSE(reached.contains(statements)) << file << " reaches " << statements;
  }
}

TEST(Statements, AreNotWrittenAboveTheStores) {
  const std::regex literal(R"re("(?:[^"\\\n]|\\.)*")re");
  const std::regex sql(
      R"re(\bselect\b.*\bfrom\b|\binsert into\b|\bupdate\b.*\bset\b|\bdelete from\b|\bjoin\b.*\bon\b)re",
      std::regex::icase);
  std::vector<const char*> folders = aboveTheStores;
  for (const char* other :
       {"server/base", "server/directory", "server/feeds", "server/jobs", "server/program"})
    folders.push_back(other);
  for (const std::string& file : filesOf(folders)) {
    std::string texts;
    for (const std::string& each : matchesOf(textOf(root / file), literal, 0)) texts += each;
    EXPECT_FALSE(std::regex_search(texts, sql)) << file;
  }
}
