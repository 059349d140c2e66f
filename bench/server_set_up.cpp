// The machine's time for the set-up of a library from its files, by the commands of the guide for librarians:
// 50,000 patrons, 20,000 titles with an item each, 3,000 pieces, 100 rooms.
//
//   server_set_up FOLDER [postgresql://...]
//
// The folder and the database named must be empty.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "failures.h"
#include "figures.h"
#include "support/server_marc_file.h"

namespace {

using vantry::server::exchanged;

constexpr int patrons = 50'000;
constexpr int titles = 20'000;
constexpr int pieces = 3'000;
constexpr int rooms = 100;
constexpr int groups = 200;
constexpr int staff = 50;
constexpr const char* desks[] = {"Main Desk", "Branch"};
constexpr const char* types[] = {"Camera", "Loudspeaker", "Laptop", "Television"};

std::string phrase(std::mt19937& random, int words) {
  std::string text;
  for (int each = 0; each < words; ++each) text += "word" + std::to_string(random() % 20'000) + ' ';
  text.pop_back();
  return text;
}

std::string numbered(const char* text, int number) {
  return text + std::to_string(number);
}

/// What the columns of a row hold, in the order of the head.
void writeRow(std::ofstream& file, const std::vector<std::string>& cells) {
  for (std::size_t each = 0; each < cells.size(); ++each) file << (each > 0 ? "," : "") << cells[each];
  file << '\n';
}

void writeRules(const std::string& folder) {
  std::ofstream(folder + "rules.json") << R"({"room_types": [{"name": "Screening Room"}],
 "equipment_types": [{"name": "Television", "setup_minutes": 10, "cleanup_minutes": 5}],
 "policies": [{"location": "Main Desk", "group": "Students", "locations": ["Main Desk", "Branch"],
               "limits": {"bookings": 3, "equipment": 4, "late_returns": 5},
               "equipment_types": [{"type": "Camera", "longest": "2 days"}]}]})";
}

void writeRooms(const std::string& folder) {
  std::ofstream file(folder + "rooms.csv");
  writeRow(file, {"location", "type", "number", "name", "capacity"});
  for (int each = 0; each < rooms; ++each) {
    writeRow(file, {desks[each % 2], each < 2 ? "Storage" : "Classroom", numbered("R", each),
                    numbered("Room ", each), std::to_string(each)});
  }
}

void writeEquipment(const std::string& folder) {
  std::ofstream file(folder + "equipment.csv");
  writeRow(file, {"type", "number", "barcode", "location", "room", "manufacturer", "model", "serial number",
                  "purchase value", "acquisition date"});
  for (int each = 0; each < pieces; ++each) {
    const int desk = each % 2;
    writeRow(file, {types[each % 4], numbered("E", each), std::to_string(380'000 + each), desks[desk],
                    numbered("R", desk), "Lumen", numbered("M", each % 30), numbered("S-", each), "450.00",
                    "2025-03-01"});
  }
}

/// Of two pieces each, which are at the same desk.
void writeGroups(const std::string& folder) {
  std::ofstream file(folder + "groups.csv");
  writeRow(file, {"type", "number", "barcode", "location", "room", "members"});
  for (int each = 0; each < groups; ++each) {
    const int first = 380'000 + each / 2 * 4 + each % 2;
    writeRow(file, {"Set", numbered("SET", each), std::to_string(390'000 + each), desks[each % 2],
                    numbered("R", each % 2), std::to_string(first) + "; " + std::to_string(first + 2)});
  }
}

void writePatrons(const std::string& folder) {
  std::mt19937 random(1);
  std::ofstream file(folder + "patrons.csv");
  std::ofstream working(folder + "staff.csv");
  writeRow(file, {"card", "group", "last name", "first name", "institution id", "expires", "address1", "city",
                  "postal code", "telephone", "e-mail"});
  writeRow(working, {"card", "active"});
  for (int each = 0; each < patrons; ++each) {
    const std::string card = std::to_string(2'100'000 + each);
    writeRow(file, {card, each % 20 == 0 ? "Teachers" : "Students", numbered("Name", each / 3),
                    numbered("Given", static_cast<int>(random() % 2'000)), numbered("ID", each), "2027-09-30",
                    numbered("Long Street ", each % 200), "Townville", std::to_string(10'000 + each % 90),
                    numbered("555-", each), numbered("p", each) + "@library.example"});
    if (each % 20 == 0 && each / 20 < staff) writeRow(working, {card, "yes"});
  }
}

void writeTitles(const std::string& folder) {
  std::mt19937 random(2);
  std::ofstream file(folder + "titles.mrc");
  for (int each = 0; each < titles; ++each) {
    file << exchanged({{"001", std::to_string(100'000 + each)},
                       {"003", "XxLib"},
                       {"008", "260101s2020    xxk090            vleng d"},
                       {"100", "1 $aAuthor" + std::to_string(random() % 5'000) + ", Ann"},
                       {"245", "10$a" + phrase(random, 5) + " /$c" + phrase(random, 3)},
                       {"260", "  $aTownville :$bHouse,$c2020"},
                       {"300", "  $a1 disc (90 min.)"},
                       {"520", "  $a" + phrase(random, 25)},
                       {"650", " 0$a" + phrase(random, 2)},
                       {"650", " 0$a" + phrase(random, 2)},
                       {"852", std::string("  $b") + desks[each % 2] + "$hDVD " + std::to_string(each) +
                                   "$p" + std::to_string(3'100'000 + each)}});
  }
}

struct Step {
  const char* what;
  std::string command;
};

std::vector<Step> stepsOn(const std::string& database) {
  return {
      {"setup", "setup --yes --database '" + database +
                    "' --time-zone Europe/Berlin --library 'City Library' --desk 'Main Desk' --desk Branch "
                    "--group Students --group Teachers --login dana --name 'Dana D.'"},
      {"rules take --check", "rules take --check rules.json"},
      {"rules take", "rules take rules.json"},
      {"import rooms", "import rooms rooms.csv"},
      {"import equipment", "import equipment equipment.csv"},
      {"import groups", "import groups groups.csv"},
      {"import patrons --check", "import patrons --check patrons.csv"},
      {"import patrons", "import patrons patrons.csv"},
      {"import staff", "import staff staff.csv"},
      {"import marc --check", "import marc --check titles.mrc --media-type Film"},
      {"import marc", "import marc titles.mrc --media-type Film"},
      {"doctor", "doctor"},
      {"again: import equipment", "import equipment equipment.csv"},
      {"again: import patrons", "import patrons patrons.csv"},
  };
}

/// The seconds of each step, and those of the set-up without what is done again.
int run(const std::string& folder, const std::string& database) {
  const Figures figures("set-up");
  const char* column = database.starts_with("postgresql:") ? "PostgreSQL" : "SQLite";
  Failures failures;
  double all = 0;
  std::ofstream(folder + "password") << "correct horse battery\n";
  for (const auto& [what, command] : stepsOn(database)) {
    const std::string line = "cd '" + folder +
                             "' && VANTRY_CONFIG=library.conf '" VANTRY_SERVER_PROGRAM "' " + command +
                             " < password > told 2>&1";
    const auto before = std::chrono::steady_clock::now();
    const bool isDone = std::system(line.c_str()) == 0;
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - before;
    failures.note(what, isDone);
    std::ifstream told(folder + "told");
    const std::string text{std::istreambuf_iterator<char>(told), {}};
    std::printf("%-26s %6.2f s\n%s", what, taken.count(), isDone ? "" : text.c_str());
    figures.tell(what, column, taken.count());
    if (!std::string_view(what).starts_with("again")) all += taken.count();
  }
  figures.tell("the set-up", column, all);
  return failures.tell();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const std::string folder = std::filesystem::absolute(argv[1]).string() + "/";
  for (const auto write : {writeRules, writeRooms, writeEquipment, writeGroups, writePatrons, writeTitles})
    write(folder);
  return run(folder, argc > 2 ? argv[2] : folder + "library.sqlite");
}
