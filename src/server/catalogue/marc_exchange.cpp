// MARC 21 as it is exchanged: a leader, a directory of fields, the fields.

#include <algorithm>
#include <fstream>
#include <optional>
#include <span>

#include "server/catalogue/marc_characters.h"
#include "server/catalogue/marc_source.h"
#include "words/utf8.h"

namespace vantry::server {

namespace {

constexpr std::size_t lengthFigures = 5;
constexpr std::size_t basePlace = 12;
constexpr std::size_t codingPlace = 9;
constexpr std::size_t entryLength = 12;

/// A number of figures only, at this place of the text.
std::optional<std::size_t> figuresAt(std::string_view text, std::size_t place, std::size_t count) {
  if (place + count > text.size()) return std::nullopt;
  std::size_t number = 0;
  for (const char c : text.substr(place, count)) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + static_cast<std::size_t>(c - '0');
  }
  return number;
}

/// A field as the directory tells of it; without a place where it tells none.
struct Entry {
  std::string tag;
  std::optional<std::size_t> length;
  std::optional<std::size_t> start;
};

std::vector<Entry> entriesIn(std::string_view directory) {
  std::vector<Entry> entries;
  for (; directory.size() >= entryLength; directory.remove_prefix(entryLength))
    entries.push_back(
        {std::string(directory.substr(0, 3)), figuresAt(directory, 3, 4), figuresAt(directory, 7, 5)});
  return entries;
}

/// Where the fields begin: where the leader says, if the directory before it is sound or ends with its mark;
/// else behind the first mark that can be its end.
std::size_t baseOf(std::string_view exchanged) {
  const auto isPossible = [&](std::size_t base) {
    return base > marcLeaderLength && base <= exchanged.size() &&
           (base - 1 - marcLeaderLength) % entryLength == 0;
  };
  const auto isSound = [&](std::size_t base) {
    const auto entries = entriesIn(exchanged.substr(marcLeaderLength, base - 1 - marcLeaderLength));
    return std::ranges::all_of(entries, [](const Entry& each) { return each.length && each.start; });
  };
  const std::size_t told = figuresAt(exchanged, basePlace, lengthFigures).value_or(0);
  if (isPossible(told) && (exchanged[told - 1] == marcFieldEnd || isSound(told))) return told;
  const std::size_t mark = exchanged.find(marcFieldEnd, marcLeaderLength);
  return mark != std::string_view::npos && isPossible(mark + 1) ? mark + 1 : 0;
}

/// The field as the directory has it, without its end; nothing when no field is exactly there.
std::optional<std::string_view> fieldAt(std::string_view fields, const Entry& entry) {
  if (!entry.start || !entry.length || *entry.length == 0 || *entry.start >= fields.size())
    return std::nullopt;
  const std::string_view field = fields.substr(*entry.start, *entry.length);
  if (field.size() != *entry.length || field.find(marcFieldEnd) != field.size() - 1) return std::nullopt;
  return field.substr(0, field.size() - 1);
}

std::vector<std::string_view> partsOf(std::string_view fields) {
  std::vector<std::string_view> parts;
  for (std::size_t end = fields.find(marcFieldEnd); end != std::string_view::npos;
       end = fields.find(marcFieldEnd)) {
    parts.push_back(fields.substr(0, end));
    fields.remove_prefix(end + 1);
  }
  return parts;
}

/// Programs that count characters in place of bytes give wrong places, and the fields all the same in the
/// directory's order.
bool standInOrder(std::span<const Entry> entries) {
  std::size_t last = 0;
  for (const Entry& entry : entries) {
    if (entry.start && *entry.start < last) return false;
    last = entry.start.value_or(last);
  }
  return true;
}

/// The text of each entry's field; nothing for one that is not found.
std::vector<std::optional<std::string_view>> fieldsOf(std::string_view fields,
                                                      std::span<const Entry> entries) {
  std::vector<std::optional<std::string_view>> found;
  for (const Entry& entry : entries) found.push_back(fieldAt(fields, entry));
  if (std::ranges::all_of(found, [](const auto& each) { return each.has_value(); })) return found;
  const std::vector<std::string_view> parts = partsOf(fields);
  if (parts.size() != entries.size() || !standInOrder(entries)) return found;
  return {parts.begin(), parts.end()};
}

class ExchangeSource : public MarcReader::Source {
 public:
  ExchangeSource(const std::string& path, const std::string& encoding)
      : file_(path, std::ios::binary), fromMarc8_("MARC-8") {
    if (!encoding.empty()) fromGiven_.emplace(encoding);
  }

  bool next(MarcReading& reading) override {
    std::string exchanged;
    const bool whole = takeRecord(exchanged);
    if (exchanged.empty()) return false;
    reading.fault = !whole ? "it is cut off" : read(reading, exchanged);
    return true;
  }

 private:
  /// Records end in a mark, so that one whose length is wrong does not spoil those after it. False without
  /// it.
  bool takeRecord(std::string& exchanged) {
    std::getline(file_, exchanged, marcRecordEnd);
    const bool whole = !file_.eof();
    constexpr std::string_view filler("\0 \r\n\t\x1a\xef\xbb\xbf", 9);
    const std::size_t start = exchanged.find_first_not_of(filler);
    exchanged.erase(0, std::min(start, exchanged.size()));
    if (!whole) return false;
    exchanged += marcRecordEnd;
    joinParts(exchanged);
    return true;
  }

  /// A stray mark cuts a record in two, which belong together when they have the length that the leader says.
  void joinParts(std::string& exchanged) {
    const std::size_t told = figuresAt(exchanged, 0, lengthFigures).value_or(0);
    if (told <= exchanged.size()) return;
    const std::streampos place = file_.tellg();
    std::string rest(told - exchanged.size(), '\0');
    const bool fits = static_cast<bool>(file_.read(rest.data(), static_cast<std::streamsize>(rest.size()))) &&
                      rest.back() == marcRecordEnd;
    if (fits) {
      exchanged += rest;
    } else {
      file_.clear();
      file_.seekg(place);
    }
  }

  std::string read(MarcReading& reading, std::string_view exchanged) {
    if (exchanged.size() <= marcLeaderLength) return "it is shorter than a leader";
    reading.record.leader = exchanged.substr(0, marcLeaderLength);
    const std::size_t base = baseOf(exchanged);
    const bool rightLength = figuresAt(exchanged, 0, lengthFigures) == exchanged.size();
    if (base == 0)
      return rightLength ? "it has no directory of its fields" : "its leader tells another length";
    std::ranges::replace_if(
        reading.record.leader, [](char c) { return c < ' ' || c == 0x7f; }, ' ');
    const std::vector<Entry> entries =
        entriesIn(exchanged.substr(marcLeaderLength, base - 1 - marcLeaderLength));
    takeFields(reading, exchanged.substr(base), entries);
    return reading.record.fields.empty() ? "it has no fields that can be read" : std::string();
  }

  void takeFields(MarcReading& reading, std::string_view fields, std::span<const Entry> entries) {
    const bool saysUtf8 = reading.record.leader[codingPlace] == 'a';
    const bool isForeign = !isAscii(fields);
    if (!fromGiven_ && !saysUtf8 && isForeign && isUtf8(fields)) reading.coding = MarcCoding::IsUtf8;
    const bool asUtf8 = !fromGiven_ && (saysUtf8 || reading.coding == MarcCoding::IsUtf8);
    const MarcCharacters* characters = asUtf8 ? nullptr : fromGiven_ ? &*fromGiven_ : &fromMarc8_;
    const auto texts = fieldsOf(fields, entries);
    int readForeign = 0;
    int lostForeign = 0;
    for (std::size_t at = 0; at < entries.size(); ++at) {
      if (!texts[at]) {
        loseField(reading, entries[at].tag, "is not where the directory says");
        continue;
      }
      const bool taken = take(reading, entries[at].tag, *texts[at], characters);
      if (!isAscii(*texts[at])) ++(taken ? readForeign : lostForeign);
    }
    if (asUtf8 && readForeign == 0 && lostForeign > 0) reading.coding = MarcCoding::NotUtf8;
  }

  static std::optional<std::string> textOf(std::string_view text, const MarcCharacters* characters) {
    if (isAscii(text) && text.find('\x1b') == std::string_view::npos) return std::string(text);
    if (characters != nullptr) return characters->toUtf8(text);
    return isUtf8(text) ? std::optional(std::string(text)) : std::nullopt;
  }

  /// False when its characters are none.
  static bool take(MarcReading& reading, const std::string& tag, std::string_view text,
                   const MarcCharacters* characters) {
    MarcField field{tag, {}, {}};
    const bool isControl = tag.starts_with("00");
    const std::size_t mark = isControl ? std::string_view::npos : text.find(marcMark);
    if (!isControl) field.indicators = indicatorsOf(text.substr(0, mark));
    std::string_view rest = isControl                        ? text
                            : mark == std::string_view::npos ? std::string_view()
                                                             : text.substr(mark);
    while (!rest.empty()) {
      // Each subfield begins with plain letters, so that characters of other alphabets end with it.
      const std::string_view part = rest.substr(0, rest.find(marcMark, 1));
      const std::optional<std::string> converted = textOf(part, characters);
      if (!converted) {
        loseField(reading, tag, "holds characters that are none");
        return false;
      }
      field.text += *converted;
      rest.remove_prefix(part.size());
    }
    if (isControl) std::erase(field.text, marcMark);
    takeField(reading, std::move(field));
    return true;
  }

  static std::string indicatorsOf(std::string_view text) {
    return text.size() == 2 && isAscii(text) && !holdsControls(text) ? std::string(text) : "  ";
  }

  std::ifstream file_;
  MarcCharacters fromMarc8_;
  std::optional<MarcCharacters> fromGiven_;
};

}  // namespace

std::unique_ptr<MarcReader::Source> openExchange(const std::string& path, const std::string& encoding) {
  return std::make_unique<ExchangeSource>(path, encoding);
}

}  // namespace vantry::server
