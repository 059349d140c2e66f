#include "transport/request_body.h"

#include "words/json_text.h"

namespace vantry {

std::string requestBody(const std::vector<TagValue>& tags) {
  std::string body = "{\"tags\":[";
  for (const auto& [tag, value] : tags) {
    if (body.back() == ']') body += ',';
    body += '[';
    appendJsonText(body, tag);
    body += ',';
    appendJsonText(body, value);
    body += ']';
  }
  body += "]}";
  return body;
}

}  // namespace vantry
