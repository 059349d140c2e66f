#pragma once

#include <QWidget>
#include <functional>

#include "platform/schedule_bar.h"

namespace vantry {

/// Both have the same margins at their sides, so that a place has the same x in both.
class TimeScaleWidget : public QWidget {
 public:
  TimeScaleWidget(const TimeScale& scale, QWidget* parent);

 protected:
  /// The pixel of a place on the scale, and the place at a pixel.
  double xOf(double place) const;
  double placeAt(double x) const;
  /// The stretch between start and finish: one piece, or two where it runs past the scale's end.
  QList<QRectF> stretch(double top, double height) const;
  const TimeScale& scale() const { return scale_; }

 private:
  const TimeScale& scale_;
};

class RulerWidget : public TimeScaleWidget {
 public:
  RulerWidget(const Ruler& ruler, QWidget* parent);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString hourText(int hour, double width) const;
  const Ruler& ruler_;
};

/// The bar: drawn, moved and stretched by the mouse, moved by the arrow keys; Shift moves its end alone, Ctrl
/// its start.
class ScheduleBarWidget : public TimeScaleWidget {
 public:
  ScheduleBarWidget(const ScheduleBar& bar, QWidget* parent);
  enum class Part { Whole, Start, Finish };
  std::function<void(double)> onPress;
  std::function<void(double)> onDrag;
  std::function<void()> onRelease;
  std::function<void(Part, int)> onMove;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void showCursor(double place);
  const ScheduleBar& bar_;
};

}  // namespace vantry
