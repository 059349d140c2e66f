#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <optional>

#include "platform/element.h"

class QApplication;
class QPalette;

/// The one look of the program: distances, colours, fonts. Nothing else in the front end names a colour or a
/// number of pixels of its own.
namespace vantry::style {

/// All distances are multiples of it.
inline constexpr int kUnit = 6;
inline constexpr int kRowHeight = 22;
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
/// Text that stands back.
QColor quietText();
/// The accent as a background that texts stay readable on.
QColor tint();
/// The ground of bars and headings.
QColor barGround();
QColor headerGround();

/// What lies between two colours; 0 is the first one, 1 the second one.
QColor blend(const QColor& from, const QColor& to, double part);

/// A platform's colour: `own` where none was given.
QColor colour(Colour colour, const QColor& own);
/// The text colour, made lighter or darker where it could not be read on that ground.
QColor readable(const QColor& text, const QColor& ground);

QFont headingFont();
QFont captionFont();

/// Widths of a grid's columns. A twip grows with the font: the widths were chosen for letters of eight
/// points.
int pixels(int twips);
int twips(double pixels);

}  // namespace vantry::style
