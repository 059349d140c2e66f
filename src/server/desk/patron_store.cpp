#include "server/desk/patron_store.h"

#include "server/base/search_text.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

static std::string cardsSql(Connection& db, std::int64_t most) {
  return "select p.id, p.last_name, p.first_name, p.middle_name, g.id, g.name, c.barcode, s.id, s.name, "
         "p.social_number, p.institution_id from patron_barcodes c join patrons p on p.id = c.patron_id "
         "join patron_groups g on g.id = c.patron_group_id join barcode_statuses s on s.id = c.status_id "
         "where " +
         inRange(db, "c.barcode") + " order by p.last_name, p.first_name, c.id limit " + std::to_string(most);
}

static void visitFound(Query& query, const std::function<void(const FoundPatron&)>& visit) {
  FoundPatron row;
  FoundCard& card = row.card;
  query.into(card.patronId, card.lastName, card.firstName, card.middleName, card.groupId, card.group,
             card.barcode, card.statusId, card.status, row.socialNumber, row.institutionId);
  while (query.next()) visit(row);
}

void visitCards(Connection& db, const CardQuestion& question,
                const std::function<void(const FoundPatron&)>& visit) {
  const TextRange range = textRange(question.text);
  if (range.high.empty()) return;
  const TimeLimit limit(db, question.longest);
  const std::string sql = cardsSql(db, question.most);
  Query query(db, sql);
  query.bind("low", range.low).bind("high", range.high);
  visitFound(query, visit);
}

std::int64_t countCards(Connection& db, const CardQuestion& question) {
  const TextRange range = textRange(question.text);
  const TimeLimit limit(db, question.longest);
  std::int64_t count = 0;
  Query query(db, "select count(*) from patron_barcodes c where " + inRange(db, "c.barcode"));
  query.bind("low", range.low).bind("high", range.high);
  fetchOne(query, count);
  return count;
}

void visitPatronsAmong(Connection& db, std::span<const std::int64_t> ids,
                       const std::function<void(const FoundPatron&)>& visit) {
  planByIndexes(db);
  const std::string sql =
      "select p.id, p.last_name, p.first_name, p.middle_name, g.id, g.name, c.barcode, s.id, s.name, "
      "p.social_number, p.institution_id from (" +
      orderedKeysIn(db, "ids") +
      ") k cross join patrons p left join patron_barcodes c on c.patron_id = p.id "
      "left join patron_groups g on g.id = c.patron_group_id left join barcode_statuses s on s.id = "
      "c.status_id where p.id = k.value order by k.place, s.active desc, c.id";
  Query query(db, sql);
  query.bind("ids", keysText(ids));
  // With all cards, of which the first is the one to show: sooner than looking for it with each patron.
  std::int64_t last = 0;
  visitFound(query, [&](const FoundPatron& row) {
    if (row.card.patronId != last) visit(row);
    last = row.card.patronId;
  });
}

std::vector<PatronCard> cardsOf(Connection& db, std::int64_t patronId) {
  std::vector<PatronCard> cards;
  PatronCard card;
  Query query(
      db,
      "select b.barcode, s.name, g.name, g.id from patron_barcodes b "
      "join barcode_statuses s on s.id = b.status_id join patron_groups g on g.id = b.patron_group_id "
      "where b.patron_id = :patron_id order by s.active desc, b.id");
  query.bind("patron_id", patronId).into(card.barcode, card.status, card.group, card.groupId);
  while (query.next()) cards.push_back(card);
  return cards;
}

PatronAddress addressOn(Connection& db, std::int64_t bookingId, std::int64_t patronId) {
  PatronAddress lines;
  Query query(
      db,
      "select p.address1, p.address2, p.address3, p.address4, p.address5, p.city, p.province, p.postal_code, "
      "p.telephone from bookings b join patrons p on p.id = b.patron_id or p.id = b.pickup_patron_id where "
      "b.id = :booking and p.id = :patron and (p.withheld = 0 or b.status in (0, 99, 999))");
  query.bind("booking", bookingId).bind("patron", patronId);
  fetchOne(query, lines[0], lines[1], lines[2], lines[3], lines[4], lines[5], lines[6], lines[7], lines[8]);
  return lines;
}

}  // namespace vantry::server
