#include "inventory/record_refusals.h"

#include <algorithm>
#include <string>

#include "frame/app.h"
#include "messaging/return_codes.h"
#include "words/tags.h"

namespace vantry {

namespace {

struct RefusalRow {
  int rc;
  std::string_view tag;  ///< whose value the server did not take; empty for a code without one
  std::string_view words;
};

constexpr std::string_view kGone = "This record is not there any more.\n\nAnother desk has deleted it.";
constexpr std::string_view kNumberInUse =
    "This number is in use.\n\nAnother record of this type and location has it.  Nothing was stored.";

constexpr RefusalRow kRefusals[] = {
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
  const std::string tag = rc == codes::TagMissing ? app.message.Get(tags::CANTREAD) : std::string();
  const auto* row = std::find_if(std::begin(kRefusals), std::end(kRefusals),
                                 [&](const RefusalRow& each) { return each.rc == rc && each.tag == tag; });
  if (row == std::end(kRefusals)) return ask.succeeded(rc, code);
  warningBox(app.desktop, std::string(row->words));
  return false;
}

bool askForRecord(App& app, const Ask& ask, std::string_view code, Ask::Tags tags) {
  return recordSucceeded(app, ask, ask.codeOf(code, tags), code);
}

}  // namespace vantry
