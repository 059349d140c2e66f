#include <QGroupBox>
#include <QLayout>

#include "desktop/binder.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/controls.h"

namespace vantry {

class FrameBinder : public Binder {
 public:
  FrameBinder(Frame& frame, Host& host, QGroupBox& widget)
      : Binder(frame, host, widget), frame_(frame), widget_(widget) {}

  void update(Aspect aspect) override {
    if (aspect == Aspect::Caption || aspect == Aspect::State) {
      widget_.setTitle(frame_.BorderStyle == 0 ? QString() : qt(frame_.Caption.get()));
      // A flat box has neither line nor distances; the style knows it by this.
      widget_.setFlat(frame_.BorderStyle == 0);
      if (widget_.layout()) giveDistances();
    }
    if (aspect == Aspect::Visible && frame_.Visible) host().fill(frame_);
    Binder::update(aspect);
  }

 private:
  /// A border that comes or goes while the window stands; before, the window gives them with the layout.
  void giveDistances() {
    const int margin = frame_.BorderStyle == 0 ? 0 : 2 * style::kUnit;
    widget_.layout()->setContentsMargins(margin, margin, margin, margin);
  }

  Frame& frame_;
  QGroupBox& widget_;
};

std::unique_ptr<Binder> bindFrame(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<FrameBinder>(static_cast<Frame&>(control), host, *new QGroupBox(parent));
}

}  // namespace vantry
