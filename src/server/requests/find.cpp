// The search of all that the library has.

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <tuple>

#include "server/access/rights.h"
#include "server/base/number_text.h"
#include "server/base/tag_refusal.h"
#include "server/desk/equipment_store.h"
#include "server/desk/find_store.h"
#include "server/desk/inventory_record.h"
#include "server/desk/maintenance_store.h"
#include "server/desk/patron_store.h"
#include "server/requests/booking_list.h"
#include "server/requests/handlers.h"
#include "server/requests/inventory_message.h"
#include "server/store/parted_read.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

constexpr int patronBarcode = 17;
constexpr int socialNumber = 19;
constexpr int institutionId = 20;
constexpr int withHistory = 10;

/// Numbers that are nobody's business but of those who work with patrons.
constexpr std::string_view numberRights = "PACOU PAV PAADD PAUPD PADEL";

using Keys = std::span<const std::int64_t>;

void addBookings(Context& context, Keys ids, Reply& reply) {
  visitBookingsAmong(context.db, ids, [&](const BookingListRow& row) { addBookingRow(reply, row); });
}

/// A group without a name goes by its number.
std::string_view groupName(const EquipmentRow& row) {
  return row.groupName.empty() ? row.group : row.groupName;
}

void addEquipment(Context& context, Keys ids, Reply& reply) {
  visitEquipmentAmong(context.db, ids, [&](const EquipmentRow& row) {
    reply.record()
        .set(tags::ETI, row.typeId)
        .set(tags::EID, row.id)
        .set(tags::BNO, row.barcode)
        .set(tags::ENO, row.number)
        .set(tags::LNA, row.location)
        .set(tags::RNM, row.room)
        .set(tags::STY, row.status)
        .set(tags::EMA, row.maker)
        .set(tags::EMO, row.model)
        .set(tags::ESN, row.serial)
        .set(tags::GRPNO, row.group)
        .set(tags::GRPNA, groupName(row))
        .set(tags::EFO, row.format)
        .set(tags::MNC, row.note);
  });
}

void addRooms(Context& context, Keys ids, Reply& reply) {
  for (const RoomRow& row : roomsAmong(context.db, ids)) {
    reply.record()
        .set(tags::RTI, row.typeId)
        .set(tags::RID, row.id)
        .set(tags::RNO, row.number)
        .set(tags::RNM, row.name)
        .set(tags::LNA, row.location)
        .set(tags::STY, row.status)
        .set(tags::RCA, row.capacity)
        .set(tags::MNC, row.note);
  }
}

void addMaintenance(Context& context, Keys ids, Reply& reply) {
  for (const MaintenanceRow& row : maintenanceAmong(context.db, ids)) {
    reply.record()
        .set(tags::MSD, dayText(startOfMonth(row.cameInOn)))
        .set(tags::MID, row.id)
        .set(tags::MDYI, dayText(row.cameInOn))
        .set(tags::ETY, row.equipmentType)
        .set(tags::ENO, row.number)
        .set(tags::ON, row.operatorName);
  }
}

void addCard(Reply& reply, const FoundCard& card) {
  reply.record()
      .set(tags::PID, card.patronId)
      .set(tags::PLN, card.lastName)
      .set(tags::PFN, card.firstName)
      .set(tags::PMN, card.middleName);
  if (card.barcode.empty()) return;
  reply.set(tags::PGID, card.groupId)
      .set(tags::PGNM, card.group)
      .set(tags::BNO, card.barcode)
      .set(tags::BSI, card.statusId)
      .set(tags::BST, card.status);
}

/// Adds one patron after the other, with the numbers only where the operator may see them.
auto patronAdder(Context& context, Reply& reply) {
  return [&reply,
          showsNumbers = holdsAnyRight(context.db, context.session, numberRights)](const FoundPatron& row) {
    addCard(reply, row.card);
    if (showsNumbers) reply.set(tags::PSSN, row.socialNumber).set(tags::PIID, row.institutionId);
  };
}

void addPatrons(Context& context, Keys ids, Reply& reply) {
  visitPatronsAmong(context.db, ids, patronAdder(context, reply));
}

struct SubjectRow {
  FindSubject subject;
  std::string_view rights;
  void (*add)(Context&, Keys, Reply&);
};
/// Who may look for what: who works with it, and who books it.
constexpr std::array subjects{
    SubjectRow{FindSubject::Bookings, "BKV BKADD BKUPD BKCAN BKCHA BKDIS", addBookings},
    SubjectRow{FindSubject::Equipment, "EQV EQADD EQUPD EQDEL BKV BKADD BKUPD BKCAN BKCHA BKDIS",
               addEquipment},
    SubjectRow{FindSubject::Groups, "EQV EQADD EQUPD EQDEL BKV BKADD BKUPD BKCAN BKCHA BKDIS", addEquipment},
    SubjectRow{FindSubject::Rooms, "RMV RMADD RMUPD RMDEL BKV BKADD BKUPD BKCAN BKCHA BKDIS", addRooms},
    SubjectRow{FindSubject::Maintenance, "EQMV EQMADD EQMUPD EQMDEL", addMaintenance},
    SubjectRow{FindSubject::Patrons, "PACOU PAV PAADD PAUPD PADEL BKV BKADD BKUPD BKCAN BKCHA BKDIS",
               addPatrons},
};

const SubjectRow& subjectOf(const Message& message) {
  const std::int64_t number = message.number(tags::SRCHFOR);
  const auto found = std::ranges::find_if(
      subjects, [&](const SubjectRow& each) { return static_cast<std::int64_t>(each.subject) == number; });
  if (found == subjects.end()) refuseTag(tags::SRCHFOR);
  return *found;
}

/// Several criteria without a word between them must all hold.
bool meansAny(const Message& message) {
  const std::string_view word = message.text(tags::SRCHOP);
  if (word != "OR" && word != "AND" && !word.empty()) refuseTag(tags::SRCHOP);
  return word == "OR";
}

int numberOfTerm(std::string_view text) {
  const std::int64_t number = text.size() > 2 ? 0 : numberOf(text);
  return static_cast<int>(number);
}

std::vector<FindTerm> termsOf(const Message& message) {
  std::vector<FindTerm> terms;
  for (const TagValue& pair : message.tags()) {
    if (pair.tag == tags::SRCHTAG) terms.push_back({.number = numberOfTerm(pair.value), .value = {}});
    if (pair.tag == tags::SRCHVAL) terms.back().value = pair.value;
  }
  return terms;
}

FindQuestion questionOf(Context& context, const Message& message, FindSubject subject) {
  FindQuestion question{.subject = subject,
                        .scope = static_cast<int>(message.number(tags::SRCHLOC)),
                        .any = meansAny(message),
                        .history = false,
                        .terms = termsOf(message),
                        .deskId = context.session.locationId,
                        .now = context.now,
                        .most = context.search.most,
                        .longest = context.search.longest};
  if (subject == FindSubject::Bookings) {
    const std::size_t wanted =
        std::erase_if(question.terms, [](const FindTerm& each) { return each.number == withHistory; });
    question.history = wanted > 0 && holdsAnyRight(context.db, context.session, "BKVHI");
  }
  return question;
}

bool asksForNumbers(const FindQuestion& question) {
  return question.subject == FindSubject::Patrons &&
         std::ranges::any_of(question.terms, [](const FindTerm& each) {
           return each.number == socialNumber || each.number == institutionId;
         });
}

/// A barcode by itself finds cards, of which a patron may have several.
bool asksForCards(const FindQuestion& question) {
  return question.subject == FindSubject::Patrons && question.terms.size() == 1 &&
         question.terms.front().number == patronBarcode && question.scope == 5;
}

Reply cardsReply(Context& context, const FindQuestion& question) {
  const CardQuestion cards{question.terms.front().value, question.most, question.longest};
  std::ignore = valuesOf(*findCriterion(FindSubject::Patrons, patronBarcode), cards.text);
  Reply reply;
  visitCards(context.db, cards, patronAdder(context, reply));
  const bool isCut = reply.recordCount() == question.most;
  return reply.head(tags::SRCHCNT, isCut ? countCards(context.db, cards) : reply.recordCount());
}

/// From so many rows on, another connection reads some of them meanwhile.
constexpr std::size_t rowsOfPart = 500;

std::vector<Keys> groupsOf(Keys keys, std::size_t most) {
  std::vector<Keys> groups;
  for (; !keys.empty(); keys = keys.subspan(groups.back().size()))
    groups.push_back(keys.first(std::min(most, keys.size())));
  return groups;
}

/// A search with what it is run in.
struct Finding {
  Context& context;
  const SubjectRow& subject;
  const FindQuestion& question;
  FindSearch& search;
};

/// To count what was cut takes as long as to read many rows: it is the last part, with which another
/// connection begins.
Reply tellHits(const Finding& finding, Keys hits) {
  Context& context = finding.context;
  const std::vector<Keys> groups = groupsOf(hits, context.beside == nullptr ? hits.size() : rowsOfPart);
  std::vector<Reply> replies(groups.size());
  std::vector<Database::Work> parts;
  for (std::size_t place = 0; place < groups.size(); ++place) {
    parts.emplace_back([&, place](Connection& db) {
      Context there{db, context.session, context.now};
      replies[place] = Reply();
      finding.subject.add(there, groups[place], replies[place]);
    });
  }
  std::int64_t count = 0;
  const auto tellCount = [&](Connection& db) {
    const bool isOwn = &db == &context.db;
    count = isOwn ? finding.search.count() : FindSearch(db, finding.question).count();
  };
  if (!finding.search.isCounted()) parts.emplace_back(tellCount);
  readInParts({context.db, context.beside, finding.question.longest}, parts);
  if (finding.search.isCounted()) count = finding.search.count();
  Reply reply;
  for (const Reply& each : replies) reply.append(each);
  return reply.head(tags::SRCHCNT, count);
}

Reply find(Context& context, const Message& message) {
  // The window's advanced page asks for nothing.
  if (message.number(tags::SRCHFOR) == 0) {
    Reply reply;
    return reply.head(tags::SRCHCNT, std::int64_t{0});
  }
  const SubjectRow& subject = subjectOf(message);
  if (!holdsAnyRight(context.db, context.session, subject.rights)) return Reply(rc::noRight);
  const FindQuestion question = questionOf(context, message, subject.subject);
  if (asksForNumbers(question) && !holdsAnyRight(context.db, context.session, numberRights))
    return Reply(rc::noRight);
  if (asksForCards(question)) return cardsReply(context, question);
  FindSearch search(context.db, question);
  const std::vector<std::int64_t> hits = search.page();
  return tellHits({context, subject, question, search}, hits);
}

constexpr std::array rows{HandlerRow{"FIND", find}};

}  // namespace

std::span<const HandlerRow> findHandlers() {
  return rows;
}

}  // namespace vantry::server
