#include "server/access/audit_list.h"

#include <algorithm>

#include "server/access/operators.h"
#include "server/store/query.h"

namespace vantry::server {

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

}  // namespace vantry::server
