#include "messaging/marc_fields.h"

#include <algorithm>
#include <span>

namespace vantry {
namespace {

/// A tag, or the beginning of a group of tags; the longest that fits names a field.
struct FieldName {
  std::string_view tag;
  std::string_view name;
};

constexpr FieldName kBibNames[] = {
    {"LDR", "Leader"},
    {"001", "Control number"},
    {"003", "Source of the number"},
    {"005", "Last changed"},
    {"006", "Coded details"},
    {"007", "Physical form, coded"},
    {"008", "Coded details"},
    {"010", "National number"},
    {"020", "ISBN"},
    {"022", "ISSN"},
    {"024", "Standard number"},
    {"028", "Publisher's number"},
    {"035", "System number"},
    {"040", "Cataloguing source"},
    {"041", "Language"},
    {"050", "Call number, LC"},
    {"060", "Call number, NLM"},
    {"082", "Call number, Dewey"},
    {"086", "Document number"},
    {"09", "Local call number"},
    {"0", "Number or code"},
    {"100", "Author"},
    {"110", "Author, a body"},
    {"111", "Meeting"},
    {"130", "Uniform title"},
    {"240", "Uniform title"},
    {"245", "Title"},
    {"246", "Other title"},
    {"250", "Edition"},
    {"257", "Country"},
    {"26", "Published"},
    {"2", "Title or edition"},
    {"300", "Description"},
    {"306", "Playing time"},
    {"336", "Kind of content"},
    {"337", "Kind of medium"},
    {"338", "Kind of carrier"},
    {"3", "Description"},
    {"4", "Series"},
    {"505", "Contents"},
    {"508", "Production credits"},
    {"511", "Performers"},
    {"520", "Summary"},
    {"521", "Audience"},
    {"538", "System details"},
    {"546", "Language"},
    {"5", "Note"},
    {"600", "Subject, a person"},
    {"610", "Subject, a body"},
    {"650", "Subject"},
    {"651", "Subject, a place"},
    {"655", "Genre"},
    {"6", "Subject"},
    {"700", "Other author"},
    {"710", "Other body"},
    {"740", "Related title"},
    {"7", "Other entry"},
    {"830", "Series"},
    {"852", "Location"},
    {"856", "On line"},
    {"8", "Holdings"},
    {"9", "Local field"},
};

constexpr FieldName kHoldingsNames[] = {
    {"004", "Title's number"},
    {"852", "Location and call number"},
    {"853", "Pattern of issues"},
    {"863", "Enumeration and chronology"},
    {"866", "Holdings"},
    {"867", "Supplements held"},
    {"868", "Indexes held"},
    {"876", "Item"},
    {"877", "Item of a supplement"},
    {"878", "Item of an index"},
};

std::string_view nameIn(std::span<const FieldName> names, std::string_view tag) {
  std::string_view best;
  std::size_t length = 0;
  for (const FieldName& row : names) {
    if (!tag.starts_with(row.tag) || row.tag.size() <= length) continue;
    best = row.name;
    length = row.tag.size();
  }
  return best;
}

constexpr char kMark = '\x1f';

/// Each subfield in its turn; a text without marks is one without a code.
template <class Take>
void eachSubfield(std::string_view text, Take take) {
  const std::size_t first = std::min(text.find(kMark), text.size());
  if (first > 0) take(std::string_view{}, text.substr(0, first));
  text.remove_prefix(first);
  while (text.size() > 1) {
    const std::size_t end = std::min(text.find(kMark, 1), text.size());
    if (end > 1) take(text.substr(1, 1), text.substr(2, end - 2));
    text.remove_prefix(end);
  }
}

}  // namespace

std::string_view marcFieldName(MarcKind kind, std::string_view tag) {
  if (kind == MarcKind::Holdings) {
    const std::string_view own = nameIn(kHoldingsNames, tag);
    if (!own.empty()) return own;
  }
  const std::string_view name = nameIn(kBibNames, tag);
  return name.empty() ? "Field" : name;
}

std::string marcFieldText(std::string_view text) {
  std::string plain;
  eachSubfield(text, [&](std::string_view, std::string_view value) {
    if (!plain.empty()) plain += ' ';
    plain += value;
  });
  return plain;
}

std::string marcFieldSource(std::string_view text) {
  std::string source;
  eachSubfield(text, [&](std::string_view code, std::string_view value) {
    if (!source.empty()) source += ' ';
    if (!code.empty()) source.append("$").append(code).append(" ");
    source += value;
  });
  return source;
}

}  // namespace vantry
