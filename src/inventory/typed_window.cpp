#include "inventory/typed_window.h"

#include <algorithm>
#include <utility>

#include "inventory/frmNumbers.h"
#include "inventory/frmStatus.h"
#include "inventory/record_refusals.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr const char* kNone = "(none)";
constexpr const char* kNoType = "0";
constexpr int kLongestNumber = 30;

}  // namespace

TypedWindow::TypedWindow(App& app, const TypedWindowKind& kind, const Controls& controls)
    : InventoryWindow(app, kind.window),
      bookings(app, ask_, fraBookings, kind.bookings, kind.bookingsGrid, [this] { return recordId(); }),
      notes(app, ask_, fraNotes, kind.notes, [this] { return recordId(); }),
      kind_(kind),
      controls_(controls) {}

void TypedWindow::placePagesAround(const TabPages::Page& third) {
  placePages({{"Details", fraDetails},
              {"Bookings", fraBookings, [this] { firstVisit(bookings); }},
              third,
              {"Notes", fraNotes, [this] { firstVisit(notes); }},
              {"Properties", fraProperties}});
}

void TypedWindow::addPropertyFields(std::vector<RecordField>& rows) {
  propertyFields.addFields(rows);
  rows.push_back({txtHIST_BKNGS, tags::EHB, FieldUse::Shown});
}

void TypedWindow::clearProperties() {
  propertyFields.clear();
  txtHIST_BKNGS.Text = "";
}

void TypedWindow::connectControls() {
  controls_.number.MaxLength = kLongestNumber;
  controls_.numbers.AccessibleName = "Assigned numbers";
  controls_.status.Locked = true;
  controls_.type.Click = [this] { touch(); };
  controls_.number.Change = [this] { touch(); };
  on(controls_.numbers.Click, this, &TypedWindow::showNumbers);
  on(controls_.status.DblClick, this, &TypedWindow::txtSTS_TYPE_DblClick);
  answerF4(
      controls_.number, [this] { return !controls_.number.Locked; }, [this] { showNumbers(); });
  answerF4(
      controls_.status, [this] { return mayOpenDialogs(); }, [this] { txtSTS_TYPE_DblClick(); });
}

void TypedWindow::answerF4(TextBox& box, const std::function<bool()>& isAllowed, const Event& handler) {
  box.KeyDown = [isAllowed, handler](std::string_view key) {
    if (key != "F4") return false;
    if (isAllowed()) raise(handler);
    return true;
  };
}

// Opening

void TypedWindow::prepare() {
  InventoryWindow::prepare();
  fillTypes();
}

void TypedWindow::fillTypes() {
  controls_.type.Clear();
  controls_.type.AddItem(kNone, kNoType);
  for (const Category& category : app_.context.categories.*kind_.categories)
    controls_.type.AddItem(category.name, category.id);
}

const std::string& TypedWindow::typeId() const {
  return controls_.type.ItemData(controls_.type.ListIndex);
}

void TypedWindow::showNew() {
  controls_.status.Text = std::string(kind_.newStatus);
  selectNewType();
}

/// The type that was used last, else the first one.
void TypedWindow::selectNewType() {
  const std::string& last = app_.slots.typeNames[slot()];
  const int found = last.empty() ? -1 : controls_.type.indexOf(last);
  controls_.type.ListIndex = found >= 0 ? found : std::min(1, controls_.type.ListCount() - 1);
}

void TypedWindow::readRecord() {
  oldType_ = app_.slots.typeNames[slot()];
  controls_.type.ListIndex = std::max(0, controls_.type.indexOf(oldType_));
  storedTypeId_ = typeId();
  // A refused request was reported, and leaves the fields empty.
  if (!askForStored()) return;
  showNumber();
  showRecord();
}

/// A copy begins with the name of its type, which the operator completes.
void TypedWindow::showNumber() {
  modelNumber = messageValue(kind_.numberTag);
  if (!isCopy()) {
    controls_.number.Text = modelNumber;
    return;
  }
  const std::string name = upper(controls_.type.Text());
  controls_.number.Text = name.substr(0, placeOfCharacter(name, kLongestNumber));
  oldType_.clear();  // the copy is one more of its type
}

// Saving

/// Status, bookings and notes of its model are not its own.
void TypedWindow::copyEnds() {
  controls_.status.Text = std::string(kind_.newStatus);
  bookings.unlock();
  notes.unlock();
}

void TypedWindow::addRecord(bool) {
  TagMessage& message = app_.message;
  message.Add(kind_.typeIdTag, typeId());
  message.Add(kind_.typeNameTag, controls_.type.Text());
  message.Add(kind_.numberTag, controls_.number.Text.get());
  addOwnTags();
  app_.slots.typeNames[slot()] = controls_.type.Text();
}

void TypedWindow::takeReply(bool created) {
  const auto valueOf = [this](std::string_view tag) { return messageValue(tag); };
  created ? propertyFields.showCreated(valueOf) : propertyFields.showUpdated(valueOf);
}

void TypedWindow::refreshLists() {
  const bool fromMainWindow = CallerView == kSourceMainWindow || CallerView == kind().nextSource;
  const bool typeChanged = controls_.type.Text() != oldType_;
  oldType_ = controls_.type.Text();
  const std::string before = std::exchange(storedTypeId_, typeId());
  if (!fromMainWindow && !typeChanged) return;
  refreshTrees(typeChanged);
  app_.main().refillInventory(kind().window.kind, storedTypeId_);
  // A record of another type now is not left in the list of the one before.
  if (!before.empty() && before != storedTypeId_) app_.main().refillInventory(kind().window.kind, before);
}

// The dialogs

void TypedWindow::showNumbers() {
  if (intOf(typeId()) != 0) ShowAssignedNumbers(app_, static_cast<RecordKind>(kind().window.kind), typeId());
}

/// Once the record is shown, its own type; later whatever the window with the numbers shows.
void TypedWindow::refreshNumbers() {
  RefreshAssignedNumbers(app_, static_cast<RecordKind>(kind().window.kind), isLoading() ? typeId() : "");
}

/// A new record shows what it will have: there is nothing yet that a status could be applied to.
void TypedWindow::txtSTS_TYPE_DblClick() {
  frmStatus window(app_, static_cast<RecordKind>(kind().window.kind), isStored() ? recordId() : "");
  window.ShowModal();
  if (isStored() && !window.status.empty()) controls_.status.Text = window.status;
  statusIsShown();
  if (window.changed) save();
}

// Rights

void TypedWindow::DisableEditing() {
  InventoryWindow::DisableEditing();
  controls_.type.Locked = true;
  controls_.number.Locked = true;
  disable(controls_.numbers, controls_.status);
}

void TypedWindow::SetFormSecurity() {
  InventoryWindow::SetFormSecurity();
  bookings.secure(app_.context.rights);
}

}  // namespace vantry
