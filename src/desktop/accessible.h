#pragma once

class QWidget;
class QString;

namespace vantry::accessible {

/// Makes screen readers find what the program's own widgets show. Called once, before any window is made.
void install();

/// What a widget is, a number of QAccessible::Role; before anyone has asked for it.
void setRole(QWidget& widget, int role);
/// What a widget shows as its value. A text that is only read says it behind its name.
void setValue(QWidget& widget, const QString& value);

}  // namespace vantry::accessible
