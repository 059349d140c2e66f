#include "booking/modBooking_media.h"

#include <algorithm>

#include "booking/booking_parts.h"
#include "booking/frmMultBibs.h"
#include "booking/frmMultItems.h"
#include "booking/frmSelectMediaType.h"
#include "booking/modBooking_ask.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_tags.h"
#include "messaging/marc_viewer.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "words/tags.h"

namespace vantry {
namespace {

constexpr std::string_view kNone = "0";

bool isNone(std::string_view id) {
  return intOf(id) == 0;
}

/// An id of the reply; "0" where it is missing.
std::string idOf(const TagMessage& message, std::string_view tag) {
  std::string id = message.Get(tag);
  return isNone(id) ? std::string(kNone) : id;
}

MediaType typeOf(const TagMessage& message) {
  MediaType type{idOf(message, tags::MTID), message.Get(tags::MTY)};
  if (isNone(type.id)) type.name.clear();
  return type;
}

void readDetails(const TagMessage& message, MediaThing& thing) {
  thing.location = message.Get(tags::LO);
  thing.copy = message.Get(tags::CP);
  thing.enumeration = message.Get(tags::EN);
  thing.chronology = message.Get(tags::CH);
  thing.year = message.Get(tags::YR);
}

MediaThing thingOf(const TagMessage& message) {
  MediaThing thing;
  thing.BI = idOf(message, tags::BI);
  thing.MI = idOf(message, tags::MI);
  thing.IM = idOf(message, tags::IM);
  thing.title = message.Get(tags::TITL);
  thing.type = typeOf(message);
  return thing;
}

/// The details of the thing's item; it keeps empty ones where they cannot be read. True: they were.
bool askItemDetails(App& app, MediaThing& thing) {
  if (isNone(thing.IM)) return false;
  if (!askForBooking(app).orWarn("Unable to retrieve item details.", "GID",
                                 {{tags::MI, thing.MI}, {tags::IM, thing.IM}}))
    return false;
  readDetails(app.message, thing);
  return true;
}

/// The call number of the thing's holdings, and their location where the thing has none.
void askHoldingsDetails(App& app, MediaThing& thing) {
  if (isNone(thing.MI)) return;
  if (!askForBooking(app).orWarn("Unable to retreive MFHD details.", "GMD",
                                 {{tags::MI, thing.MI}, {tags::BI, thing.BI}}))
    return;
  while (app.message.NextRecord(tags::MI)) {
    if (app.message.Get(tags::MI) != thing.MI) continue;
    thing.callNumber = app.message.Get(tags::CN);
    if (thing.location.empty()) thing.location = app.message.Get(tags::LO);
    return;
  }
}

bool mayUse(App& app, const BookingRecord& record, const MediaThing& thing) {
  app.message.Add(tags::BOOKID, std::to_string(record.BookingId));
  app.message.Add(tags::MTID, thing.type.id);
  app.message.Add(tags::PGID, std::to_string(record.PatronGroupId));
  WritePlaceTags(app.message, record);
  app.message.Add(tags::MI, thing.MI);
  app.message.Add(tags::IM, thing.IM);
  WriteStoredBookingTimes(app.message, app.booking);
  if (!ValidateItemUsage(app, askForBooking(app).codeOf("VITMUSG"))) return false;
  KeepWarningShown(app, thing.IM + "I");
  return true;
}

/// What happens to a thing without a media type, by where it comes from.
enum class Untyped { Passes, IsRefused };

bool hasTypeOrPasses(App& app, MediaThing& thing, Untyped untyped) {
  if (isNone(thing.type.id)) thing.type = PickMediaType(app);
  if (!isNone(thing.type.id) || untyped == Untyped::Passes) return true;
  warningBox(app.desktop,
             "No media type assigned to item \"" + thing.title + "\".  \r\nItem not eligible for booking.");
  return false;
}

/// From the media type on: asks, checks and adds the row. True when it was added.
bool addThing(BookingParts& parts, MediaThing thing, Untyped untyped) {
  App& app = parts.app;
  if (!hasTypeOrPasses(app, thing, untyped)) return false;
  // A thing without a type passes unchecked; this is deliberate.
  if (!isNone(thing.type.id) && !mayUse(app, parts.record, thing)) return false;
  askHoldingsDetails(app, thing);
  if (IsMediaInBooking(thing.BI, thing.MI, thing.IM, thing.type.id, parts)) return false;
  if (ConfirmItemLimit(app, parts.record)) return false;
  AddMediaRow(parts, thing);
  parts.record.ItemCount = parts.media.faMedia.Rows - parts.media.faMedia.FixedRows;
  AddMediaEquipmentTypes(parts, thing.type.id);
  RefreshMediaEquipment(parts);
  parts.media.txtItemBarcode.Text = "";
  parts.media.enableCommands();
  return true;
}

/// The one match, or that which the operator chooses; nullptr when they cancel.
const MediaThing* pickTitle(App& app, const ItemMatches& matches) {
  if (matches.empty()) return nullptr;
  if (matches.size() == 1) return &matches.front();
  frmMultBibs window(app, matches);
  window.ShowModal();
  return window.Tag == "1" ? &matches[static_cast<std::size_t>(window.choice())] : nullptr;
}

void addMatch(BookingParts& parts, const ItemMatches& matches) {
  const MediaThing* match = pickTitle(parts.app, matches);
  if (!match) return;
  MediaThing thing = *match;
  const bool read = askItemDetails(parts.app, thing);
  if (read && isNone(thing.type.id)) thing.type = typeOf(parts.app.message);
  addThing(parts, std::move(thing), matches.size() > 1 ? Untyped::IsRefused : Untyped::Passes);
}

/// The titles of holdings, each with the item that is known of them. False when there are none, which has
/// been said.
bool askTitles(App& app, const MediaThing& known, ItemMatches& matches) {
  if (!askForBooking(app).orWarn("No bibliographic records found for the item's MFHD.", "GBBMID",
                                 {{tags::MI, known.MI}}))
    return false;
  while (app.message.NextRecord(tags::BI)) {
    MediaThing match = known;
    match.BI = app.message.Get(tags::BI);
    match.title = app.message.Get(tags::TITL);
    matches.push_back(std::move(match));
  }
  return true;
}

/// The holdings and items of the titles found; false when they cannot be read, which has been said.
bool askTree(App& app, const std::vector<BibSelection>& found, ItemMatches& matches) {
  for (const BibSelection& selection : found) {
    app.message.Add(tags::BI, selection.BI);
    app.message.Add(tags::MI, selection.MI);
  }
  if (!askForBooking(app).orWarn("An error occurred while retrieving the Bib/holdings/items details!",
                                 "GBHI"))
    return false;
  while (app.message.NextRecord(tags::BI)) {
    MediaThing match = thingOf(app.message);
    readDetails(app.message, match);
    match.callNumber = app.message.Get(tags::CN);
    matches.push_back(std::move(match));
  }
  return true;
}

bool addChosen(BookingParts& parts, const ItemMatches& matches) {
  frmMultItems window(parts.app, matches);
  window.ShowModal();
  if (window.Tag != "1") return false;
  bool added = false;
  for (const MediaThing& thing : window.chosen) added = addThing(parts, thing, Untyped::IsRefused) || added;
  return added;
}

/// One holdings record without its items: a wish for any of them.
bool addHoldings(BookingParts& parts, const BibSelection& found) {
  MediaThing wish;
  wish.MI = found.MI;
  wish.IM = kNone;
  ItemMatches titles;
  if (!askTitles(parts.app, wish, titles)) return false;
  for (MediaThing& title : titles) {
    if (title.BI == found.BI) return addThing(parts, std::move(title), Untyped::Passes);
  }
  return false;
}

std::string enteredText(BookingParts& parts) {
  return std::string(trim(parts.media.txtItemBarcode.Text.get()));
}

}  // namespace

void AddMediaByBarcode(BookingParts& parts) {
  App& app = parts.app;
  const std::string text = enteredText(parts);
  if (text.empty()) return;
  StoreTimes(parts);
  const Ask ask = askForBooking(app);
  const int rc = ask.codeOf("GBBIB", {{tags::IB, text}});
  if (rc == codes::NotFound) return informationBox(app.desktop, "No items match entered barcode.");
  if (!ask.succeeded(rc, "GBBIB")) return;
  ItemMatches matches;
  while (app.message.NextRecord(tags::BI)) matches.push_back(thingOf(app.message));
  addMatch(parts, matches);
}

void AddMediaByItemId(BookingParts& parts) {
  App& app = parts.app;
  const std::string text = enteredText(parts);
  if (text.empty()) return;
  StoreTimes(parts);
  if (!askForBooking(app).orWarn("No items in the database correspond to entered Item ID.", "GMIID",
                                 {{tags::IM, text}}))
    return;
  MediaThing known = thingOf(app.message);
  known.IM = std::to_string(intOf(text));
  ItemMatches matches;
  if (askTitles(app, known, matches)) addMatch(parts, matches);
}

void AddMediaFromSearch(BookingParts& parts, bool& dirty) {
  App& app = parts.app;
  StoreTimes(parts);
  const std::vector<BibSelection> found = app.bibSearch.Search();
  if (found.empty()) return;
  bool added = false;
  ItemMatches matches;
  if (found.size() == 1 && !isNone(found.front().MI))
    added = addHoldings(parts, found.front());
  else if (askTree(app, found, matches))
    added = addChosen(parts, matches);
  if (added) dirty = true;
}

void AddMediaRow(BookingParts& parts, const MediaThing& thing) {
  const bool typed = !isNone(thing.type.id);
  parts.media.list().addRow({thing.BI, thing.MI, thing.IM, typed ? thing.type.id : std::string(kNone),
                             thing.title, typed ? thing.type.name : std::string(kNoMediaType), thing.location,
                             thing.copy, thing.callNumber, thing.enumeration, thing.chronology, thing.year});
}

void AddStoredMediaRow(BookingParts& parts, MediaThing thing) {
  static_cast<void>(askItemDetails(parts.app, thing));  // a row without a media type stays without one
  askHoldingsDetails(parts.app, thing);
  AddMediaRow(parts, thing);
}

bool IsMediaInBooking(std::string_view bi, std::string_view mi, std::string_view im, std::string_view mtid,
                      BookingParts& parts) {
  const std::pair<MediaColumn, std::string_view> keys[] = {
      {kMediaBib, bi}, {kMediaHoldings, mi}, {kMediaItem, im}, {kMediaType, mtid}};
  const ReplyList& list = parts.media.list();
  for (int row = 1; row < list.grid().Rows; ++row) {
    if (std::all_of(std::begin(keys), std::end(keys),
                    [&](const auto& key) { return list.text(row, key.first) == key.second; }))
      return true;
  }
  return false;
}

MediaType PickMediaType(App& app) {
  if (!askForBooking(app).orWarn("Could not retrieve available media item types.", "GMTYP")) return {};
  std::vector<MediaType> types;
  while (app.message.NextRecord(tags::MTID)) types.push_back(typeOf(app.message));
  if (types.empty()) {
    warningBox(app.desktop, "No media types defined.  Cannot book!");
    return {};
  }
  if (types.size() == 1) return types.front();
  frmSelectMediaType window(app, types);
  window.ShowModal();
  return window.choice < 0 ? MediaType() : types[static_cast<std::size_t>(window.choice)];
}

void RefreshMediaEquipment(BookingParts& parts) {
  const ReplyList& list = parts.media.list();
  std::vector<std::string> kept;
  for (int row = 1; row < list.grid().Rows; ++row) kept.push_back(mediaTypeKey(list.text(row, kMediaType)));
  const TreeNode* root = parts.equipment.tvwEquipment.find(roots::MediaTypes);
  std::vector<std::string> gone;
  for (const TreeNode* node : root ? root->children : std::vector<TreeNode*>()) {
    if (std::find(kept.begin(), kept.end(), node->key) == kept.end()) gone.push_back(node->key);
  }
  for (const std::string& key : gone) parts.equipment.tvwEquipment.Remove(key);
  parts.record.EquipmentCount = countEquipment(parts);
}

void ShowMarcRecord(BookingParts& parts, MarcKind kind) {
  const Grid& grid = parts.media.faMedia;
  if (grid.Row < grid.FixedRows) return;
  const MediaColumn column = kind == MarcKind::Bib ? kMediaBib : kMediaHoldings;
  const std::string id = parts.media.list().text(grid.Row, column);
  if (isNone(id)) return;
  App& app = parts.app;
  showMarcRecord(app.windows, app.message, app.global, kind, id);
}

}  // namespace vantry
