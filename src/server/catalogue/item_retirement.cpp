#include "server/catalogue/item_retirement.h"

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

struct Missing {
  std::int64_t id = 0;
  std::string barcode;
  std::string title;
  bool isBooked = false;
};

std::vector<Missing> missingItems(Connection& db, const ImportedSoFar& soFar, const std::string& source) {
  std::vector<Missing> missing;
  Missing each;
  Query query(
      db,
      "select i.id, i.barcode, t.title, case when exists (select 1 from booking_items l join bookings b on "
      "b.id = l.booking_id where l.item_id = i.id and l.returned_at is null and b.status in (0, 99, 999)) "
      "then 1 else 0 end from items i join titles t on t.id = i.title_id where i.status = '' and "
      "t.control_source = :source and exists (select 1 from marc_records r where r.title_id = t.id) "
      "order by i.id");
  query.bind("source", source).into(each.id, each.barcode, each.title, each.isBooked);
  while (query.next()) {
    const bool isNamed =
        each.barcode.empty() ? soFar.items.contains(each.id) : soFar.barcodes.contains(each.barcode);
    if (!isNamed) missing.push_back(each);
  }
  return missing;
}

void withdraw(Connection& db, std::int64_t id) {
  Query query(db, "update items set status = 'withdrawn' where id = :id");
  query.bind("id", id).run();
}

std::string nameOf(const Missing& item) {
  const std::string name = item.barcode.empty() ? "An item without a barcode" : "The item " + item.barcode;
  return name + " of \"" + item.title + "\"";
}

}  // namespace

void retireMissing(Connection& db, const ImportedSoFar& soFar, bool checkOnly, ImportReport& report) {
  for (const std::string& source : soFar.sources) {
    for (const Missing& item : missingItems(db, soFar, source)) {
      ++report.retiredItems;
      if (item.isBooked)
        report.hints.push_back(nameOf(item) + " is missing from the file, and it is booked.");
      if (checkOnly) {
        report.told.push_back(nameOf(item) + " is withdrawn.");
      } else {
        withdraw(db, item.id);
      }
    }
  }
}

}  // namespace vantry::server
