#include "booking/frmOverride.h"

#include "booking/frmSupervisor.h"
#include "messaging/return_codes.h"
#include "platform/text.h"
#include "platform/wiring.h"

namespace vantry {
namespace {

constexpr int kAny = 0;  ///< any context

/// A sentence of the window. A row holds for its code, and for its context and name where it tells them; the
/// first that fits counts.
///
/// Marks in a sentence: %N name, %T second name, %P period, %C count and %c its ending, %L limit and %l its
/// ending, %c and %l being "." up to one and "s." above, %D and %d count and limit as amounts of money. The
/// line break is LF CR, in that order; this is deliberate.
struct SentenceRow {
  int code;
  int context;
  std::string_view name;
  std::string_view sentence;
};

constexpr SentenceRow kSentences[] = {
    {155, kAny, "", "Requester is not authorized to book equipment of type %N."},
    {156, kAny, "", "Requester is not authorized to book items of media type %N."},
    {138, codes::Equipment, "", "Location of equipment not in booking desk's policy."},
    {138, codes::Media, "", "Location of media item not in booking desk's policy."},
    {138, codes::RoomUsage, "", "Location of room not in booking desk's policy."},
    {138, kAny, "", "Location not in booking desk's policy."},
    {184, codes::Equipment, "", "Security location of equipment not in booking desk's policy."},
    {184, codes::Media, "", "Security location of media item not in booking desk's policy."},
    {184, codes::RoomUsage, "", "Security location of room not in booking desk's policy."},
    {184, kAny, "", "Security location not in booking desk's policy."},
    {187, kAny, "", "Within the warning limit of another booking."},
    {119, kAny, "", "Media item count has exceeded requester's authorized limit of %N."},
    {118, kAny, "", "Media equipment count has exceeded requester's authorized limit of %N."},
    {153, kAny, "", "Equipment type %N cannot be booked longer than %P."},
    {154, kAny, "", ""},  // no sentence on purpose: the window still offers its buttons
    {188, kAny, "", "Room cannot be booked longer than %P."},
    {145, kAny, "MTID", "Media of type %T cannot be picked up."},
    {145, kAny, "ETI", "Equipment of type %T cannot be picked up."},
    {146, kAny, "MTID", "Media of type %T cannot be delivered."},
    {146, kAny, "ETI", "Equipment of type %T cannot be delivered."},
    {152, kAny, "", "Cannot book item.  Item Status:  %N"},
    {151, kAny, "", "Cannot book equipment.  %T\n\rEquipment Status:  %N"},
    {110, kAny, "1", "Requester has %C booking%c\n\rRequester is authorized for %L booking%l"},
    {110, kAny, "2", "Requester has %C late return%c\n\rRequester is authorized for %L late return%l"},
    {110, kAny, "3",
     "Requester has %C cancelled booking%c\n\rRequester is authorized for %L cancelled booking%l"},
    {110, kAny, "4",
     "Requester has %C unclaimed booking%c\n\rRequester is authorized for %L unclaimed booking%l"},
    {110, kAny, "5", "Requester has %D in outstanding fees.\n\rRequester is authorized for a maximum of %d."},
};

/// Who may override a code; the first row that fits counts. Without a row it is a matter for OVOTR alone.
struct NeedRow {
  int code;
  std::string_view name;
  Right right;
  std::string_view tag;
};

constexpr NeedRow kNeeds[] = {
    {110, "", Right::OVPAT, "OVPAT"},     {145, "MTID", Right::OVITM, "OVITM"},
    {146, "MTID", Right::OVITM, "OVITM"}, {154, "", Right::OVITM, "OVITM"},
    {156, "", Right::OVITM, "OVITM"},
};

template <class Row>
bool fits(const Row& row, const OverrideFacts& facts) {
  return row.code == facts.OverrideCode && (row.name.empty() || row.name == facts.OverrideName);
}

std::string ending(std::string_view number) {
  return val(number) > 1 ? "s." : ".";  // none at all takes the singular; this is deliberate
}

std::string money(std::string_view amount, CurrencyField& currency) {
  currency.Text(amount);
  return currency.Text();
}

std::string valueOf(char mark, const OverrideFacts& facts, CurrencyField& currency) {
  switch (mark) {
    case 'N':
      return facts.OverrideName;
    case 'T':
      return facts.OverrideName2;
    case 'P':
      return facts.OverridePeriod;
    case 'C':
      return facts.OverrideCount;
    case 'c':
      return ending(facts.OverrideCount);
    case 'D':
      return money(facts.OverrideCount, currency);
    case 'L':
      return facts.OverrideLimit;
    case 'l':
      return ending(facts.OverrideLimit);
    default:
      return money(facts.OverrideLimit, currency);
  }
}

}  // namespace

std::string overrideSentence(const OverrideFacts& facts, CurrencyField& currency) {
  for (const SentenceRow& row : kSentences) {
    if (!fits(row, facts) || (row.context != kAny && row.context != facts.OverrideContext)) continue;
    std::string sentence;
    for (std::size_t i = 0; i < row.sentence.size(); ++i) {
      if (row.sentence[i] == '%')
        sentence += valueOf(row.sentence[++i], facts, currency);
      else
        sentence += row.sentence[i];
    }
    return sentence;
  }
  return {};
}

OverrideNeed overrideNeed(const OverrideFacts& facts) {
  for (const NeedRow& row : kNeeds) {
    if (fits(row, facts)) return {true, row.right, row.tag};
  }
  return {false, Right::OVOTR, "OVOTR"};
}

frmOverride::frmOverride(App& app, OverrideFacts facts)
    : Form(app.windows, "frmOverride"), OverrideFacts(std::move(facts)), app_(app) {
  Caption = "Override";
  Resizable = false;
  txtTempCurrency.Visible = false;
  lblMessage.Literal = true;  // names of types may hold an "&"
  cmdCancel.Cancel = true;
  cmdCancel.Default = true;  // going on takes a decision
  on(cmdOverride.Click, this, &frmOverride::cmdOverride_Click);
  on(cmdSupervisor.Click, this, &frmOverride::cmdSupervisor_Click);
  on(cmdCancel.Click, this, &frmOverride::cmdCancel_Click);
  Layout = Column{Row{imgOverride, Gap{}, LayoutNode(lblMessage).share(1)}, Gap{},
                  Row{Stretch{}, cmdOverride, cmdSupervisor, cmdCancel}};
}

void frmOverride::Form_Load() {
  app_.tools.PrepareForm(*this);
  lblMessage.Caption = overrideSentence(*this, txtTempCurrency);
  const OverrideNeed need = overrideNeed(*this);
  const Rights& rights = app_.context.rights;
  const bool mayOverride = rights.has(Right::OVOTR) || (need.byRight && rights.has(need.right));
  RequiredRight_ = need.RequiredRight;
  cmdOverride.Visible = mayOverride;
  cmdSupervisor.Visible = !mayOverride;
}

void frmOverride::cmdOverride_Click() {
  OverrideResult = "1";
  Hide();
}

void frmOverride::cmdSupervisor_Click() {
  if (!AskSupervisor(app_, RequiredRight_).empty()) cmdOverride_Click();
}

void frmOverride::cmdCancel_Click() {
  OverrideResult = "0";
  Hide();
}

bool AskOverride(App& app, const OverrideFacts& facts) {
  frmOverride window(app, facts);
  window.ShowModal();
  return window.OverrideResult != "0";
}

}  // namespace vantry
