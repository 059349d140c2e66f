#pragma once

#include <memory>
#include <string>

#include "server/catalogue/marc_reader.h"

namespace vantry::server {

// The two forms of files behind MarcReader, which has opened the file before and knows its form.

class MarcReader::Source {
 public:
  Source() = default;
  virtual ~Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual bool next(MarcReading& reading) = 0;
};

[[nodiscard]] std::unique_ptr<MarcReader::Source> openExchange(const std::string& path,
                                                               const std::string& encoding);
[[nodiscard]] std::unique_ptr<MarcReader::Source> openMarcXml(const std::string& path,
                                                              const std::string& encoding);

inline constexpr char marcRecordEnd = '\x1d';
inline constexpr char marcFieldEnd = '\x1e';
inline constexpr std::size_t marcLeaderLength = 24;

/// Adds a field to the record, or tells why it is none. A field of the tags 001 to 009 has no subfields.
void takeField(MarcReading& reading, MarcField field);

/// Tells that a field is left out. Of a tag that is none, its place is told by the number.
void loseField(MarcReading& reading, std::string_view tag, std::string_view why);

/// Control characters have no place in a text, and some databases do not take them.
[[nodiscard]] bool holdsControls(std::string_view text);

}  // namespace vantry::server
