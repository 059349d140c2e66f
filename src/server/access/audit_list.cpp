#include "server/access/audit_list.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <limits>
#include <string_view>

#include "server/access/operators.h"
#include "server/store/query.h"
#include "server/store/query_help.h"

namespace vantry::server {

namespace {

/// Whether the text tells the number behind one of these words: "patron 7," of what a booking was, "PID=7" of
/// what was asked, for its patrons, and the two of its staff.
bool tellsPatron(std::string_view text, const std::string& number) {
  constexpr std::array<std::string_view, 4> words{"patron ", "PID=", "ODE=", "OPU="};
  for (const std::string_view word : words) {
    const std::string wanted = std::string(word) + number;
    for (std::size_t at = text.find(wanted); at != std::string_view::npos; at = text.find(wanted, at + 1)) {
      const std::size_t end = at + wanted.size();
      if (end == text.size() || std::isdigit(static_cast<unsigned char>(text[end])) == 0) return true;
    }
  }
  return false;
}

/// The subject is one confirmation number, or several.
bool isAboutBooking(std::string_view subject, const std::set<std::string, std::less<>>& bookings) {
  while (!subject.empty()) {
    const std::size_t blank = std::min(subject.find(' '), subject.size());
    if (bookings.contains(subject.substr(0, blank))) return true;
    subject.remove_prefix(std::min(blank + 1, subject.size()));
  }
  return false;
}

}  // namespace

std::vector<AuditRow> auditRows(Connection& db, const AuditFilter& filter) {
  std::string sql =
      "select a.at, coalesce(o.login, case when a.system_user <> '' then '@' || a.system_user else '' end), "
      "coalesce(l.name, ''), a.action, a.subject, a.detail from audit a "
      "left join operators o on o.id = a.operator_id left join locations l on l.id = a.location_id "
      "where a.id > 0";
  if (filter.since) sql += " and a.at >= :since";
  if (filter.before) sql += " and a.at < :before";
  if (!filter.login.empty()) sql += " and o.login = :login";
  if (!filter.action.empty()) sql += " and a.action = :action";
  if (!filter.subject.empty()) sql += " and a.subject = :subject";
  sql += " order by a.id desc limit :most";
  const std::string login = loginKey(filter.login);
  Query query(db, sql);
  if (filter.since) query.bind("since", *filter.since);
  if (filter.before) query.bind("before", *filter.before);
  if (!filter.login.empty()) query.bind("login", login);
  if (!filter.action.empty()) query.bind("action", filter.action);
  if (!filter.subject.empty()) query.bind("subject", filter.subject);
  query.bind("most", filter.most);
  AuditRow row;
  query.into(row.at, row.login, row.location, row.action, row.subject, row.detail);
  std::vector<AuditRow> rows;
  while (query.next()) rows.push_back(row);
  std::ranges::reverse(rows);
  return rows;
}

std::int64_t dropAuditBefore(Connection& db, Moment moment, int most) {
  std::int64_t count = 0;
  std::int64_t last = 0;
  Query found(db,
              "select count(*), coalesce(max(id), 0) from (select id from audit where at < :moment "
              "order by id limit :most) as oldest");
  found.bind("moment", moment).bind("most", most).into(count, last);
  while (found.next()) {
  }
  if (count == 0) return 0;
  Query drop(db, "delete from audit where id <= :last and at < :moment");
  drop.bind("last", last).bind("moment", moment).later();
  return count;
}

Moment firstOfAudit(Connection& db) {
  Moment first = 0;
  Query query(db, "select coalesce(min(at), :none) from audit");
  query.bind("none", std::numeric_limits<Moment>::max());
  fetchOne(query, first);
  return first;
}

std::int64_t blankBookingsInAudit(Connection& db, Moment from, Moment until) {
  Query query(
      db,
      "update audit set detail = '' where at >= :from_at and at < :until_at and action like 'booking %' "
      "and detail <> ''");
  return query.bind("from_at", from).bind("until_at", until).run();
}

AuditTraces findTraces(Connection& db, const AuditedPatron& patron, std::int64_t after) {
  AuditTraces traces{.rows = {}, .last = after};
  std::string action;
  std::string subject;
  std::string detail;
  const std::string number = std::to_string(patron.patronId);
  Query query(
      db,
      "select id, action, subject, detail from audit where id > :after and (action like 'booking %' or "
      "action like 'staff %' or action = 'counters set') order by id");
  query.bind("after", after).into(traces.last, action, subject, detail);
  while (query.next()) {
    const bool isFound = action.starts_with("booking ")
                             ? isAboutBooking(subject, patron.bookings) || tellsPatron(detail, number)
                             : subject == number;
    if (isFound) traces.rows.push_back(traces.last);
  }
  return traces;
}

void blankAuditRows(Connection& db, std::span<const std::int64_t> rows) {
  if (rows.empty()) return;
  Query query(db, "update audit set detail = '' where id in (" + keysIn(db, "rows") + ")");
  query.bind("rows", keysText(rows)).run();
}

}  // namespace vantry::server
