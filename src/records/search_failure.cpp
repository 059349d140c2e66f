#include "records/search_failure.h"

#include "messaging/ask.h"
#include "messaging/return_codes.h"
#include "messaging/tagmessage.h"
#include "words/tags.h"

namespace vantry {

static constexpr RefusalWords kRefusals[] = {
    {codes::NoRight, {}, "You are not authorized to search for this."},
    {codes::SearchTooLong,
     {},
     "The search took too long and was ended.\n\nPlease enter more of what you know."},
    {codes::TagMissing, tags::SRCHVAL,
     "There is nothing to search for in what was entered.\n\nPlease enter at least one letter or figure."},
};

std::string searchFailure(const TagMessage& message, int rc) {
  if (rc == codes::NotTaken) return message.Refusal();
  const std::string_view words = wordsOf(kRefusals, rc, "FIND", message);
  return words.empty() ? "Your search failed! (rc = " + std::to_string(rc) + ")" : std::string(words);
}

}  // namespace vantry
