#pragma once

#include <span>
#include <string_view>

namespace vantry {

/// The form of a tag's value. Empty text is sound in every form: it reads as empty, or as zero.
enum class TagForm { Id, Name, Flag, Count, Date, Time, Money };

/// One tag of the vocabulary.
struct TagRow {
  std::string_view tag;
  TagForm form;
  std::string_view meaning;  ///< what it carries, for people
};

/// The dictionary of the protocol: every tag once, grouped by subject.
[[nodiscard]] std::span<const TagRow> tagTable();

/// The row of a tag, or nullptr for a tag that is not in the dictionary.
[[nodiscard]] const TagRow* findTag(std::string_view tag);

/// Whether the text is a sound value of the form.
[[nodiscard]] bool hasForm(std::string_view text, TagForm form);

/// The tags as constants, so that a misspelt tag does not compile.
namespace tags {
inline constexpr std::string_view BOOKID = "BOOKID";
}  // namespace tags

}  // namespace vantry
