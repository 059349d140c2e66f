#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vantry {

/// One pair of a message. Values are always text.
struct TagValue {
  std::string tag;
  std::string value;
  bool operator==(const TagValue&) const = default;
};

/// One request of the protocol, as a row of `requestTable()`.
///
/// `sent` is a pattern over tags, in the order in which they are added: tags stand one after another, parted
/// by blanks; `( ... )` groups, `|` separates alternatives inside a group, and `?`, `*`, `+` behind a tag or
/// a group mean optional, repeated or absent, repeated at least once. "BOOKID (EID | IM)* ETIME?" is an
/// example.
struct RequestRow {
  std::string_view code;
  std::string_view sent;
  std::string_view head;     ///< tags of the reply's head, parted by blanks
  std::string_view records;  ///< tags of each record, parted by blanks
  std::string_view walk;     ///< the tag that every record carries; empty when the reply is single
  std::string_view rights;   ///< any one of these rights lets an operator send it; empty: every operator may
  bool writes;               ///< whether the request may change stored data
  std::string_view meaning;  ///< one line for people
};

/// All requests, grouped by subject. A code stands once.
[[nodiscard]] std::span<const RequestRow> requestTable();

/// The row of a code, or nullptr for a code that is not in the table.
[[nodiscard]] const RequestRow* findRequest(std::string_view code);

/// The tag that makes a message unfit for its request, and why.
struct MessageFault {
  enum class Kind { Missing, Unexpected, BadValue } kind;
  std::string tag;
  bool operator==(const MessageFault&) const = default;
};

/// Checks tags, their order and the form of their values against the row; nothing when the message is sound.
[[nodiscard]] std::optional<MessageFault> checkMessage(const RequestRow& row, std::span<const TagValue> tags);

/// Splits a list of words parted by blanks, as the rows hold them.
[[nodiscard]] std::vector<std::string_view> wordsOf(std::string_view list);

}  // namespace vantry
