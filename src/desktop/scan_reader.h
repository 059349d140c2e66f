#pragma once

#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QKeyEvent;
class QWidget;

namespace vantry {

/// Tells the barcode reader from the operator's hand. A reader types as well, but far faster than anyone
/// can: a burst of characters that ends with Enter is a scan, and none of its keys has another effect.
///
/// Characters that may begin a scan wait until the burst is over. If it was none, they are typed after all.
/// In a field where text is typed they do not wait. Times are those of the key events.
class ScanReader : public QObject {
 public:
  struct Outside {
    /// The widget takes characters as text, and a scan as well as the operator's typing.
    std::function<bool(QWidget&)> isTyped;
    /// The widget answers an Enter behind such a text by itself.
    std::function<bool(QWidget&)> answersEnter;
    std::function<void(std::string)> scanned;
  };
  explicit ScanReader(Outside outside);

  /// Sees each key press first. True: it goes no further. `dropped` keys belong to a window that takes no
  /// input now; a scan among them counts all the same.
  bool press(QWidget& target, const QKeyEvent& event, bool dropped);

 private:
  struct Held {
    std::unique_ptr<QKeyEvent> event;
    bool passed = false;   ///< the widget has had it already
    bool dropped = false;  ///< nobody is to have it
  };
  bool addCharacter(QWidget& target, const QKeyEvent& event, bool dropped);
  bool endWithEnter(QWidget& target, const QKeyEvent& event, bool dropped);
  bool isScan(quint64 end) const;
  void typeAfterAll();

  Outside outside_;
  std::vector<Held> burst_;
  quint64 first_ = 0;
  quint64 last_ = 0;
  quint64 scanEnd_ = 0;  ///< time of the last scan's Enter
  QTimer wait_;
  bool typing_ = false;
};

}  // namespace vantry
