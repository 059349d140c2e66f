#include "server/mail/mail_kinds.h"

#include <algorithm>

namespace vantry::server {

namespace {

struct KindRow {
  MailKind kind;
  std::string_view name;
};
constexpr std::array kinds{
    KindRow{MailKind::Confirmed, "confirmed"}, KindRow{MailKind::Changed, "changed"},
    KindRow{MailKind::Cancelled, "cancelled"}, KindRow{MailKind::Due, "due"},
    KindRow{MailKind::Overdue, "overdue"},
};

}  // namespace

std::string_view mailKindName(MailKind kind) {
  return std::ranges::find(kinds, kind, &KindRow::kind)->name;
}

std::optional<MailKind> mailKindNamed(std::string_view name) {
  const auto found = std::ranges::find(kinds, name, &KindRow::name);
  return found == kinds.end() ? std::nullopt : std::optional(found->kind);
}

}  // namespace vantry::server
