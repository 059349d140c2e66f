#pragma once

#include <memory>
#include <string>

#include "server/catalogue/marc_record.h"

namespace vantry::server {

/// Reads the records of a file one after another: MARC 21 as it is exchanged, in UTF-8 or MARC-8, or MARCXML.
class MarcReader {
 public:
  /// Throws std::runtime_error with a sentence for people when the file cannot be read or holds neither.
  explicit MarcReader(const std::string& path);
  ~MarcReader();
  MarcReader(const MarcReader&) = delete;
  MarcReader& operator=(const MarcReader&) = delete;

  /// The next record. `fault` is empty for a sound one, else one sentence of what is wrong with it. False
  /// after the last one.
  bool next(MarcRecord& record, std::string& fault);

  class Source;

 private:
  std::unique_ptr<Source> source_;
};

}  // namespace vantry::server
