#pragma once

#include <string>
#include <string_view>

namespace vantry {

[[nodiscard]] std::string_view trim(std::string_view text);
/// Letters of ASCII only; other bytes stay.
[[nodiscard]] std::string lower(std::string_view text);
[[nodiscard]] std::string upper(std::string_view text);
[[nodiscard]] bool equalNoCase(std::string_view a, std::string_view b);
/// How many characters a UTF-8 text has, and the byte at which one of them starts; beyond them, its end.
[[nodiscard]] int characters(std::string_view text);
[[nodiscard]] std::size_t placeOfCharacter(std::string_view text, int character);
/// The number at the start of the text, behind blanks; 0 where there is none.
[[nodiscard]] double val(std::string_view text);
/// As `val`, cut to a whole number within the range of int.
[[nodiscard]] int intOf(std::string_view text);
/// Whether the whole text, without blanks around it, is a decimal number.
[[nodiscard]] bool isNumber(std::string_view text);
/// The text with each occurrence of the character replaced; the replacement itself is not searched.
[[nodiscard]] std::string ReplaceCharacter(std::string_view text, char character,
                                           std::string_view replacement);

}  // namespace vantry
