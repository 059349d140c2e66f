#pragma once

#include <QFrame>
#include <functional>

#include "platform/datetime.h"

class QLabel;

namespace vantry {

class CalendarWidget;

/// The calendar that opens below a date's field. It frees itself when it closes.
class DatePopup : public QFrame {
 public:
  DatePopup(const Date& shown, QWidget* field);
  /// The day that the operator chose; called when the popup has closed.
  std::function<void(const Date&)> onChosen;
  void openBelow(const QWidget& field);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void show(const Date& day);
  void choose(const Date& day);
  CalendarWidget* calendar_;
  QLabel* month_;
};

}  // namespace vantry
