#include "server/setup/table_cells.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

#include "server/base/money_text.h"

namespace vantry::server {

namespace {

constexpr std::array<std::string_view, 4> yesWords{"yes", "y", "true", "1"};
constexpr std::array<std::string_view, 4> noWords{"no", "n", "false", "0"};
constexpr std::string_view halvesMark = ": ";

}  // namespace

std::string trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(" \t") - first + 1));
}

std::string headingKey(std::string_view heading) {
  std::string key;
  for (const char sign : heading) {
    const auto byte = static_cast<unsigned char>(sign);
    // Letters of other scripts stay as they are: two note types may differ in nothing else.
    const bool isAscii = byte < 0x80;
    if (!isAscii || std::isalnum(byte)) key += isAscii ? static_cast<char>(std::tolower(byte)) : sign;
  }
  return key;
}

std::optional<bool> yesOrNo(std::string_view text) {
  const std::string key = headingKey(text);
  if (std::ranges::find(yesWords, key) != yesWords.end()) return true;
  if (std::ranges::find(noWords, key) != noWords.end()) return false;
  return std::nullopt;
}

std::string yesNoText(bool yes) {
  return yes ? "yes" : "no";
}

std::optional<Moment> dayIn(const std::string& text) {
  if (text.size() > 10) return std::nullopt;  // a time of the day means nothing here
  if (const auto date = parseMoment(text)) return date;
  const std::size_t first = text.find('.');
  const std::size_t second = first == std::string::npos ? first : text.find('.', first + 1);
  if (second == std::string::npos) return std::nullopt;
  return parseMoment(text.substr(second + 1) + '-' + text.substr(first + 1, second - first - 1) + '-' +
                     text.substr(0, first));
}

std::optional<std::int64_t> moneyIn(const std::string& text) {
  std::string amount = text;
  std::ranges::replace(amount, ',', '.');
  const std::size_t point = amount.find('.');
  // "1.250" may be a thousand and more, or one and a quarter.
  if (point != std::string::npos && amount.size() - point - 1 != 1 && amount.size() - point - 1 != 2)
    return std::nullopt;
  if (!text.empty() && amount.find_first_of("0123456789") == std::string::npos) return std::nullopt;
  return parseMoney(amount);
}

std::optional<std::int64_t> countIn(std::string_view text, std::int64_t most) {
  std::int64_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && count >= 0 && count <= most ? std::optional(count) : std::nullopt;
}

bool hasControlSign(std::string_view text, Lines lines) {
  return std::ranges::any_of(text, [&](char sign) {
    if (lines == Lines::Several && (sign == '\n' || sign == '\r' || sign == '\t')) return false;
    return static_cast<unsigned char>(sign) < ' ' || sign == '\x7F';
  });
}

std::string plainCell(std::string_view text) {
  std::string plain = trimmed(text);
  std::erase(plain, '\r');
  return plain;
}

std::vector<std::string> listIn(std::string_view cell) {
  std::vector<std::string> texts;
  std::string text;
  const auto end = [&] {
    if (!trimmed(text).empty()) texts.push_back(trimmed(text));
    text.clear();
  };
  for (std::size_t i = 0; i < cell.size(); ++i) {
    const bool doubled = cell[i] == ';' && i + 1 < cell.size() && cell[i + 1] == ';';
    if (cell[i] == ';' && !doubled) {
      end();
      continue;
    }
    text += cell[i];
    if (doubled) ++i;
  }
  end();
  return texts;
}

std::string listText(std::span<const std::string> texts) {
  std::string list;
  for (const std::string& text : texts) {
    if (!list.empty()) list += "; ";
    for (const char sign : text) list.append(sign == ';' ? 2 : 1, sign);
  }
  return list;
}

std::vector<Halves> halvesOf(std::string_view text) {
  std::vector<Halves> halves{{std::string(text), {}}};
  for (std::size_t mark = text.rfind(halvesMark); mark != std::string_view::npos && mark > 0;
       mark = text.rfind(halvesMark, mark - 1))
    halves.push_back({trimmed(text.substr(0, mark)), trimmed(text.substr(mark + halvesMark.size()))});
  return halves;
}

std::string halvesText(std::string_view first, std::string_view second) {
  return std::string(first) + (second.empty() ? "" : std::string(halvesMark)) + std::string(second);
}

}  // namespace vantry::server
