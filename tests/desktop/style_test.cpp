#include "desktop/style.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

#include "frame/preferences.h"
#include "platform/settings.h"

namespace vantry::test {
namespace {

struct NoSettings : Settings {
  std::string GetSetting(std::string_view, std::string_view, std::string_view,
                         std::string_view fallback) const override {
    return std::string(fallback);
  }
  void SaveSettings(std::string_view, std::string_view, const std::vector<Setting>&) override {}
  void keepAside() override {}
};

struct Style : testing::Test {
  Preferences preferences;
  Style() {
    for (const PreferenceRow& row : preferenceTable())
      EXPECT_TRUE(readPreference(row, NoSettings{}, preferences));
  }
  ~Style() override { style::apply(*qApp, style::Scheme::Light); }
};

TEST_F(Style, EveryDefaultColourLeavesItsRowsAndItsLegendReadable) {
  for (const auto scheme : {style::Scheme::Light, style::Scheme::Dark}) {
    style::apply(*qApp, scheme);
    const QPalette palette = QApplication::palette();
    const double least = scheme == style::Scheme::Light ? 7 : 5;
    for (std::size_t i = 0; i < preferences.backColours.size(); ++i) {
      SCOPED_TRACE(i);
      const QColor full = style::colour(preferences.backColours[i], palette.color(QPalette::Base));
      EXPECT_GE(style::contrast(palette.color(QPalette::Text), style::rowTint(full)), least);
      const QColor ink = style::colour(preferences.foreColours[i], palette.color(QPalette::Text));
      EXPECT_GE(style::contrast(style::readable(ink, full), full), 4.5);
    }
  }
}

TEST_F(Style, AGreyThatCannotBeReadTurnsBlackOrWhiteAndAColourKeepsItsKind) {
  EXPECT_EQ(style::readable("#e6e9ed", QColor(0, 255, 0)), QColor(Qt::black));
  EXPECT_EQ(style::readable("#1d2127", QColor(0, 0, 255)), QColor(Qt::white));
  EXPECT_EQ(style::readable("#1d2127", "#ffff00"), QColor("#1d2127"));
  const QColor red = style::readable(QColor(200, 30, 30), QColor(160, 20, 20));
  EXPECT_GT(red.red(), red.blue());
}

}  // namespace
}  // namespace vantry::test
