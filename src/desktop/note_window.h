#pragma once

#include <QWidget>

namespace vantry {

/// A small window that says what takes a moment, while nothing else can be shown.
class NoteWindow : public QWidget {
 public:
  /// Stands, fully drawn, when it returns.
  explicit NoteWindow(const QString& text);
};

}  // namespace vantry
