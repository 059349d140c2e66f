#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "messaging/transport.h"

namespace vantry {

// Readers of the server's bodies. Each takes the text by reference because its buffer may grow behind its
// end; the text itself is not changed. Each gives false, or empty text, for whatever is not sound JSON of the
// expected shape.

/// Keeps its working memory from one reply to the next: allocating it again takes longer than the reading.
class ReplyReader {
 public:
  ReplyReader();
  ~ReplyReader();
  /// Fills an empty reply from {"rc":0,"head":{...},"records":[{...}]}. After false its content means
  /// nothing.
  [[nodiscard]] bool read(std::string& body, Reply& reply);

 private:
  struct Parser;
  std::unique_ptr<Parser> parser_;
};

/// The text of one key of the outermost object.
[[nodiscard]] std::string readText(std::string& body, std::string_view key);

/// The whole number of one key of the outermost object; -1 where there is none.
[[nodiscard]] int readNumber(std::string& body, std::string_view key);

}  // namespace vantry
