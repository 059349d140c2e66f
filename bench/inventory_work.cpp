// What whoever keeps the inventory waits for, with 50,000 more pieces of the library's types and 3,000 more
// groups: the trees, a category of 5,000 pieces, a record, its save, a new member. Medians in milliseconds,
// from the command to the painted window; of them, what server and wire took, in how many requests.
//
//   inventory_work FOLDER          a library, made in FOLDER anew
//
// Ends with 1 when a command did not do what is measured.
#include <cstdio>
#include <filesystem>

#include "bench_desk.h"
#include "figures.h"
#include "frame/app.h"
#include "frame/modMain.h"
#include "inventory/frmEquipment.h"
#include "inventory/frmGroup.h"
#include "inventory/inventory_view.h"
#include "records/records.h"
#include "server/store/database.h"
#include "server/store/query.h"

namespace vantry::bench {
namespace {

constexpr int kPieces = 50'000;
constexpr int kGroups = 3'000;

/// Rows numbered by `i` from 1 on.
void fill(server::Connection& db, const std::string& into, const std::string& values, int count) {
  db.run("insert into " + into +
         " with recursive n(i) as (select 1 union all select i + 1 from n where i < " +
         std::to_string(count) + ") select " + values + " from n");
}

/// A tenth of the pieces is of the first type, so that its list has 5,000 rows.
void enlarge(const std::string& file) {
  server::Database database(file);
  database.write([](server::Connection& db) {
    const std::string types = "(select count(*) - 1 from equipment_types where of_groups = 0)";
    const std::string place = "case when i % 10 = 0 then 0 else (i / 10 + i % 10) % " + types + " + 1 end";
    const std::string room = "(select min(id) from rooms), 0";
    const std::string desk = "(select location_id from rooms where id = (select min(id) from rooms))";
    fill(db, "equipment (equipment_type_id, number, maker, model, serial, location_id, room_id, created_at)",
         "(select t.id from (select id, row_number() over (order by name) - 1 as place from equipment_types "
         "where of_groups = 0) t where t.place = " +
             place + "), 'BN' || i, 'Maker ' || (i % 200), 'Model ' || (i % 2000), 'BS' || i, " + desk +
             ", " + room,
         kPieces);
    fill(db, "equipment (is_group, equipment_type_id, number, location_id, room_id, created_at)",
         "1, (select id from equipment_types where of_groups = 1 order by name limit 1), 'BG' || i, " + desk +
             ", " + room,
         kGroups);
    db.run(
        "insert into equipment_barcodes (equipment_id, barcode, status_id) "
        "select id, 'B' || number, 1 from equipment where number like 'BN%' or number like 'BG%'");
  });
}

class InventoryWork {
 public:
  explicit InventoryWork(Bench& bench) : bench_(bench) {}

  /// The number of commands that did not do what was measured.
  int run() {
    main().showView(ViewId::Equipment);
    repeat("reading and showing the trees", [this] { LoadCategoryLists(app()); });
    repeat("showing the trees", [this] { main().BuildMainTrees(); });
    categories();
    main().showView(ViewId::Day);
    records();
    members();
    Figures("inventory").tell("memory of client and embedded server, MB", "Altogether", memoryMegabytes());
    return failures_;
  }

 private:
  App& app() { return bench_.program.app; }
  frmMain& main() { return bench_.program.main; }
  InventoryView& equipment() { return viewAs<InventoryView>(main(), ViewId::Equipment); }

  template <class Command>
  void time(Command command) {
    bench_.line.milliseconds = 0;
    bench_.line.requests = 0;
    const auto start = Stopwatch::now();
    command();
    bench_.desktop.handleEvents();
    costs_.whole.push_back(since(start));
    costs_.line.push_back(bench_.line.milliseconds);
    costs_.requests = bench_.line.requests;
  }
  void tell(const char* what) {
    tellCosts("inventory", what, costs_);
    costs_ = {};
  }
  template <class Command>
  void repeat(const char* what, Command command) {
    for (int round = 0; round < kRounds; ++round) time(command);
    tell(what);
  }
  void expect(bool isTrue, const char* what) {
    if (isTrue) return;
    std::printf("failed: %s\n", what);
    ++failures_;
  }

  /// The first type has the 5,000; the second makes room for the next round.
  void categories() {
    const auto& roots = equipment().tvwDB.Roots();
    const std::string large = roots.at(0)->key;
    const std::string other = roots.at(1)->key;
    for (int round = 0; round < kRounds; ++round) {
      time([&] { equipment().tvwDB.click(large); });
      expect(equipment().fa.Rows > kPieces / 10, "the list has 5,000 rows");
      equipment().tvwDB.click(other);
      bench_.desktop.handleEvents();
    }
    tell("a category of 5,000 pieces");
    piece_ = equipment().list()->text(1, 0);
  }

  void records() {
    for (int round = 0; round < kRounds; ++round) {
      time([this] { OpenRecordWindow(app(), {kEquipment, piece_, kSourceMainWindow}); });
      expect(FindRecordWindow(app(), kEquipment, piece_) != nullptr, "the record opens");
      CloseRecordWindow(app(), kEquipment, piece_);
      bench_.desktop.handleEvents();
    }
    tell("opening a piece");
    auto& window =
        dynamic_cast<frmEquipment&>(*OpenRecordWindow(app(), {kEquipment, piece_, kSourceMainWindow}));
    for (int round = 0; round < kRounds; ++round) {
      window.txtEQUIP_FORMAT.type("Format " + std::to_string(round));
      time([&] { window.barBooking.choose(window.barBooking.tool("abSave")); });
      expect(window.SaveOk && !window.Dirty, "the record is saved");
    }
    tell("saving a piece");
    window.Unload();
  }

  /// A group that the library did not have takes free pieces of a type.
  void members() {
    const std::string group = newGroup();
    auto* window = dynamic_cast<frmGroup*>(OpenRecordWindow(app(), {kGroup, group, kSourceMainWindow}));
    if (!window) return expect(false, "a group opens");
    window->mnuViewPage_Click(2);
    GroupMembers& page = window->members;
    page.tree.click(page.tree.Roots().back()->children.back()->key);
    bench_.desktop.handleEvents();
    for (int round = 0; round < kRounds; ++round) {
      const int before = page.faMembers.Rows;
      page.faCandidates.click(freeRow(page.faCandidates), 1);
      time([&] { page.cmdAdd.press(); });
      expect(page.faMembers.Rows == before + 1, "a piece joins the group");
    }
    tell("adding a member");
    window->Closing = true;
    window->Unload();
  }
  /// The first row of a new piece that nothing is wrong with.
  static int freeRow(const Grid& grid) {
    for (int row = 1; row < grid.Rows; ++row) {
      bool isNew = false;
      bool isFree = false;
      for (int col = 0; col < grid.Cols; ++col) {
        isNew = isNew || grid.TextMatrix(row, col).starts_with("BBN");
        isFree = isFree || grid.TextMatrix(row, col) == "Not Charged";
      }
      if (isNew && isFree) return row;
    }
    return 0;
  }
  std::string newGroup() {
    app().message.Add("ETI", app().context.categories.groups.front().id);
    std::string id;
    if (app().message.Send("GETGITM") != 0) return id;
    while (app().message.NextRecord("EID")) {
      if (app().message.Get("ENO").starts_with("BG")) id = app().message.Get("EID");
    }
    return id;
  }

  Bench& bench_;
  int failures_ = 0;
  Costs costs_;
  std::string piece_;
};

}  // namespace
}  // namespace vantry::bench

int main(int argc, char** argv) {
  using namespace vantry;
  if (argc != 2) {
    std::fprintf(stderr, "usage: inventory_work FOLDER\n");
    return 2;
  }
  const std::string file = std::string(argv[1]) + "/inventory.sqlite";
  std::filesystem::remove(file);
  DemoOptions options;
  options.date = serverDate(bench::kToday);
  createDemoDatabase(file, options);
  bench::enlarge(file);
  int failures = 0;
  const int ended = bench::measureAtTheDesk(file, options, {{"View", "0"}}, [&](bench::Bench& bench) {
    failures = bench::InventoryWork(bench).run();
  });
  return ended != 0 || failures > 0 ? 1 : 0;
}
