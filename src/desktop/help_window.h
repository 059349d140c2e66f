#pragma once

#include <QWidget>

class QTextBrowser;

namespace vantry {

/// The help pages, which are kept in the program.
class HelpWindow : public QWidget {
 public:
  /// Beside all windows, or of a dialog, which lets no other window be used while it waits.
  explicit HelpWindow(QWidget* dialog = nullptr);
  /// Opens the page of that topic, or the first page where there is none.
  void open(const QString& topic);

 private:
  QTextBrowser* pages_;
};

}  // namespace vantry
