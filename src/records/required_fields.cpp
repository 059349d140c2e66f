#include "records/required_fields.h"

#include "messaging/server_tools.h"
#include "platform/controls.h"
#include "platform/desktop.h"
#include "platform/text.h"
#include "platform/windows.h"
#include "records/field_kinds.h"

namespace vantry {

static constexpr std::string_view kRequired = "1";
static constexpr std::string_view kNone = "(none)";

std::string requiredTag(std::string_view label) {
  return std::string(kRequired) + "|" + std::string(label);
}

static std::string textOf(const Control& control) {
  const FieldKind* kind = fieldKindOf(control);
  return kind ? kind->text(control) : std::string();
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
