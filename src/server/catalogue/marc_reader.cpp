#include "server/catalogue/marc_reader.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "server/catalogue/marc_source.h"

namespace vantry::server {

namespace {

bool isTag(std::string_view tag) {
  return tag.size() == 3 && std::ranges::all_of(tag, [](char c) {
           return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
         });
}

/// The first character that tells what the file holds; 0 for a file without one.
char firstCharacter(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("The file " + path + " cannot be read.");
  constexpr std::string_view skipped(" \r\n\t\0\xef\xbb\xbf", 8);
  char each = 0;
  while (file.get(each)) {
    if (skipped.find(each) == std::string_view::npos) return each;
  }
  return 0;
}

std::unique_ptr<MarcReader::Source> openSource(const std::string& path, const std::string& encoding) {
  const char first = firstCharacter(path);
  if (first == '<') return openMarcXml(path, encoding);
  if (first >= '0' && first <= '9') return openExchange(path, encoding);
  throw std::runtime_error("The file " + path + " holds neither MARC 21 nor MARCXML.");
}

}  // namespace

void loseField(MarcReading& reading, std::string_view tag, std::string_view why) {
  const std::string name = isTag(tag) ? "its field " + std::string(tag) : "a field whose tag is none";
  reading.losses.push_back(name + " is left out, since it " + std::string(why));
}

bool holdsControls(std::string_view text) {
  return std::ranges::any_of(text, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != marcMark && c != '\t' && c != '\r' && c != '\n') || byte == 0x7f;
  });
}

void takeField(MarcReading& reading, MarcField field) {
  if (!isTag(field.tag)) return loseField(reading, field.tag, "cannot be named");
  if (holdsControls(field.text) || holdsControls(field.indicators))
    return loseField(reading, field.tag, "holds control characters");
  const bool isControl = field.tag.starts_with("00");
  if (!isControl && field.text.find(marcMark) == std::string::npos)
    return loseField(reading, field.tag, "has no subfields");
  reading.record.fields.push_back(std::move(field));
}

MarcReader::MarcReader(const std::string& path, const std::string& encoding)
    : source_(openSource(path, encoding)) {}

MarcReader::~MarcReader() = default;

bool MarcReader::next(MarcReading& reading) {
  reading = {};
  return source_->next(reading);
}

}  // namespace vantry::server
