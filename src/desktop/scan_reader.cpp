#include "desktop/scan_reader.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <algorithm>

#include "desktop/binder.h"
#include "desktop/qtext.h"

namespace vantry {
namespace {

// Milliseconds. A quick typist needs some 60 from key to key, a slow reader 20.
constexpr int kLongestGap = 50;
constexpr quint64 kWhole = 100;
constexpr quint64 kEach = 20;
/// A shorter one may be typed by two fingers at once.
constexpr std::size_t kFewest = 3;

bool isCharacter(const QKeyEvent& event) {
  const auto held = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  return held == Qt::NoModifier && event.text().size() == 1 && event.text().front().isPrint();
}

/// Keys that a reader presses within its burst.
bool isShift(const QKeyEvent& event) {
  return event.key() == Qt::Key_Shift || event.key() == Qt::Key_CapsLock;
}

}  // namespace

ScanReader::ScanReader(Outside outside) : outside_(std::move(outside)) {
  wait_.setSingleShot(true);
  wait_.setInterval(kLongestGap);
  connect(&wait_, &QTimer::timeout, this, [this] {
    // Keys may have come meanwhile that nobody could handle yet; they come first.
    QTimer::singleShot(0, this, [this] {
      if (!wait_.isActive()) typeAfterAll();
    });
  });
}

bool ScanReader::press(QWidget& target, const QKeyEvent& event, bool dropped) {
  if (typing_) return false;
  if (isShift(event)) return dropped;
  // Without a time of its own a key cannot belong to a burst.
  const bool timed = event.timestamp() != 0 && !event.isAutoRepeat();
  const bool within = !burst_.empty() && event.timestamp() - last_ <= kLongestGap;
  if (!timed || !within) typeAfterAll();
  if (timed && isCharacter(event)) return addCharacter(target, event, dropped);
  if (timed && within && isEnter(event)) return endWithEnter(target, event, dropped);
  typeAfterAll();
  // Some readers press Enter twice. The second one belongs to the scan as well.
  if (timed && isEnter(event) && scanEnd_ != 0 && event.timestamp() - scanEnd_ <= kLongestGap) return true;
  return dropped;
}

bool ScanReader::addCharacter(QWidget& target, const QKeyEvent& event, bool dropped) {
  if (burst_.empty() && event.key() == Qt::Key_Space) return dropped;  // no barcode begins with a blank
  if (burst_.empty()) first_ = event.timestamp();
  last_ = event.timestamp();
  const bool passes = !dropped && outside_.isTyped(target);
  burst_.push_back({std::unique_ptr<QKeyEvent>(event.clone()), passes, dropped});
  wait_.start();
  return !passes;
}

bool ScanReader::isScan(quint64 end) const {
  return burst_.size() >= kFewest && end - first_ <= std::max(kWhole, kEach * burst_.size());
}

bool ScanReader::endWithEnter(QWidget& target, const QKeyEvent& event, bool dropped) {
  if (!isScan(event.timestamp())) {
    typeAfterAll();
    return dropped;
  }
  wait_.stop();
  scanEnd_ = event.timestamp();
  const auto burst = std::exchange(burst_, {});
  const bool wasTyped = std::all_of(burst.begin(), burst.end(), [](const Held& key) { return key.passed; });
  if (wasTyped && !dropped) return !outside_.answersEnter(target);
  QString text;
  for (const Held& key : burst) text += key.event->text();
  outside_.scanned(utf8(text));
  return true;
}

void ScanReader::typeAfterAll() {
  wait_.stop();
  const auto burst = std::exchange(burst_, {});
  typing_ = true;
  for (const Held& key : burst) {
    QWidget* popup = QApplication::activePopupWidget();
    QWidget* target =
        popup ? (popup->focusWidget() ? popup->focusWidget() : popup) : QApplication::focusWidget();
    if (target && !key.passed && !key.dropped) QApplication::sendEvent(target, key.event.get());
  }
  typing_ = false;
}

}  // namespace vantry
