#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vantry::server {

/// What the placeholders of a text become, by name.
using MailValues = std::map<std::string, std::string, std::less<>>;

/// A text with placeholders in braces.
struct MailText {
  std::string subject;
  std::string body;
};

struct Placeholder {
  std::string_view name;
  std::string_view meaning;
};
[[nodiscard]] std::vector<Placeholder> mailPlaceholders();

/// The text for several bookings of one save; the others are named as the kinds of mail are.
inline constexpr std::string_view severalConfirmed = "confirmed-several";
[[nodiscard]] std::vector<std::string_view> mailTextNames();

[[nodiscard]] const MailText& builtInText(std::string_view name);

/// A text as its file has it: "Subject: ...", an empty line, the body.
[[nodiscard]] std::string textOfFile(const MailText& text);

/// Where a folder keeps the text of this name.
[[nodiscard]] std::string mailTextFile(const std::string& folder, std::string_view name);

/// The text that is in use, and what is wrong with the file, each in a sentence. A file with a fault is not
/// used.
struct UsedText {
  MailText text;
  bool isBuiltIn = true;
  std::vector<std::string> faults;
};
[[nodiscard]] UsedText usedText(const std::string& folder, std::string_view name);

/// The text with its placeholders filled in. A subject is one line, whatever a value contains.
[[nodiscard]] MailText filledText(const MailText& text, const MailValues& values);

}  // namespace vantry::server
