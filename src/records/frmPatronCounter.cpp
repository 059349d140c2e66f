#include "records/frmPatronCounter.h"

#include <array>
#include <limits>

#include "messaging/return_codes.h"
#include "platform/entry_check.h"
#include "platform/text.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

namespace {

constexpr int kMost = 99999;
constexpr const char* kQuestion = "Changes will be lost!  Do you wish to SAVE this record before exiting?";
constexpr RefusalWords kRefusals[] = {
    {codes::NotFound, {}, "This patron is not there any more."},
    {codes::NoRight, {}, "You are not authorized to use the counters of patrons."},
};

struct Counter {
  NumberField frmPatronCounter::*field;
  std::string_view tag;
};
/// The counters that can be corrected, in the order in which they are sent.
constexpr std::array kCounters{
    Counter{&frmPatronCounter::txtLateReturns, tags::LTRE},
    Counter{&frmPatronCounter::txtHistoricalBookings, tags::HBK},
    Counter{&frmPatronCounter::txtCancelledBookings, tags::CANBK},
    Counter{&frmPatronCounter::txtUnclaimedBookings, tags::UNBK},
};

}  // namespace

frmPatronCounter::frmPatronCounter(App& app, int patronId)
    : Form(app.windows, "frmPatronCounter"),
      txtCurrentBookings(*this, "txtCurrentBookings", std::numeric_limits<int>::min(),
                         std::numeric_limits<int>::max()),
      txtLateReturns(*this, "txtLateReturns", 0, kMost),
      txtHistoricalBookings(*this, "txtHistoricalBookings", 0, kMost),
      txtCancelledBookings(*this, "txtCancelledBookings", 0, kMost),
      txtUnclaimedBookings(*this, "txtUnclaimedBookings", 0, kMost),
      app_(app),
      ask_(app.global, Name()),
      patronId_(patronId) {
  Caption = "Patron Counter Information";
  Resizable = false;
  txtCurrentBookings.Locked = txtResetOperatorID.Locked = dtResetDate.Locked = true;
  cmdSave.Default = cmdOK.Default = true;
  cmdClose.Cancel = cmdOK.Cancel = true;
  for (const Counter& counter : kCounters) (this->*counter.field).Change = [this] { dirty_ = true; };
  on(cmdSave.Click, this, &frmPatronCounter::cmdSave_Click);
  on(cmdClose.Click, this, &frmPatronCounter::cmdClose_Click);
  on(cmdOK.Click, this, &frmPatronCounter::cmdOK_Click);
  Layout = Column{
      Fields{lblCurrentBookings, txtCurrentBookings, lblLateReturns, txtLateReturns, lblHistoricalBookings,
             txtHistoricalBookings, lblCancelledBookings, txtCancelledBookings, lblUnclaimedBookings,
             txtUnclaimedBookings, lblResetOperatorID, txtResetOperatorID, lblResetDate, dtResetDate},
      Gap{}, Row{Stretch{}, cmdSave, cmdClose, cmdOK}};
}

void frmPatronCounter::Form_Load() {
  app_.tools.PrepareForm(*this);
  setVisible(maySave(), cmdSave, cmdClose);
  cmdOK.Visible = !maySave();
  for (const Counter& counter : kCounters) (this->*counter.field).Locked = !maySave();
  if (ask_.succeeded(ask_.codeOf("GPAI", {{tags::PID, patronId_}}), "GPAI", kRefusals)) return showCounters();
  Unload();
}

void frmPatronCounter::Form_Activate() {
  txtLateReturns.SetFocus();
}

void frmPatronCounter::showCounters() {
  const auto count = [this](std::string_view tag) { return intOf(app_.message.Get(tag)); };
  txtCurrentBookings.Value = count(tags::CURBK);
  for (const Counter& counter : kCounters) (this->*counter.field).Value = count(counter.tag);
  txtResetOperatorID.Text = app_.message.Get(tags::OI);
  const auto reset = parseServerTime(app_.message.Get(tags::UDT));
  dtResetDate.Text = reset ? formatDate(reset->date, app_.desktop.shortDateFormat()) : "";
  dirty_ = saved_ = false;
}

/// An emptied counter is no zero.
bool frmPatronCounter::countersAreGiven() {
  if (!entriesAreReadable(*this)) return false;
  for (const Counter& counter : kCounters) {
    auto& field = this->*counter.field;
    if (!field.isEmpty()) continue;
    warningBox(app_.desktop, "Please enter a number for every counter.");
    field.SetFocus();
    return false;
  }
  return true;
}

void frmPatronCounter::cmdSave_Click() {
  if (!countersAreGiven()) return;
  app_.message.Add(tags::PID, std::to_string(patronId_));
  for (const Counter& counter : kCounters)
    app_.message.Add(counter.tag, std::to_string((this->*counter.field).number()));
  if (!ask_.succeeded(ask_.codeOf("UPAI"), "UPAI", kRefusals)) return;
  saved_ = true;
  dirty_ = false;
  informationBox(app_.desktop, "Patron Counters Saved");
}

bool frmPatronCounter::Form_Unload() {
  if (saved_ || !dirty_ || !questionBox(app_.desktop, kQuestion)) return true;
  if (!countersAreGiven()) return false;
  cmdSave_Click();
  return true;
}

void ShowPatronCounters(App& app, int patronId) {
  if (patronId != 0) frmPatronCounter(app, patronId).ShowModal();
}

void showCountersFrom(TextBox& field, App& app, std::function<int()> patronId) {
  const auto show = [&app, patronId = std::move(patronId)] { ShowPatronCounters(app, patronId()); };
  field.DblClick = show;
  field.KeyDown = [show](std::string_view key) {
    if (key != "F4") return false;
    show();
    return true;
  };
}

}  // namespace vantry
