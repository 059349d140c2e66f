// Media types, titles, holdings and items.

#include <array>

#include "server/access/operators.h"
#include "server/catalogue/catalogue_store.h"
#include "server/setup/demo/world.h"
#include "server/store/query.h"

namespace vantry::server {

namespace {

struct MediaTypeRow {
  const char* name;
  std::array<int, 2> needs;  ///< equipment types that play it; 0 for none
};
constexpr std::array mediaTypeRows{
    MediaTypeRow{"DVD", {5, 6}},
    MediaTypeRow{"Videocassette", {7, 6}},
    MediaTypeRow{"Slide Set", {4, 14}},
    MediaTypeRow{"Audio CD", {0, 0}},
    MediaTypeRow{"Transparencies", {3, 14}},
    MediaTypeRow{"Map", {0, 0}},
    MediaTypeRow{"Blu-ray", {2, 14}},
    MediaTypeRow{"Kit", {0, 0}},
};

constexpr const char* subjects[] = {
    "Marine Biology",   "Modern Architecture", "Railway Engineering", "Folk Music",
    "World Geography",  "Statistics",          "Organic Chemistry",   "Early Cinema",
    "Public Speaking",  "Beekeeping",          "Urban Planning",      "Ceramics",
    "Classical Ballet", "Astronomy",           "Labour History",      "First Aid",
    "Photography",      "Volcanoes",           "Water Supply",        "Nursing Practice",
    "Printing",         "Theatre Light",       "Child Psychology",    "Wind Power"};
constexpr const char* patterns[] = {"Introduction to %", "% in Practice",   "A Short History of %",
                                    "The World of %",    "% for Beginners", "Advanced %",
                                    "% Today",           "Understanding %"};
constexpr const char* parts[] = {"", "", "", ", Part 1", ", Part 2", ": A Workshop", ": Case Studies"};
constexpr const char* shelves[] = {"HF", "QA", "TR", "ML", "NA", "GV", "RT", "QE"};

struct DemoTitle {
  std::int64_t id;
  std::string title;
  std::string subject;
  std::string author;
  std::string published;
};

DemoTitle makeTitle(Dice& dice, std::int64_t id) {
  DemoTitle fresh{id, dice.of(patterns), dice.of(subjects), {}, std::to_string(1985 + id % 40)};
  fresh.title.replace(fresh.title.find('%'), 1, fresh.subject);
  fresh.title += dice.of(parts);
  const DemoName author = makeName(dice);
  fresh.author = author.last + ", " + author.first;
  return fresh;
}

constexpr const char* publishers[] = {"Harbour Film Unit", "Northfield Educational Media", "Open Desk Press",
                                      "Meridian Sound Archive", "Lantern Pictures"};

/// The record that a cataloguer would have made of it.
MarcRecord recordOf(const DemoTitle& title, const char* carrier) {
  const bool article = title.title.starts_with("The ") || title.title.starts_with("A ");
  const std::size_t unsorted = article ? title.title.find(' ') + 1 : 0;
  const char* publisher = publishers[static_cast<std::size_t>(title.id) % std::size(publishers)];
  MarcRecord record;
  record.leader = "00000ngm a2200000 i 4500";
  record.fields = {
      {"001", "", "demo-" + std::to_string(title.id)},
      {"100", "1 ", marcSubfield('a', title.author)},
      {"245", "1" + std::to_string(unsorted), marcSubfield('a', title.title)},
      {"264", " 1", marcSubfield('b', publisher) + marcSubfield('c', title.published)},
      {"300", "  ", marcSubfield('a', std::string("1 ") + carrier)},
      {"520", "  ", marcSubfield('a', "Material on " + title.subject + " for teaching and private study.")},
      {"650", " 0", marcSubfield('a', title.subject) + marcSubfield('v', "Study and teaching")},
  };
  return record;
}

void addTitle(Connection& db, const DemoTitle& title) {
  Query query(db,
              "insert into titles (id, title, search_title, author, published, control_number) values (:id, "
              ":title, :search_title, :author, :published, :control_number)");
  query.bind("id", title.id).bind("title", title.title).bind("search_title", loginKey(title.title));
  query.bind("author", title.author).bind("published", title.published);
  query.bind("control_number", "demo-" + std::to_string(title.id)).run();
}

void addHolding(Connection& db, std::int64_t id, std::int64_t titleId, std::int64_t locationId, Dice& dice) {
  std::string call = dice.of(shelves);
  call += std::to_string(dice.between(100, 9999)) + " ." + static_cast<char>('A' + dice.below(26)) +
          std::to_string(dice.between(1, 99));
  Query query(
      db,
      "insert into holdings (id, title_id, location_id, call_number, search_call_number, call_number_kind) "
      "values (:id, :title_id, :location_id, :call_number, :search_call_number, 'MLC#')");
  query.bind("id", id).bind("title_id", titleId).bind("location_id", locationId).bind("call_number", call);
  query.bind("search_call_number", loginKey(call)).run();
}

void addItem(Connection& db, World& world, const World::Item& fresh, int copy, Dice& dice) {
  Query query(db,
              "insert into items (id, holding_id, title_id, location_id, media_type_id, barcode, item_type, "
              "description, year, copy, status) values (:id, :holding_id, :title_id, :location_id, "
              ":media_type_id, :barcode, "
              "'Media', :description, :year, :copy, :status)");
  const bool lost = fresh.id % 97 == 0;
  query.bind("id", fresh.id).bind("holding_id", fresh.holdingId).bind("title_id", fresh.titleId);
  query.bind("location_id", fresh.locationId);
  query.bind("media_type_id", fresh.mediaTypeId == 0 ? std::nullopt : std::optional(fresh.mediaTypeId));
  query.bind("barcode", numbered("3100", fresh.id, 6));
  query.bind("description", dice.percent(80) ? "Colour, with sound" : "With a printed guide");
  query.bind("year", std::to_string(dice.between(1988, 2024))).bind("copy", copy);
  query.bind("status", lost ? "Lost" : "").run();
  if (!lost) world.items.push_back(fresh);
}

void makeMediaTypes(Connection& db, World& world) {
  for (const MediaTypeRow& row : mediaTypeRows) {
    const auto id = static_cast<std::int64_t>(world.mediaTypes.size()) + 1;
    Query query(db, "insert into media_types (id, name) values (:id, :name)");
    query.bind("id", id).bind("name", row.name).run();
    world.mediaTypes.push_back(id);
    for (const int type : row.needs) {
      if (type == 0) continue;
      Query need(db,
                 "insert into media_type_equipment (media_type_id, equipment_type_id) "
                 "values (:media_type_id, :equipment_type_id)");
      need.bind("media_type_id", id).bind("equipment_type_id", type).run();
    }
  }
}

}  // namespace

void makeCatalogue(Connection& db, World& world, Dice& dice) {
  constexpr int titles = 2000;
  makeMediaTypes(db, world);
  std::int64_t holdingId = 0;
  std::int64_t itemId = 0;
  for (std::int64_t titleId = 1; titleId <= titles; ++titleId) {
    const DemoTitle title = makeTitle(dice, titleId);
    addTitle(db, title);
    const std::int64_t mediaType =
        dice.percent(4) ? 0 : dice.of(std::span<const std::int64_t>(world.mediaTypes));
    const char* carrier =
        mediaType == 0 ? "Item" : mediaTypeRows[static_cast<std::size_t>(mediaType) - 1].name;
    storeRecord(db, titleId, 0, recordOf(title, carrier));
    const int holdings = dice.percent(25) ? 2 : 1;
    for (int holding = 0; holding < holdings; ++holding) {
      const World::Location& location = world.locations[static_cast<std::size_t>((titleId + holding) % 3)];
      addHolding(db, ++holdingId, titleId, location.id, dice);
      const int copies = dice.percent(30) ? 2 : 1;
      for (int copy = 1; copy <= copies; ++copy) {
        addItem(db, world, {++itemId, holdingId, titleId, mediaType, location.id}, copy, dice);
      }
    }
  }
  while (indexSomeTitles(db)) {
  }
}

}  // namespace vantry::server
