#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantry {

// UTF-8, character by character. Overlong forms, halves of surrogate pairs and values beyond the last
// character are no characters.

inline constexpr char32_t noCharacter = 0xffffffff;

/// The length in bytes of the character at the start of the text; 0 where the bytes are none.
[[nodiscard]] std::size_t characterLength(std::string_view text);

/// Takes the next character off a text that is not empty. Where the bytes are none, takes one byte and gives
/// `noCharacter`.
[[nodiscard]] char32_t takeCharacter(std::string_view& text);

/// Whether the text has nothing but characters.
[[nodiscard]] bool isUtf8(std::string_view text);

void appendCharacter(std::string& text, char32_t character);

/// The longest beginning of the text that has at most so many bytes and cuts no character.
[[nodiscard]] std::string_view cutText(std::string_view text, std::size_t bytes);

}  // namespace vantry
