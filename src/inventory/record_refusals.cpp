#include "inventory/record_refusals.h"

#include <string>

#include "frame/app.h"
#include "messaging/return_codes.h"
#include "words/json_text.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr std::string_view kGone = "This record is not there any more.\n\nAnother desk has deleted it.";
constexpr std::string_view kNumberInUse =
    "This number is in use.\n\nAnother record of this type and location has it.  Nothing was stored.";

constexpr std::string_view kTypeGone = "This type is not there any more.";
constexpr std::string_view kInGroup =
    "This piece belongs to a group, and is kept where the group is.\n\n"
    "Move the group, or take the piece out of it first.";

constexpr RefusalWords kRefusals[] = {
    {codes::NotFound, {}, kGone},
    {codes::TagMissing, tags::EID, kGone},
    {codes::TagMissing, tags::GRPID, kGone},
    {codes::TagMissing, tags::RID, "The room is not there any more, or is not at this location."},
    {codes::TagMissing, tags::ENO, kNumberInUse},
    {codes::TagMissing, tags::RNO, kNumberInUse},
    {codes::TagMissing, tags::BNO, "This barcode is none of the piece's.\n\nNothing was stored.",
     "NEWEMAINTD"},
    {codes::TagMissing, tags::BNO,
     "This barcode is in use.\n\nAnother piece, group or media item has it.  Nothing was stored."},
    {codes::TagMissing, tags::LOC, "The location is not there any more."},
    {codes::TagMissing, tags::ETI, kTypeGone},
    {codes::TagMissing, tags::RTI, kTypeGone},
    {codes::TagMissing, tags::RDI, kTypeGone},
    {codes::TagMissing, tags::MTI, kTypeGone},
    {codes::TagMissing, tags::SID, kTypeGone},
    {codes::TagMissing, tags::ENID, kTypeGone},
    {codes::TagMissing, tags::RNID, kTypeGone},
    {codes::TagMissing, tags::BSI, kTypeGone},
    {codes::GroupStatus, {}, kInGroup, "UPDEQIPD"},
    {codes::GroupStatus, {}, kInGroup, "ADDREQP"},
};

/// Leaves room for the other tags of a message, the longest of which are short.
constexpr std::size_t kMostBytes = 1'000'000;

}  // namespace

bool recordSucceeded(const Ask& ask, int rc, std::string_view code) {
  return ask.succeeded(rc, code, kRefusals);
}

bool askForRecord(const Ask& ask, std::string_view code, Ask::Tags tags) {
  return recordSucceeded(ask, ask.codeOf(code, tags), code);
}

bool joinSucceeded(App& app, const Ask& ask, int rc) {
  if (rc != codes::BookingsFollow) return recordSucceeded(ask, rc, "NEWGITM");
  informationBox(app.desktop, "All relevant bookings have been updated with the new group information.");
  return true;
}

bool fitsMessage(Desktop& desktop, std::string_view text) {
  std::string sent;
  appendJsonText(sent, text);
  if (sent.size() <= kMostBytes) return true;
  warningBox(desktop,
             "This text is too long to be stored: it may have about a million characters.\n\n"
             "Please shorten it.");
  return false;
}

}  // namespace vantry
