#include "words/tags.h"

namespace vantry {
namespace {

using enum TagForm;

struct FormCase {
  TagForm form;
  std::vector<std::string> sound;
  std::vector<std::string> unsound;
};

const FormCase kForms[] = {
    {Id,
     {"0", "17", "-2", "007", "2147483647", "-2147483648"},
     {"2147483648", "+1", "1.0", " 1", "1 ", "x", "-", "1e3"}},
    {Count, {"0", "-1", "99999"}, {"99999999999999999999", "12?", "Y", "0x10"}},
    {Name, {"TV1", " ", "O'Brien \"x\"", "\xC3\xA9"}, {}},
    {Flag, {"Y", "N"}, {"y", "n", "1", "Yes", "YN", " Y"}},
    {Date,
     {"2026-11-24", "2028-02-29", "2026-7-01", "2026-7-1"},
     {"2026-02-29", "2026-13-01", "2026-00-10", "2026-11-31", "2026-11", "2026-11-24-", "26-11-24",
      "2026/11/24", "2026--1-1", "2026-11-24 ", "2026-11-24 09:00:00", "24.11.2026", "2026-011-1", "--"}},
    {Time,
     {"2026-11-24 09:00:00", "2026-11-24 23:59:59", "2026-11-24", "0900", "900", "2400", "2530", "00"},
     {"2026-11-24 24:00:00", "2026-11-24 09:60:00", "2026-11-24 09:00", "2026-11-24T09:00:00",
      "2026-7-1 09:00:00", "2026-02-30 09:00:00", "2026-11-24 09:00:00 ", "09:00:00", "0960", "9900", "00900",
      "9", "2026-11-24 "}},
    {Money,
     {"0", "12", "12.5", "-0.75", ".5", "9000000000", "12."},
     {"$12", "1,5", "1.2.3", "-", ".", "1e3", "--1", " 1", "1 000"}},
};

TEST(TagForms, TakeSoundValuesAndRefuseOthers) {
  for (const FormCase& row : kForms) {
    EXPECT_TRUE(hasForm("", row.form)) << nameOf(row.form);
    for (const auto& text : row.sound)
      EXPECT_TRUE(hasForm(text, row.form)) << nameOf(row.form) << ": " << text;
    for (const auto& text : row.unsound)
      EXPECT_FALSE(hasForm(text, row.form)) << nameOf(row.form) << ": " << text;
  }
}

}  // namespace
}  // namespace vantry
