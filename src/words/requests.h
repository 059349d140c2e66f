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
/// `sent` is a pattern over tags, in the order in which they are added: tags follow one another, separated
/// by blanks; `( ... )` groups, `|` separates alternatives inside a group, and `?`, `*`, `+` behind a tag or
/// a group mean optional, repeated or absent, repeated at least once. "BOOKID (EID | IM)* ETIME?" is an
/// example. A tag that takes another form here than the dictionary gives it says so with a colon: "HBK:Flag".
///
/// A reply has a head, or records, or both. A record carries at least one of the tags of `walk` and leaves
/// out what it has no value for: two tags there mean two kinds of records, each walked by its own tag.
struct RequestRow {
  std::string_view code;
  std::string_view sent;
  std::string_view head;  ///< tags of the reply's head, separated by blanks
  std::string_view
      records;              ///< tags of each record, separated by blanks; a colon names another form here too
  std::string_view walk;    ///< the tag that every record carries, or several; empty when the reply is single
  std::string_view rights;  ///< any one of these rights lets an operator send it; empty: every operator may
  bool writes;              ///< whether the request may change stored data
  std::string_view meaning;  ///< one line for people
};

/// All requests, grouped by subject. Each code is there once.
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
/// Missing names the first required tag that is not there; Unexpected names a tag that the request does not
/// know or that is in the wrong place; BadValue the first tag whose value does not have its form. Time and
/// memory grow with the number of tags only. Throws std::invalid_argument for a row whose pattern is no
/// pattern, which no row of the table is.
[[nodiscard]] std::optional<MessageFault> checkMessage(const RequestRow& row, std::span<const TagValue> tags);

/// The tag of a word of `head`, `records` or `walk`: the part before a colon.
[[nodiscard]] constexpr std::string_view tagOf(std::string_view word) {
  return word.substr(0, word.find(':'));
}

/// Splits a list of words separated by blanks, as the rows have them.
[[nodiscard]] std::vector<std::string_view> wordsOf(std::string_view list);

}  // namespace vantry
