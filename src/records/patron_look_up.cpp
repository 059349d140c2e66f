#include "records/patron_look_up.h"

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/text.h"
#include "records/frmMultPatron.h"
#include "records/search_failure.h"
#include "records/search_window.h"
#include "words/tags.h"

namespace vantry {

namespace {

/// Where and for what a barcode is sought; the server's numbers.
constexpr std::string_view kByBarcode = "17";
constexpr std::string_view kPatrons = "6";
constexpr std::string_view kPatronFile = "5";

Patron patronOfRecord(const TagMessage& message) {
  Patron patron;
  patron.id = intOf(message.Get(tags::PID));
  patron.name = PatronName(message.Get(tags::PLN), message.Get(tags::PFN), message.Get(tags::PMN));
  patron.groupId = intOf(message.Get(tags::PGID));
  patron.groupName = message.Get(tags::PGNM);
  return patron;
}

}  // namespace

std::string PatronName(std::string_view last, std::string_view first, std::string_view middle) {
  std::string name(last);
  if (!first.empty()) name += (name.empty() ? "" : ", ") + std::string(first);
  if (!middle.empty()) name += (name.empty() ? "" : " ") + std::string(middle);
  return name;
}

Patron FindPatronByBarcode(App& app, const Ask& ask, std::string_view barcode, PatronUse use) {
  const int rc = ask.codeOf("FIND", {{tags::SRCHTAG, kByBarcode},
                                     {tags::SRCHVAL, trim(barcode)},
                                     {tags::SRCHFOR, kPatrons},
                                     {tags::SRCHLOC, kPatronFile},
                                     {tags::SRCHOP, ""}});
  if (rc != 0) {
    informationBox(app.desktop, searchFailure(app.message, rc));
    return {};
  }
  const int found = app.message.Count(tags::PID);
  if (found == 0) informationBox(app.desktop, "No patrons have the entered barcode!");
  if (found > 1) return PickOfPatrons(app, use);
  return found == 1 && app.message.NextRecord(tags::PID) ? patronOfRecord(app.message) : Patron{};
}

Patron FindPatronBySearch(App& app, std::string_view tag) {
  const std::string answer = pickBySearch(app, tag);
  Patron patron;
  int position = 1;
  patron.name = ServerTools::NextToken(position, answer, "|");
  if (position > 0) patron.id = intOf(ServerTools::NextToken(position, answer, "|"));
  return patron;
}

}  // namespace vantry
