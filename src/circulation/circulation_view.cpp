#include "circulation/circulation_view.h"

#include <stdexcept>

#include "circulation/booking_grid.h"
#include "frame/auto_truncate.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

/// The place of the view's own command among the row buttons. Its entry in the popup menu is always enabled
/// and does nothing without a row; only its button follows the selection.
static constexpr std::size_t kOwnCommand = 0;

static std::string labelName(std::string_view field) {
  return "lbl" + std::string(field.substr(3));
}

static std::vector<std::unique_ptr<Button>> makeButtons(Frame& frame, std::span<const RowButton> rows) {
  std::vector<std::unique_ptr<Button>> buttons;
  for (const RowButton& row : rows)
    buttons.push_back(std::make_unique<Button>(frame, std::string(row.name), std::string(row.caption)));
  return buttons;
}

CirculationView::CirculationView(const MainParts& parts, Frame& frame, const CirculationTwin& twin)
    : MainView(parts, frame),
      lblSearch_(frame, labelName(twin.cboSearch), "Search &by:"),
      cboSearch(frame, std::string(twin.cboSearch)),
      lblSearchFor_(frame, labelName(twin.txtSearchFor), "f&or:"),
      txtSearchFor(frame, std::string(twin.txtSearchFor)),
      cmdSearch(frame, std::string(twin.cmdSearch), "&Search"),
      cmdClear(frame, std::string(twin.cmdClear), "C&lear"),
      fraBookings(frame, std::string(twin.fraBookings), "Bookings"),
      faBookings(fraBookings, std::string(twin.faBookings)),
      rowButtons_(makeButtons(fraBookings, twin.rowButtons)),
      cmdDetails(fraBookings, std::string(twin.cmdDetails), std::string(twin.detailsCaption)),
      tvwDetails(fraBookings, std::string(twin.tvwDetails)),
      twin_(twin) {
  cmdSearch.Default = true;  // counts while its view shows
  cmdSearch.Enabled.put(false);
  cmdClear.Enabled.put(false);
  fraBookings.Visible.put(false);
  tvwDetails.Visible.put(false);
  cmdDetails.Tag.put("0");
  txtSearchFor.AccessibleName = "Search for";
  faBookings.AccessibleName = "Bookings found";
  tvwDetails.AccessibleName = "Details of the selected booking";
  rowChanged();
  arrange(frame);
  connect();
}

void CirculationView::arrange(Frame& frame) {
  LayoutNode buttons = Row{};
  for (const auto& button : rowButtons_) buttons.children.emplace_back(*button);
  buttons.children.push_back(Stretch{});
  buttons.children.emplace_back(cmdDetails);
  fraBookings.Layout = Column{LayoutNode(faBookings).share(3), buttons, LayoutNode(tvwDetails).share(2)};
  // The stretch holds the search row at the top while no list shows.
  frame.Layout = Column{Row{lblSearch_, cboSearch, Gap{}, lblSearchFor_, LayoutNode(txtSearchFor).share(2),
                            cmdSearch, cmdClear, Stretch{}},
                        LayoutNode(fraBookings).share(200), Stretch{}};
}

void CirculationView::connect() {
  for (std::size_t i = 0; i < rowButtons_.size(); ++i) {
    Command& command = this->*twin_.rowButtons[i].command;
    if (i == kOwnCommand) {
      on(rowButtons_[i]->Click, &command, &Command::run);
      command.Enabled = true;
    } else {
      command.link(*rowButtons_[i]);
    }
  }
  cboSearch.Click = [this] {
    if (!takesPreferences_) hideResults();
  };
  txtSearchFor.Change = [this] {
    hideResults();
    cmdSearch.Enabled = !trim(txtSearchFor.Text.get()).empty();
  };
  txtSearchFor.TakesScans = true;
  txtSearchFor.Enter = [this] {
    if (!trim(txtSearchFor.Text.get()).empty()) search();
  };
  on(cmdSearch.Click, this, &CirculationView::search);
  on(cmdClear.Click, this, &CirculationView::clear);
  on(cmdDetails.Click, this, &CirculationView::toggleDetails);
  on(faBookings.RowColChange, this, &CirculationView::rowChanged);
  on(faBookings.Click, this, &CirculationView::clicked);
  on(faBookings.RightClick, this, &CirculationView::rightClicked);
}

void CirculationView::load() {
  BuildChargeDischargeFlexArray(list_);
  tvwDetails.Pictures = {"folder-closed", "folder-open"};
  cboSearch.Clear();
  for (const SearchType& type : twin_.searchTypes)
    cboSearch.AddItem(std::string(type.text), std::string(type.data));
  hideResults();
  txtSearchFor.Text = "";
  cmdClear.Enabled = false;
  rememberedRow_ = 0;
}

void CirculationView::open() {
  MainMenus& m = parts().menus;
  (m.*twin_.otherEntry).Visible = false;
  (m.*twin_.ownEntry).Visible = true;
  cboSearch.ListIndex = app().preferences.*twin_.firstSearch;
  focusText();
}

void CirculationView::sorted() {
  closeDetails();
  rememberedRow_ = 0;
}

/// What was found stays: the preference is for the next search.
void CirculationView::takePreferences(Applies what) {
  MainView::takePreferences(what);
  if (what != Applies::Searches) return;
  takesPreferences_ = true;
  cboSearch.ListIndex = app().preferences.*twin_.firstSearch;
  takesPreferences_ = false;
}

void CirculationView::focusText() {
  txtSearchFor.SetFocus();
  txtSearchFor.SelectText();
}

// Search

void CirculationView::addSearchTags() {
  const int index = cboSearch.ListIndex;
  if (index < 0 || index >= static_cast<int>(twin_.searchTypes.size())) return;
  const SearchType& type = twin_.searchTypes[static_cast<std::size_t>(index)];
  app().message.Add(type.tag, ApplyAutoTruncate(app().preferences, txtSearchFor.Text.get()));
  if (!type.callNumberKind.empty()) app().message.Add(tags::CNTY, type.callNumberKind);
}

void CirculationView::sayAndReturn(std::string_view text) {
  informationBox(app().desktop, std::string(text));
  focusText();
}

void CirculationView::search() {
  if (twin_.tellsStatus) parts().showMessage("Requesting Data From Server...");
  addSearchTags();
  const int rc = ask().codeOf(twin_.code);
  cmdClear.Enabled = true;
  if (rc != 0)
    return sayAndReturn(twin_.doneCode != 0 && rc == twin_.doneCode ? twin_.doneText : twin_.searchFailed);
  const int found = app().message.Count(tags::BOOKID);
  if (twin_.tellsStatus) parts().showMessage(std::to_string(found) + " Booking(s) Found");
  if (found == 0) return sayAndReturn(twin_.nothingFound);
  showFound();
  focusText();
}

void CirculationView::showFound() {
  closeDetails();  // they may still show a booking of the search before
  FillChargeDischargeGrid(list_);
  faBookings.Row = 1;
  fraBookings.Visible = true;
  clicked();
  if (faBookings.Rows == 2) toggleDetails();
}

void CirculationView::hideResults() {
  if (!fraBookings.Visible) return;
  closeDetails();
  fraBookings.Visible = false;
}

void CirculationView::clear() {
  hideResults();
  txtSearchFor.Text = "";
  cboSearch.ListIndex = app().preferences.*twin_.firstSearch;
  cmdClear.Enabled = false;
  focusText();
  if (twin_.tellsStatus) parts().showMessage("");
}

// The list

void CirculationView::rowChanged() {
  const bool selected = faBookings.Row >= 1;
  for (std::size_t i = 0; i < rowButtons_.size(); ++i) {
    if (i != kOwnCommand) (this->*twin_.rowButtons[i].command).Enabled = selected;
  }
  rowButtons_[kOwnCommand]->Enabled = selected;
  cmdDetails.Enabled = selected;
}

void CirculationView::clicked() {
  const int row = faBookings.Row;
  if (rememberedRow_ != 0 && detailsOpen() && row != rememberedRow_) {
    closeDetails();
    rememberedRow_ = row;
  }
  if (rememberedRow_ == 0) rememberedRow_ = row;
  if (faBookings.Rows < 2) return;
  setEnabled(true, sort, print);
  takeSelected();
}

void CirculationView::rightClicked() {
  MainMenus& m = parts().menus;
  setVisible(true, m.mnuPopupBookingsNew, m.mnuPopupBookingsEdit, m.mnuPopupBookingsDelete,
             m.mnuPopupBookingsCancel, m.mnuPopupBookingsSep1, m.mnuPopupBookingsSep3,
             m.mnuPopupBookingsPrint);
  for (MenuItem MainMenus::*entry : twin_.hiddenEntries) (m.*entry).Visible = false;
  app().desktop.popupMenu(m.mnuPopupBookings, nullptr);
}

const std::string& CirculationView::takeSelected() {
  const int row = faBookings.Row;
  faBookings.Tag = row < 1 ? std::string() : list_.text(row, kBookingIdColumn);
  return faBookings.Tag.get();
}

bool CirculationView::clearAfterwards() {
  if (!(app().preferences.*twin_.clearsAfter)) return false;
  clear();
  return true;
}

void CirculationView::finish(int row) {
  faBookings.RemoveItem(row);
  closeDetails();
  if (!clearAfterwards()) closeDetailsAndEmptyList();
}

// The details

void CirculationView::toggleDetails() {
  if (detailsOpen()) return closeDetails();
  openDetails();
}

void CirculationView::closeDetails() {
  if (!detailsOpen()) return;
  tvwDetails.Visible = false;
  cmdDetails.Caption = "&Details >>";
  cmdDetails.Tag = "0";
}

void CirculationView::closeDetailsAndEmptyList() {
  closeDetails();
  if (!faBookings.hasData()) fraBookings.Visible = false;
}

void CirculationView::openDetails() {
  tvwDetails.Clear();
  for (const char* root : {"Media", "Equipment"}) {
    TreeNode* node = tvwDetails.Add({}, root, root, 1);
    node->openImage = 2;
    node->expanded = true;
  }
  takeSelected();
  if (!readDetails("GETSITM")) return;
  addMedia();
  if (!readDetails("GETSEQ")) return;
  addEquipment();
  tvwDetails.Visible = true;
  cmdDetails.Caption = "<< &Details";
  cmdDetails.Tag = "1";
  // Deliberate, beside the rule of the clicks: it is this row's panel, and a click on another one closes it.
  rememberedRow_ = faBookings.Row;
}

bool CirculationView::readDetails(std::string_view code) {
  return ask()(code, {{tags::BOOKID, faBookings.Tag.get()}, {tags::SC, "Y"}});
}

void CirculationView::addMedia() {
  const TagMessage& message = app().message;
  while (app().message.NextRecord(tags::MTID)) {
    std::string key = message.Get(tags::MTID);
    for (const std::string_view tag : {tags::BI, tags::MI, tags::IM}) key += '|' + message.Get(tag);
    addLine("Media", std::move(key), message.Get(tags::TITL) + " -- " + message.Get(tags::MTY));
  }
}

void CirculationView::addEquipment() {
  const TagMessage& message = app().message;
  const std::string_view name = twin_.followsBarcodes ? pieceTag(app()) : tags::ENO;
  while (app().message.NextRecord(tags::EID)) {
    const std::string id = message.Get(tags::EID);
    const std::string type = message.Get(tags::ETY);
    if (intOf(id) != 0) {
      addLine("Equipment", message.Get(tags::EIU) == "Y" ? '-' + id : id, message.Get(name) + " -- " + type);
    } else if (twin_.showsWishes) {
      addLine("Equipment", id + message.Get(tags::ETI), type);
    }
  }
}

/// Two wishes of one kind have one key, and yet are two lines.
void CirculationView::addLine(std::string_view root, std::string key, std::string text) {
  while (tvwDetails.find(key)) key += '+';
  if (!tvwDetails.Add(root, std::move(key), std::move(text)))
    throw std::logic_error("the details have lost their root");
}

}  // namespace vantry
