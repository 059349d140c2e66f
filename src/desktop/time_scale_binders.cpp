#include "desktop/accessible.h"
#include "desktop/binder.h"
#include "desktop/qtext.h"
#include "desktop/time_scale_widgets.h"

namespace vantry {

static QString span(const TimeScale& scale, int from, int to) {
  return QObject::tr("%1 to %2").arg(shortTime(scale.timeAt(from)), shortTime(scale.timeAt(to)));
}

class RulerBinder : public Binder {
 public:
  RulerBinder(Ruler& ruler, Host& host, RulerWidget& widget) : Binder(ruler, host, widget), ruler_(ruler) {}
  void update(Aspect aspect) override {
    if (aspect == Aspect::Value || aspect == Aspect::Structure) {
      widget().update();
      accessible::setValue(widget(), span(ruler_, 0, ruler_.Slots));
    }
    Binder::update(aspect);
  }

 private:
  Ruler& ruler_;
};

class ScheduleBarBinder : public Binder {
 public:
  ScheduleBarBinder(ScheduleBar& bar, Host& host, ScheduleBarWidget& widget)
      : Binder(bar, host, widget), bar_(bar), widget_(widget) {
    widget.onPress = [this](double place) { act([this, place] { bar_.press(place); }); };
    widget.onDrag = [this](double place) { act([this, place] { bar_.dragTo(place); }); };
    widget.onRelease = [this] { act([this] { bar_.release(); }); };
    widget.onMove = [this](ScheduleBarWidget::Part part, int slots) {
      act([this, part, slots] { move(part, slots); });
    };
  }
  ~ScheduleBarBinder() override {
    widget_.onPress = widget_.onDrag = nullptr;
    widget_.onRelease = nullptr;
    widget_.onMove = nullptr;
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::Value || aspect == Aspect::Structure || aspect == Aspect::State) {
      widget_.update();
      accessible::setValue(widget_, span(bar_, bar_.Start, bar_.Finish));
    }
    // The tip tells how the bar is used, until a window has one of its own.
    if (aspect == Aspect::ToolTip && bar_.ToolTipText.get().empty()) return;
    Binder::update(aspect);
  }

 private:
  void move(ScheduleBarWidget::Part part, int slots) {
    using Part = ScheduleBarWidget::Part;
    if (part == Part::Whole) bar_.moveBy(slots);
    if (part == Part::Start) bar_.moveStartBy(slots);
    if (part == Part::Finish) bar_.moveFinishBy(slots);
  }
  ScheduleBar& bar_;
  ScheduleBarWidget& widget_;
};

std::unique_ptr<Binder> bindRuler(Control& control, Host& host, QWidget* parent) {
  auto& ruler = static_cast<Ruler&>(control);
  return std::make_unique<RulerBinder>(ruler, host, *new RulerWidget(ruler, parent));
}

std::unique_ptr<Binder> bindScheduleBar(Control& control, Host& host, QWidget* parent) {
  auto& bar = static_cast<ScheduleBar&>(control);
  return std::make_unique<ScheduleBarBinder>(bar, host, *new ScheduleBarWidget(bar, parent));
}

}  // namespace vantry
