#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace vantry::server {

/// What a patron is told about. The numbers are stored.
enum class MailKind : int { Confirmed = 1, Changed = 2, Cancelled = 3, Due = 4, Overdue = 5 };

inline constexpr std::array allMailKinds{MailKind::Confirmed, MailKind::Changed, MailKind::Cancelled,
                                         MailKind::Due, MailKind::Overdue};

/// The name of a kind in settings and of its file: "confirmed".
[[nodiscard]] std::string_view mailKindName(MailKind kind);
[[nodiscard]] std::optional<MailKind> mailKindNamed(std::string_view name);

/// Which kinds are switched on.
class MailKinds {
 public:
  constexpr MailKinds& add(MailKind kind) {
    bits_ |= bitOf(kind);
    return *this;
  }
  [[nodiscard]] constexpr bool has(MailKind kind) const { return (bits_ & bitOf(kind)) != 0; }
  [[nodiscard]] constexpr bool any() const { return bits_ != 0; }

 private:
  static constexpr unsigned bitOf(MailKind kind) { return 1U << static_cast<unsigned>(kind); }

  unsigned bits_ = 0;
};

}  // namespace vantry::server
