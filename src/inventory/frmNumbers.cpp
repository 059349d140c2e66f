#include "inventory/frmNumbers.h"

#include <algorithm>
#include <array>

#include "lists/grids.h"
#include "messaging/ask.h"
#include "platform/wiring.h"
#include "words/tags.h"

namespace vantry {

/// What the windows of the kinds of records differ in.
struct NumbersKind {
  RecordKind kind;
  const char* caption;
  std::string_view code;
  std::string_view type;
  std::array<ReplyColumn, 2> columns;  ///< id and number
};

namespace {

constexpr std::array<ReplyColumn, 2> columnsOf(std::string_view id, std::string_view number) {
  return {{{.heading = "ID", .tag = id, .width = 0}, {.heading = "Number", .tag = number}}};
}

constexpr NumbersKind kKinds[] = {
    {kEquipment, "Assigned Equipment Numbers", "GETEITM", tags::ETI, columnsOf(tags::EID, tags::ENO)},
    {kGroup, "Assigned Group Numbers", "GETGITM", tags::ETI, columnsOf(tags::EID, tags::ENO)},
    {kRoom, "Assigned Room Numbers", "GETRITM", tags::RTI, columnsOf(tags::RID, tags::RNO)},
};

const NumbersKind* kindOf(RecordKind kind) {
  const auto* found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const NumbersKind& row) { return row.kind == kind; });
  return found == std::end(kKinds) ? nullptr : found;
}

frmNumbers* openWindow(App& app, const NumbersKind& kind) {
  for (int i = 0; i < app.windows.Count(); ++i) {
    auto* window = dynamic_cast<frmNumbers*>(&app.windows[i]);
    if (window && window->Caption.get() == kind.caption) return window;
  }
  return nullptr;
}

}  // namespace

frmNumbers::frmNumbers(App& app, const NumbersKind& kind, std::string ofType)
    : Form(app.windows, "frmNumbers"),
      typeId(std::move(ofType)),
      app_(app),
      kind_(kind),
      list_(app, faNumbers) {
  Caption = kind_.caption;
  faNumbers.AccessibleName = kind_.caption;
  faNumbers.KeyDown = [this](std::string_view key) { return faNumbers_KeyDown(key); };
  cmdOK.Default = true;
  cmdOK.Cancel = true;
  on(cmdOK.Click, this, &frmNumbers::cmdOK_Click);
  Layout = Column{faNumbers, Row{Stretch{}, cmdOK}};
}

void frmNumbers::Form_Load() {
  app_.tools.PrepareForm(*this);
  list_.build({.columns = kind_.columns, .walk = kind_.columns[0].tag});
  RefreshList();
}

void frmNumbers::Form_Activate() {
  faNumbers.SetFocus();
}

void frmNumbers::RefreshList() {
  Ask(app_.global, Name())(kind_.code, {{kind_.type, typeId}}, [this] { list_.fill(); });
}

bool frmNumbers::faNumbers_KeyDown(std::string_view key) {
  if (key != "Ctrl+C") return false;
  app_.desktop.copyToClipboard(gridText(faNumbers));
  return true;
}

void ShowAssignedNumbers(App& app, RecordKind kind, const std::string& typeId) {
  const NumbersKind* row = kindOf(kind);
  if (!row) return;
  if (frmNumbers* window = openWindow(app, *row)) {
    RefreshAssignedNumbers(app, kind, typeId);
    window->WindowState = FormState::Normal;
    return window->SetFocus();
  }
  app.windows.keep(std::make_unique<frmNumbers>(app, *row, typeId)).Show();
}

void RefreshAssignedNumbers(App& app, RecordKind kind, const std::string& typeId) {
  const NumbersKind* row = kindOf(kind);
  frmNumbers* window = row ? openWindow(app, *row) : nullptr;
  if (!window) return;
  window->typeId = typeId;
  window->RefreshList();
}

}  // namespace vantry
