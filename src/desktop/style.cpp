#include "desktop/style.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPalette>
#include <algorithm>
#include <array>
#include <cmath>

#include "desktop/accessible.h"
#include "desktop/vantry_style.h"

// Outside of the namespace, as the resource compiler wants it.
static void loadPictures() {
  Q_INIT_RESOURCE(pictures);
}

namespace vantry::style {

static constexpr double kTwipsPerInch = 1440.0;
/// The mean width of a letter that the columns' widths were chosen for, in parts of an inch.
static constexpr double kLetterInch = 4.75 / 96.0;
static constexpr double kLeastContrast = 4.5;
/// A colour whose parts differ by less is a grey.
static constexpr int kNearlyGrey = 40;
static constexpr double kLightTint = 0.18;
static constexpr double kDarkTint = 0.28;
static constexpr double kPointSize = 9.0;

/// One scheme: the few colours that all others come from.
struct Colours {
  const char* window;
  const char* base;
  const char* bar;
  const char* text;
  const char* quiet;
  const char* outline;
  const char* hairline;
  const char* header;
  const char* accent;
  const char* tint;
  const char* warning;
};

static constexpr Colours kLight = {"#f4f5f7", "#ffffff", "#eceef1", "#1d2127", "#5c6570", "#b4bcc6",
                                   "#dde1e6", "#eef0f3", "#1f66c9", "#d9e7fa", "#c62828"};
static constexpr Colours kDark = {"#22262c", "#1a1d22", "#1d2025", "#e6e9ed", "#9aa4b0", "#4d5662",
                                  "#343a43", "#2a2f36", "#4d94f0", "#27405f", "#ff7b72"};

static Scheme current = Scheme::Light;

static const Colours& colours() {
  return current == Scheme::Dark ? kDark : kLight;
}

QColor accent() {
  return colours().accent;
}
QColor hairline() {
  return colours().hairline;
}
QColor outline() {
  return colours().outline;
}
QColor quietText() {
  return colours().quiet;
}
QColor warning() {
  return colours().warning;
}
QColor tint() {
  return colours().tint;
}
QColor barGround() {
  return colours().bar;
}
QColor headerGround() {
  return colours().header;
}

QColor blend(const QColor& from, const QColor& to, double part) {
  const auto mix = [part](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * part)); };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

static QPalette makePalette() {
  const Colours& c = colours();
  QPalette palette(QColor(c.window), QColor(c.window));
  const QColor text(c.text);
  const QColor off = blend(text, QColor(c.window), 0.55);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::Base, c.base);
  palette.setColor(QPalette::AlternateBase, blend(QColor(c.base), QColor(c.window), 0.5));
  palette.setColor(QPalette::Button, current == Scheme::Dark ? QColor("#2f353d") : QColor("#ffffff"));
  palette.setColor(QPalette::Mid, c.outline);
  palette.setColor(QPalette::Dark, c.outline);
  palette.setColor(QPalette::Midlight, c.hairline);
  palette.setColor(QPalette::Light, c.base);
  palette.setColor(QPalette::Highlight, c.accent);
  palette.setColor(QPalette::HighlightedText,
                   current == Scheme::Dark ? QColor("#0d1522") : QColor("#ffffff"));
  palette.setColor(QPalette::Link, c.accent);
  palette.setColor(QPalette::PlaceholderText, c.quiet);
  palette.setColor(QPalette::ToolTipBase, c.base);
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Disabled, QPalette::WindowText, off);
  palette.setColor(QPalette::Disabled, QPalette::Text, off);
  palette.setColor(QPalette::Disabled, QPalette::ButtonText, off);
  palette.setColor(QPalette::Disabled, QPalette::Base, c.window);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, c.outline);
  return palette;
}

/// The system's font; where no desktop chooses one, the best that is there.
static QFont makeFont() {
  QFont font = QGuiApplication::font();
  if (QGuiApplication::platformName() == "offscreen" || font.family() == "Sans Serif") {
    static constexpr std::array kFamilies = {"Inter", "Noto Sans", "Cantarell", "DejaVu Sans"};
    for (const char* family : kFamilies) {
      if (!QFontDatabase::hasFamily(family)) continue;
      font.setFamily(family);
      break;
    }
    font.setPointSizeF(kPointSize);
  }
  return font;
}

void apply(QApplication& application, std::optional<Scheme> scheme) {
  loadPictures();
  const bool systemDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
  current = scheme.value_or(systemDark ? Scheme::Dark : Scheme::Light);
  application.setFont(makeFont());
  application.setStyle(new VantryStyle);
  accessible::install();
  application.setPalette(makePalette());
}

QFont headingFont() {
  QFont font = QGuiApplication::font();
  font.setPointSizeF(font.pointSizeF() * 1.35);
  font.setWeight(QFont::DemiBold);
  return font;
}

QFont captionFont() {
  QFont font = QGuiApplication::font();
  font.setPointSizeF(font.pointSizeF() * 0.92);
  font.setWeight(QFont::DemiBold);
  return font;
}

QColor rowTint(const QColor& colour) {
  return blend(QColor(colours().base), colour, current == Scheme::Dark ? kDarkTint : kLightTint);
}

// Colours of the platform

/// The numbers of the desktop's colours that a preference may name, and who has them here.
static QColor systemColour(unsigned number) {
  using Role = QPalette::ColorRole;
  static constexpr std::array kRoles = {
      Role::Midlight, Role::Window,   Role::Highlight,       Role::Window,      Role::Window,
      Role::Base,     Role::Mid,      Role::WindowText,      Role::Text,        Role::HighlightedText,
      Role::Midlight, Role::Midlight, Role::Window,          Role::Highlight,   Role::HighlightedText,
      Role::Button,   Role::Mid,      Role::PlaceholderText, Role::ButtonText,  Role::WindowText,
      Role::Light,    Role::Dark,     Role::Midlight,        Role::ToolTipText, Role::ToolTipBase};
  const QPalette palette = QGuiApplication::palette();
  return palette.color(number < kRoles.size() ? kRoles[number] : Role::WindowText);
}

QColor colour(Colour colour, const QColor& own) {
  if (colour == kOwnColour) return own;
  if (colour & kSystemColour) return systemColour(colour & 0xFFU);
  return {static_cast<int>(colour & 0xFFU), static_cast<int>(colour >> 8U & 0xFFU),
          static_cast<int>(colour >> 16U & 0xFFU)};
}

static double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const double first = luminance(a);
  const double second = luminance(b);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

/// Grey turns black or white at once; a colour keeps as much of itself as can be read.
QColor readable(const QColor& text, const QColor& ground) {
  if (contrast(text, ground) >= kLeastContrast) return text;
  const QColor black(Qt::black);
  const QColor white(Qt::white);
  const QColor away = contrast(white, ground) > contrast(black, ground) ? white : black;
  const auto [least, most] = std::minmax({text.red(), text.green(), text.blue()});
  if (most - least < kNearlyGrey) return away;
  for (double part = 0.1; part < 1.0; part += 0.1) {
    const QColor nearer = blend(text, away, part);
    if (contrast(nearer, ground) >= kLeastContrast) return nearer;
  }
  return away;
}

// Widths

static double pixelsPerTwip() {
  static const double factor = [] {
    const QFontMetricsF metrics{QGuiApplication::font()};
    static const QString letters = QStringLiteral("Delivery Room Confirmation 10:30 AM Start Time");
    const double letter = metrics.horizontalAdvance(letters) / static_cast<double>(letters.size());
    return letter / kLetterInch / kTwipsPerInch;
  }();
  return factor;
}

int pixels(int twips) {
  return static_cast<int>(std::lround(twips * pixelsPerTwip()));
}

int twips(double pixels) {
  return static_cast<int>(std::ceil(pixels / pixelsPerTwip()));
}

}  // namespace vantry::style
