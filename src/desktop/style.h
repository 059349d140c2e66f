#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <optional>

#include "platform/element.h"

class QApplication;
class QPalette;

/// The look of the program: distances, colours, fonts. Other files of the front end take them from here.
namespace vantry::style {

/// All distances are multiples of it.
inline constexpr int kUnit = 6;
inline constexpr int kRowHeight = 22;
inline constexpr int kRowStripe = 5;
inline constexpr int kRowFrame = 2;
inline constexpr int kCellMargin = 5;
inline constexpr int kFieldHeight = 28;
inline constexpr int kMenuIcon = 16;
inline constexpr int kToolIcon = 20;
inline constexpr int kRadius = 4;

enum class Scheme { Light, Dark };

/// Gives the program its style, palette and font; without a scheme, the system's.
void apply(QApplication& application, std::optional<Scheme> scheme = std::nullopt);

// Colours that the palette has no place for.
QColor accent();
/// Lines between things, and around them.
QColor hairline();
QColor outline();
/// The frame of a field whose text cannot be read.
QColor warning();
/// The dynamic property of such a field.
inline constexpr const char* kWrong = "wrong";
/// Text that is less important.
QColor quietText();
/// The accent as a background that texts stay readable on.
QColor tint();
/// The ground of bars and headings.
QColor barGround();
QColor headerGround();

/// A mixture of two colours; 0 is the first one, 1 the second one.
QColor blend(const QColor& from, const QColor& to, double part);

/// The ground of a row or a day that has this colour: a tint, on which the usual text can be read.
QColor rowTint(const QColor& colour);
/// The contrast of two colours, from 1 to 21.
double contrast(const QColor& a, const QColor& b);

/// A platform's colour: `own` where none was given.
QColor colour(Colour colour, const QColor& own);
/// The text colour, made lighter or darker where the contrast to the ground is too low.
QColor readable(const QColor& text, const QColor& ground);

QFont headingFont();
QFont captionFont();

/// Widths of a grid's columns. A twip grows with the font: the widths were chosen for letters of eight
/// points.
int pixels(int twips);
int twips(double pixels);

}  // namespace vantry::style
