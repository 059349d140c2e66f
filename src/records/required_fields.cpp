#include "records/required_fields.h"

#include "messaging/server_tools.h"
#include "platform/controls.h"
#include "platform/desktop.h"
#include "platform/fields.h"
#include "platform/form.h"
#include "platform/number_fields.h"
#include "platform/text.h"
#include "platform/windows.h"

namespace vantry {

static constexpr std::string_view kRequired = "1";
static constexpr std::string_view kNone = "(none)";

/// What stands in a control that takes a value; nothing for other kinds.
static std::string textOf(const Control& control) {
  switch (control.kind()) {
    case ControlKind::TextBox:
      return static_cast<const TextBox&>(control).Text;
    case ControlKind::ComboBox:
      return static_cast<const ComboBox&>(control).Text();
    case ControlKind::DateField:
      return static_cast<const DateField&>(control).shortDate();
    case ControlKind::TimeField:
    case ControlKind::SpinTimeField:
      return static_cast<const TimeField&>(control).text24();
    case ControlKind::NumberField:
      return static_cast<const NumberField&>(control).Text();
    case ControlKind::CurrencyField:
      return static_cast<const CurrencyField&>(control).plain();
    case ControlKind::MaskedField:
      return static_cast<const MaskedField&>(control).Text;
    default:
      return {};
  }
}

namespace {

struct Missing {
  Control* first = nullptr;
  std::string labels;
};

}  // namespace

static void collectMissing(const Container& container, Missing& missing) {
  for (Control* control : container.Controls()) {
    int position = 1;
    const std::string tag = control->Tag;
    const std::string flag = ServerTools::NextToken(position, tag, "|");
    const std::string text = textOf(*control);
    if (flag == kRequired && (trim(text).empty() || text == kNone)) {
      if (!missing.first) missing.first = control;
      missing.labels += "\n" + (position > 0 ? tag.substr(static_cast<std::size_t>(position - 1)) : "");
    }
    if (control->kind() == ControlKind::Frame) collectMissing(static_cast<const Frame&>(*control), missing);
  }
}

bool CheckRequiredFields(Form& form) {
  Missing missing;
  collectMissing(form, missing);
  if (!missing.first) return true;
  warningBox(form.windows().desktop(), "Missing Required Fields:" + missing.labels);
  missing.first->SetFocus();
  return false;
}

}  // namespace vantry
