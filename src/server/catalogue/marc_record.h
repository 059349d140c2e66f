#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantry::server {

/// One field of a MARC record.
struct MarcField {
  std::string tag;         ///< three characters
  std::string indicators;  ///< two characters; empty in a control field
  std::string text;        ///< subfields, each begun by `marcMark` and its code; plain in a control field
  bool operator==(const MarcField&) const = default;
};

inline constexpr char marcMark = '\x1f';

/// A record of the catalogue: of a title, or of holdings.
struct MarcRecord {
  std::string leader;
  std::vector<MarcField> fields;
  bool operator==(const MarcRecord&) const = default;
};

/// The first field of the tag, or nullptr.
[[nodiscard]] const MarcField* findField(const MarcRecord& record, std::string_view tag);

struct MarcSubfield {
  char code;
  std::string text;  ///< without blanks around it
};
[[nodiscard]] std::vector<MarcSubfield> subfieldsOf(const MarcField& field);

/// The first subfield of the code, without blanks around it; empty where there is none.
[[nodiscard]] std::string subfield(const MarcField& field, char code);

/// The first text that one of these codes has, in the order of the codes.
[[nodiscard]] std::string firstSubfield(const MarcField& field, std::string_view codes);

/// All subfields of these codes in the field's own order, with a blank between them.
[[nodiscard]] std::string subfields(const MarcField& field, std::string_view codes);

/// The text of a control field, such as 001; empty without it.
[[nodiscard]] std::string controlText(const MarcRecord& record, std::string_view tag);

/// "a" and the text make a subfield's text for MarcField.
[[nodiscard]] std::string marcSubfield(char code, std::string_view text);

/// Whether it describes holdings, by its leader.
[[nodiscard]] bool isHoldings(const MarcRecord& record);

/// The form in which the store keeps records: one line per field.
[[nodiscard]] std::string storedForm(const MarcRecord& record);
[[nodiscard]] MarcRecord fromStoredForm(std::string_view text);

}  // namespace vantry::server
