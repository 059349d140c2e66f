#include "server/mail/outbox.h"

#include <algorithm>
#include <functional>
#include <iterator>

#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

// A server that dies with a mail in its hands leaves it to the others after this time. Sending one takes a
// minute at most.
constexpr Moment lease = 5 * minute;
// Also keeps a reminder from being sent twice, so it is longer than reminders look back.
constexpr Moment memory = 60 * day;
constexpr Moment reminderReach = 7 * day;

// Numbers of a state and of kinds are written into the statements, since partial indexes are chosen by them:
// 0 waits, 1 is sent, 2 is given up; kinds below 4 are news.

constexpr const char* mergedNews =
    " on conflict (booking_id, patron_id) where state = 0 and kind < 4 do update set "
    "kind = case when excluded.kind = 3 then 3 when outbox.kind = 3 then 2 else outbox.kind end, "
    "about = excluded.about, kept = excluded.kept, revision = outbox.revision + 1, tries = 0, save = 0, "
    "queued_at = excluded.queued_at, due_at = excluded.due_at";

constexpr const char* hasWaitingNews =
    " and exists (select 1 from outbox w where w.booking_id = :waiting and w.patron_id = p.id and w.state = "
    "0 "
    "and w.kind < 4) ";

constexpr const char* reachable = " p.withheld = 0 and p.email <> '' ";

void queueDue(Connection& db, Moment now) {
  const std::string sql =
      std::string(
          "insert into outbox (kind, booking_id, patron_id, about, queued_at, due_at) "
          "select 4, b.id, p.id, b.ends_at, cast(:queued_at as bigint), cast(:due_at as bigint) "
          "from bookings b join patrons p on p.id = b.patron_id where b.status in (0, 99) and "
          "b.status = 99 and b.ends_at >= :from_at and b.ends_at < :until_at and") +
      reachable + "on conflict (booking_id, kind, about) where kind > 3 do nothing";
  const Moment tomorrow = startOfDay(now) + day;
  Query query(db, sql);
  query.bind("queued_at", now).bind("due_at", now);
  query.bind("from_at", tomorrow).bind("until_at", tomorrow + day).run();
}

void queueOverdue(Connection& db, Moment now) {
  const std::string sql =
      std::string(
          "insert into outbox (kind, booking_id, patron_id, about, queued_at, due_at) "
          "select 5, b.id, p.id, b.ends_at, cast(:queued_at as bigint), cast(:due_at as bigint) "
          "from bookings b join patrons p on p.id = b.patron_id where b.status in (0, 99, 999) and "
          "b.status = 999 and b.ends_at >= :from_at and") +
      reachable + "on conflict (booking_id, kind, about) where kind > 3 do nothing";
  Query query(db, sql);
  query.bind("queued_at", now).bind("due_at", now).bind("from_at", now - reminderReach).run();
}

/// Leases the mails for which the condition holds, which compares with `now`.
std::string leasing(const std::string& condition) {
  return "update outbox set leased_until = :leased_until, tries = tries + 1 where state = 0 and leased_until "
         "<= :unleased and " +
         condition +
         " returning id, kind, booking_id, patron_id, about, revision, queued_at, tries, kept, told, save";
}

std::vector<TakenMail> leased(Query& query, Moment now) {
  std::vector<TakenMail> mails;
  TakenMail mail;
  int kind = 0;
  query.bind("leased_until", now + lease).bind("unleased", now).bind("now", now);
  query.into(mail.id, kind, mail.bookingId, mail.patronId, mail.about, mail.revision, mail.queuedAt,
             mail.tries, mail.values, mail.told, mail.save);
  while (query.next()) {
    mail.kind = static_cast<MailKind>(kind);
    mails.push_back(mail);
  }
  return mails;
}

/// False when the mail was changed since it was taken.
bool settle(Connection& db, const TakenMail& mail, const std::string& what,
            const std::function<void(Query&)>& bind) {
  Query query(db, what + " where id = :id and revision = :revision and state = 0");
  bind(query);
  return query.bind("id", mail.id).bind("revision", mail.revision).run() > 0;
}

/// Lets the mail go that was changed meanwhile.
void release(Connection& db, const TakenMail& mail) {
  Query query(db, "update outbox set leased_until = 0 where id = :id and state = 0");
  query.bind("id", mail.id).run();
}

}  // namespace

void queueNews(Connection& db, MailKind kind, std::span<const std::int64_t> bookings, Moment now) {
  if (bookings.empty()) return;
  const std::string sql =
      "insert into outbox (kind, booking_id, patron_id, queued_at, due_at, save) select cast(:kind as "
      "bigint), b.id, p.id, cast(:queued_at as bigint), cast(:due_at as bigint), cast(:save as bigint) "
      "from bookings b join patrons p on p.id = b.patron_id where b.id in (" +
      keysIn(db, "bookings") +
      ") and (b.ends_at > :now or b.ends_at = b.starts_at and b.ends_at >= :today) and" + reachable +
      " order by b.id" + mergedNews;
  Query query(db, sql);
  query.bind("kind", static_cast<int>(kind)).bind("queued_at", now).bind("due_at", now + mailSettling);
  query.bind("save", bookings.size() > 1 ? bookings.front() : 0);
  query.bind("bookings", keysText(bookings)).bind("now", now).bind("today", startOfDay(now)).run();
}

void queueFarewell(Connection& db, const Farewell& farewell, Moment now) {
  if (farewell.endsAt <= now) return;
  const std::string sql =
      std::string(
          "insert into outbox (kind, booking_id, patron_id, about, queued_at, due_at, kept) "
          "select 3, cast(:booking_id as bigint), p.id, cast(:about as bigint), cast(:queued_at as "
          "bigint), cast(:due_at as bigint), cast(:kept as text) from patrons p where p.id = "
          ":patron_id and") +
      reachable + (farewell.ifWaiting ? hasWaitingNews : "") + mergedNews;
  Query query(db, sql);
  query.bind("booking_id", farewell.bookingId).bind("about", farewell.endsAt);
  query.bind("queued_at", now).bind("due_at", now + mailSettling).bind("kept", farewell.values);
  if (farewell.ifWaiting) query.bind("waiting", farewell.bookingId);
  query.bind("patron_id", farewell.patronId).run();
}

void queueReminders(Connection& db, const MailKinds& kinds, Moment now) {
  if (kinds.has(MailKind::Due)) queueDue(db, now);
  if (kinds.has(MailKind::Overdue)) queueOverdue(db, now);
}

bool isMailDue(Connection& db, Moment now) {
  int found = 0;
  Query query(
      db, "select 1 from outbox where state = 0 and due_at <= :now and leased_until <= :unleased limit 1");
  query.bind("now", now).bind("unleased", now);
  return fetchOne(query, found);
}

std::vector<TakenMail> takeMails(Connection& db, Moment now) {
  Query first(db,
              leasing("id = (select id from outbox where state = 0 and due_at <= :now and leased_until <= "
                      ":free order by due_at, id limit 1)"));
  first.bind("free", now);
  std::vector<TakenMail> mails = leased(first, now);
  if (mails.empty() || mails.front().save == 0) return mails;
  Query others(db, leasing("due_at <= :now and save = :save and save > 0 and patron_id = :patron_id"));
  others.bind("save", mails.front().save).bind("patron_id", mails.front().patronId);
  std::ranges::copy(leased(others, now), std::back_inserter(mails));
  std::ranges::sort(mails, {}, &TakenMail::bookingId);
  return mails;
}

void markSent(Connection& db, const TakenMail& mail, const std::string& told, Moment now) {
  const bool isDone = settle(
      db, mail,
      "update outbox set state = 1, leased_until = 0, sent_at = :now, kept = '', fault = '', told = :told",
      [&](Query& query) { query.bind("now", now).bind("told", told); });
  if (isDone) return;
  Query query(
      db,
      "update outbox set kind = case when kind = 1 then 2 else kind end, leased_until = 0, told = :told "
      "where id = :id and state = 0");
  query.bind("told", told).bind("id", mail.id).run();
}

void postpone(Connection& db, const TakenMail& mail, const std::string& fault, Moment until) {
  const bool isDone = settle(db, mail, "update outbox set leased_until = 0, due_at = :due_at, fault = :fault",
                             [&](Query& query) { query.bind("due_at", until).bind("fault", fault); });
  if (!isDone) release(db, mail);
}

void giveUp(Connection& db, const TakenMail& mail, const std::string& fault) {
  const bool isDone = settle(db, mail, "update outbox set state = 2, leased_until = 0, fault = :fault",
                             [&](Query& query) { query.bind("fault", fault); });
  if (!isDone) release(db, mail);
}

void dropMail(Connection& db, const TakenMail& mail) {
  if (!settle(db, mail, "delete from outbox", [](Query&) {})) release(db, mail);
}

void tellApart(Connection& db, const TakenMail& mail) {
  const bool isDone =
      settle(db, mail, "update outbox set save = 0, leased_until = 0, tries = tries - 1", [](Query&) {});
  if (!isDone) release(db, mail);
}

std::string lastTold(Connection& db, const TakenMail& mail) {
  if (!mail.told.empty()) return mail.told;
  std::string told;
  Query query(
      db,
      "select told from outbox where booking_id = :booking_id and patron_id = :patron_id and state = 1 "
      "and kind < 4 order by sent_at desc, id desc limit 1");
  query.bind("booking_id", mail.bookingId).bind("patron_id", mail.patronId);
  fetchOne(query, told);
  return told;
}

std::vector<OutboxRow> outboxRows(Connection& db) {
  std::vector<OutboxRow> rows;
  OutboxRow row;
  int kind = 0;
  Query query(db,
              "select id, kind, booking_id, case when state = 2 then 1 else 0 end, queued_at, due_at, tries, "
              "fault from outbox where state <> 1 order by id");
  query.into(row.id, kind, row.bookingId, row.givenUp, row.queuedAt, row.dueAt, row.tries, row.fault);
  while (query.next()) {
    row.kind = static_cast<MailKind>(kind);
    rows.push_back(row);
  }
  return rows;
}

std::int64_t countWaitingMail(Connection& db) {
  std::int64_t count = 0;
  Query query(db, "select count(*) from outbox where state = 0");
  fetchOne(query, count);
  return count;
}

/// Of several mails of one booking, the latest tells what the others would.
std::int64_t retryMail(Connection& db, std::int64_t id, Moment now) {
  Query query(
      db,
      "update outbox set state = 0, due_at = :due_at, queued_at = :queued_at, tries = 0 where state <> 1 and "
      "leased_until <= :now and (id = :id or 0 = :any) and not (kind < 4 and exists (select 1 from outbox n "
      "where "
      "n.booking_id = outbox.booking_id and n.patron_id = outbox.patron_id and n.kind < 4 and n.state <> 1 "
      "and "
      "n.id > outbox.id))");
  return query.bind("due_at", now)
      .bind("queued_at", now)
      .bind("now", now)
      .bind("id", id)
      .bind("any", id)
      .run();
}

std::int64_t removeMail(Connection& db, std::int64_t id) {
  Query query(db, "delete from outbox where state <> 1 and (id = :id or 0 = :any)");
  return query.bind("id", id).bind("any", id).run();
}

void dropOldMail(Connection& db, Moment now) {
  Query query(db, "delete from outbox where state <> 0 and queued_at < :before");
  query.bind("before", now - memory).run();
}

}  // namespace vantry::server
