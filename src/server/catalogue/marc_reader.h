#pragma once

#include <memory>
#include <string>
#include <vector>

#include "server/catalogue/marc_record.h"

namespace vantry::server {

/// How a record's characters fit what the record says of them.
enum class MarcCoding {
  AsSaid,
  NotUtf8,  ///< it says UTF-8, and no field with other than plain letters is
  IsUtf8,   ///< it says MARC-8, and all of it is UTF-8
};

/// What was read of one record of a file.
struct MarcReading {
  MarcRecord record;
  std::string fault;                ///< why nothing can be taken of it; empty for a record
  std::vector<std::string> losses;  ///< what is wrong with each field that was left out
  MarcCoding coding = MarcCoding::AsSaid;
};

/// Reads the records of a file one after another: MARC 21 as it is exchanged, in UTF-8 or MARC-8, or MARCXML.
/// A field that cannot be read is left out of its record.
class MarcReader {
 public:
  /// `encoding` is the code page of all records, whatever they say; empty: what they say. Throws
  /// std::runtime_error with a sentence for people when the file cannot be read, or holds neither, and for an
  /// unknown code page.
  explicit MarcReader(const std::string& path, const std::string& encoding = {});
  ~MarcReader();
  MarcReader(const MarcReader&) = delete;
  MarcReader& operator=(const MarcReader&) = delete;

  /// The next record. False after the last one.
  bool next(MarcReading& reading);

  class Source;

 private:
  std::unique_ptr<Source> source_;
};

}  // namespace vantry::server
