// Holds the includes of src/ against the floors. The linker sees only what needs a symbol; this
// test sees every include, also those of headers alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Names = std::set<std::string>;

struct FolderRow {
  std::string folder;
  Names mayInclude;  ///< beside itself
};

Names operator+(Names a, const Names& b) {
  a.insert(b.begin(), b.end());
  return a;
}

/// The client's floors, from the ground up: each may include all that are before it.
const std::vector<std::string> kFloors = {"words",   "platform", "messaging",   "frame",     "lists",
                                          "records", "booking",  "circulation", "inventory", "search"};

Names floorsUpTo(const std::string& folder) {
  Names below;
  for (const std::string& floor : kFloors) {
    if (floor == folder) break;
    below.insert(floor);
  }
  return below;
}

/// Every folder of src/ that holds sources, and what its files may include.
std::vector<FolderRow> allowedEdges() {
  std::vector<FolderRow> rows;
  for (const std::string& folder : kFloors) rows.push_back({folder, floorsUpTo(folder)});
  // Beside the search.
  for (const char* folder : {"options", "reports"}) rows.push_back({folder, floorsUpTo("search")});
  const Names client = floorsUpTo("") + Names{"options", "reports"};
  rows.push_back({"schedule", client});  // the main window holds all views
  // The embedded server is reached through the one header of the program's server.
  rows.push_back({"transport", Names{"words", "platform", "messaging", "server/program"}});
  rows.push_back({"desktop", client + Names{"schedule", "transport"}});

  // The server's floors are a tree, not one line: each names what it stands on.
  const Names ground = {"words", "server/base"};
  const Names data = ground + Names{"server/store"};
  rows.push_back({"server/base", {"words"}});
  rows.push_back({"server/store", ground});
  rows.push_back({"server/access", data});
  rows.push_back({"server/policy", ground});
  rows.push_back({"server/desk", data + Names{"server/access", "server/policy"}});
  rows.push_back({"server/mail", data + Names{"server/access", "server/policy", "server/desk"}});
  rows.push_back({"server/catalogue", data + Names{"server/access"}});
  const Names things = data + Names{"server/access", "server/policy", "server/desk", "server/catalogue"};
  rows.push_back({"server/setup", things});
  rows.push_back({"server/setup/demo", things + Names{"server/setup"}});
  rows.push_back({"server/feeds", ground});
  rows.push_back({"server/directory", ground});
  rows.push_back({"server/requests", things + Names{"server/feeds", "server/mail", "server/directory"}});
  rows.push_back({"server/http", data + Names{"server/requests"}});  // the store's errors become status codes
  rows.push_back({"server/jobs", data + Names{"server/access", "server/desk", "server/mail"}});
  rows.push_back({"server/program",
                  things + Names{"server/mail", "server/directory", "server/setup", "server/setup/demo",
                                 "server/requests", "server/http", "server/jobs"}});
  return rows;
}

bool isSource(const fs::path& path) {
  return path.extension() == ".h" || path.extension() == ".cpp";
}

/// The folder of a path below src/, as the table names it.
std::string folderOf(const std::string& file) {
  const auto slash = file.rfind('/');
  return slash == std::string::npos ? std::string() : file.substr(0, slash);
}

std::vector<std::string> includesOf(const fs::path& file) {
  std::vector<std::string> includes;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    const std::string start = "#include \"";
    if (line.starts_with(start))
      includes.push_back(line.substr(start.size(), line.rfind('"') - start.size()));
  }
  return includes;
}

}  // namespace

TEST(Floors, EveryIncludeGoesDown) {
  const fs::path root = VANTRY_SOURCE_FOLDER;
  std::map<std::string, Names> allowed;
  for (FolderRow& row : allowedEdges()) {
    row.mayInclude.insert(row.folder);
    allowed[row.folder] = row.mayInclude;
  }
  Names seen;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!isSource(entry.path())) continue;
    const std::string file = entry.path().lexically_relative(root).generic_string();
    const std::string folder = folderOf(file);
    seen.insert(folder);
    ASSERT_TRUE(allowed.contains(folder)) << file << ": the folder has no row in the table of floors";
    for (const std::string& include : includesOf(entry.path()))
      EXPECT_TRUE(allowed[folder].contains(folderOf(include))) << file << " must not include " << include;
  }
  for (const auto& [folder, names] : allowed)
    EXPECT_TRUE(seen.contains(folder)) << folder << " has no sources";
}
