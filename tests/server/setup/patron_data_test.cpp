#include "server/setup/patron_data.h"

#include <gtest/gtest.h>

#include "server/base/user_error.h"
#include "server/store/query.h"
#include "support/server_desk_library.h"

namespace vantry::server {
namespace {

const std::string name = "Quillfeather";

/// Ada Bell is given a name that stands nowhere else, and traces all over the library.
class PatronData : public OnEachDatabase {
 protected:
  void prepare() override {
    execute("update patrons set last_name = '" + name + "', search_name = 'quillfeather', first_name = '" +
            name + "', search_first = 'quillfeather', email = '" + name + "@example.org' where id = 1");
    // Made, changed, canceled; one more that is fetched for somebody else, and one that is deleted.
    save(3, "NEWBK");
    save(4, "NEWBK");
    save(5, "NEWBK");
    execute("update bookings set patron_id = 4, pickup_patron_id = 1 where id = 2");
    send("CANBK", "BOOKID=1");
    send("CANBK", "BOOKID=2");
    send("DELBK", "BOOKID=3");
    send("UPAI", "PID=1; LTRE=0; HBK=0; CANBK=0; UNBK=0");
    execute(
        "insert into outbox (kind, booking_id, patron_id, queued_at, due_at, fault) values "
        "(1, 1, 1, 0, 0, '550 " +
        name + "@example.org')");
  }

  void save(int dayOfMarch, const std::string& code) {
    std::string tags = booking(times(dayOfMarch, "10:00", "11:00"), "LOC=1", 3, "");
    const std::string empty = "SCHCOM=;";
    tags.replace(tags.find(empty), empty.size(), "SCHCOM=for " + name + ";");
    EXPECT_EQ(send(code, tags).rc, 0);
  }

  /// Every column of every table, as "table.column", whose text has the name.
  std::string placesOfName() {
    std::string found;
    library().database().read([&](Connection& db) {
      found.clear();
      const bool sqlite = db.dialect().kind == Dialect::Kind::Sqlite;
      std::vector<std::pair<std::string, std::string>> columns;
      std::string table;
      std::string column;
      Query all(db, sqlite
                        ? "select m.name, c.name from sqlite_master m join pragma_table_info(m.name) c where "
                          "m.type = 'table'"
                        : "select cast(table_name as text), cast(column_name as text) from "
                          "information_schema.columns where table_schema = current_schema()");
      all.into(table, column);
      while (all.next()) columns.emplace_back(table, column);
      for (const auto& [ofTable, named] : columns) {
        std::int64_t count = 0;
        Query rows(db, "select count(*) from " + ofTable + " where lower(cast(" + named +
                           " as text)) like '%quillfeather%'");
        rows.into(count);
        while (rows.next()) {
        }
        if (count > 0) found += ofTable + "." + named + " ";
      }
    });
    return found;
  }

  void erase() { (void)erasePatron(library().database(), "P100", library().clock()()); }
};
INSTANTIATE_TEST_SUITE_P(Databases, PatronData, eachDatabase, databaseName);

TEST_P(PatronData, IsToldAsAWhole) {
  const std::string told = tellPatron(library().database(), "P101");
  for (const char* part :
       {"\"last name\": \"Quillfeather\"", "\"e-mail\": \"Quillfeather@example.org\"", "\"card\": \"P100\"",
        "\"group\": \"Teachers\"", "\"number\": \"0000001\"", "\"note\": \"for Quillfeather\"",
        "\"role\": \"fetches it, or staff\"", "\"state\": \"waits\"", "\"action\": \"booking canceled\"",
        "\"action\": \"booking deleted\"", "\"action\": \"counters set\""})
    EXPECT_NE(told.find(part), std::string::npos) << part << "\n" << told;
  EXPECT_THROW((void)tellPatron(library().database(), "P999"), UserError);
}

TEST_P(PatronData, IsNowhereOnceErased) {
  EXPECT_NE(placesOfName().find("audit.detail"), std::string::npos) << "the traces are there";
  erase();
  EXPECT_EQ(placesOfName(), "");
  EXPECT_EQ(value("select count(*) from patron_barcodes where barcode in ('P100', 'P101')"), "0");
  EXPECT_EQ(value("select count(*) from bookings"), "2") << "statistics count them";
  EXPECT_EQ(value("select patron_id from bookings where id = 2"), "4") << "is somebody else's";
  EXPECT_EQ(value("select detail from audit where action = 'patron erased'"), "2 bookings made anonymous");
  EXPECT_EQ(value("select count(*) from audit where action = 'booking made' and detail = ''"), "3");
  EXPECT_THROW(erase(), UserError) << "the card is nobody's";
}

TEST_P(PatronData, StaysWhileABookingIsNotOver) {
  for (const char* held : {"patron_id = 1", "patron_id = 4, pickup_patron_id = 1", "setup_staff_id = 1"}) {
    execute(
        std::string("update bookings set status = 99, patron_id = null, pickup_patron_id = null "
                    "where id = 1"));
    execute(std::string("update bookings set ") + held + " where id = 1");
    EXPECT_THROW(erase(), UserError) << held;
  }
  execute("update bookings set status = 1");
  execute("insert into staff (patron_id) values (1)");
  EXPECT_THROW(erase(), UserError) << "is on the staff list";
  execute("delete from staff");
  EXPECT_NO_THROW(erase());
}

}  // namespace
}  // namespace vantry::server
