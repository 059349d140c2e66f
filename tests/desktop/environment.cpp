#include <gtest/gtest.h>

#include <QApplication>
#include <QFontDatabase>

#include "desktop/chatter.h"
#include "desktop/style.h"

namespace {

/// The one application of all tests, without a display.
class QtEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C");
    static int count = 1;
    static char name[] = "desktop_tests";
    static char* arguments[] = {name, nullptr};
    application_ = std::make_unique<QApplication>(count, arguments);
    vantry::quietUnseenScreen();
    // Without fonts every letter is the same box, and nothing complains.
    ASSERT_FALSE(QFontDatabase::families().isEmpty()) << "install a font, such as fonts-dejavu-core";
    vantry::style::apply(*application_, vantry::style::Scheme::Light);
  }
  void TearDown() override { application_.reset(); }

 private:
  std::unique_ptr<QApplication> application_;
};

const auto* const environment = testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace

// What the toolkit and the fonts keep until the end of the process is not ours.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libQt6\nleak:libglib\nleak:libdbus\nleak:libpulse\n";
}
