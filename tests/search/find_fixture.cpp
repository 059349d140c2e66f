#include "search/find_fixture.h"

#include "platform/number_fields.h"
#include "platform/text.h"

namespace vantry::test {

void FindTest::start(const std::string& rights) {
  Desk::start(rights);
  app->context.categories.equipment = {{"4", "Television", "2"}, {"5", "Camera", "1"}};
  app->context.categories.groups = {{"14", "Set", "1"}};
  app->context.categories.rooms = {{"24", "Hall", "1"}};
  app->context.staff = {{"31", "Ink, Ina", true}, {"32", "Oak, Ole", false}};
  server.always("GETRDTLTY").replies("RDI=41 RDTY=Piano");
  server.always("GETEGSTY").replies("SID=1 SPR=1 STY=Available\nSID=2 SPR=2 STY=Lost");
  server.always("GETRSTY").replies("SID=7 SPR=1 STY=Closed");
  server.always("GETMDTY").replies("MTI=51 MTY=Cleaning");
  server.always("GETARLOC").replies("RID=61 RNO=101 RNM=Store\nRID=62 RNO=102 RNM=");
}

frmFind& FindTest::open(SearchCategory category, int page) {
  ShowSearch(*app, category);
  for (int i = 0; i < app->windows.Count(); ++i) {
    auto* find = dynamic_cast<frmFind*>(&app->windows[i]);
    if (!find) continue;
    find->criteria(category).tabSearch.choose(page);
    return *find;
  }
  throw std::logic_error("no search window");
}

std::string FindTest::pick(std::string_view tag, std::function<void(frmFind&)> play) {
  desktop.expectModalWindow<frmFind>("frmFind", std::move(play));
  return pickBySearch(*app, tag);
}

static void enterField(Control& control, const std::string& value) {
  switch (control.kind()) {
    case ControlKind::OptionButton:
      return static_cast<OptionButton&>(control).choose();
    case ControlKind::ComboBox: {
      auto& list = static_cast<ComboBox&>(control);
      const int entry = list.indexOf(value);
      ASSERT_GE(entry, 0) << control.Name() << " has no entry " << value;
      return list.select(entry);
    }
    case ControlKind::DateField: {
      const auto moment = parseServerTime(value);
      return static_cast<DateField&>(control).enter(moment ? std::optional(moment->date) : std::nullopt);
    }
    case ControlKind::TimeField:
      return static_cast<TimeField&>(control).enter(parseClockTime(value));
    case ControlKind::NumberField:
      return static_cast<NumberField&>(control).type(value);
    case ControlKind::MaskedField:
      return static_cast<MaskedField&>(control).type(value);
    default:
      return static_cast<TextBox&>(control).type(value);
  }
}

void FindTest::enter(frmFind& find, std::string_view fields) {
  while (!fields.empty()) {
    const auto end = std::min(fields.find("; "), fields.size());
    const std::string_view field = fields.substr(0, end);
    fields.remove_prefix(std::min(end + 2, fields.size()));
    const auto sign = std::min(field.find('='), field.size());
    Control* control = find.findControl(field.substr(0, sign));
    ASSERT_NE(control, nullptr) << field;
    enterField(*control, sign < field.size() ? std::string(field.substr(sign + 1)) : std::string());
  }
}

void FindTest::findNothing(frmFind& find, const std::string& tags) {
  server.expect("FIND", tags).replies("head: SRCHCNT=0");
  desktop.expectWarning("No matches found.");
  find.cmdFindNow.press();
  server.checkAllCame();
}

void FindTest::findRecords(frmFind& find, const std::string& tags, std::string_view reply) {
  server.expect("FIND", tags).replies(reply);
  find.cmdFindNow.press();
  server.checkAllCame();
}

std::string FindTest::rowText(const frmFind& find, int row) {
  std::string text;
  const Grid& grid = find.faResults;
  for (int col = 0; col < grid.Cols; ++col) {
    if (grid.ColWidth(col) > 0) text += (text.empty() ? "" : "|") + grid.TextMatrix(row, col);
  }
  return text;
}

}  // namespace vantry::test
