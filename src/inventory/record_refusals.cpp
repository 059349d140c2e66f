#include "inventory/record_refusals.h"

#include <string>

#include "frame/app.h"
#include "messaging/return_codes.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kGone = "This record is not there any more.\n\nAnother desk has deleted it.";
constexpr std::string_view kNumberInUse =
    "This number is in use.\n\nAnother record of this type and location has it.  Nothing was stored.";

constexpr RefusalWords kRefusals[] = {
    {codes::NotFound, {}, kGone},
    {codes::TagMissing, tags::EID, kGone},
    {codes::TagMissing, tags::GRPID, kGone},
    {codes::TagMissing, tags::RID, "The room is not there any more, or is not at this location."},
    {codes::TagMissing, tags::ENO, kNumberInUse},
    {codes::TagMissing, tags::RNO, kNumberInUse},
    {codes::TagMissing, tags::BNO,
     "This barcode is in use.\n\nAnother piece, group or media item has it.  Nothing was stored."},
    {codes::TagMissing, tags::ETI, "This type is not there any more."},
    {codes::TagMissing, tags::RTI, "This type is not there any more."},
};

}  // namespace

bool recordSucceeded(App& app, const Ask& ask, int rc, std::string_view code) {
  const std::string_view words = wordsOf(kRefusals, rc, app.message);
  if (words.empty()) return ask.succeeded(rc, code);
  warningBox(app.desktop, std::string(words));
  return false;
}

bool askForRecord(App& app, const Ask& ask, std::string_view code, Ask::Tags tags) {
  return recordSucceeded(app, ask, ask.codeOf(code, tags), code);
}

}  // namespace vantry
