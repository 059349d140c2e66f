#include <QAction>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QVBoxLayout>
#include <cmath>

#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/step_box.h"
#include "desktop/style.h"
#include "platform/schedule_bar.h"
#include "platform/typed_moments.h"

namespace vantry {

/// Rows that the list of times shows at once.
static constexpr int kListRows = 12;

class SpinTimeBinder : public TypedBinder {
 public:
  SpinTimeBinder(SpinTimeField& field, Host& host, StepBox& box)
      : TypedBinder(field, host, box, box.line()), field_(field), box_(box) {
    open_ = box.line().addAction(icon("chevron-down"), QLineEdit::TrailingPosition);
    open_->setToolTip(QObject::tr("Times"));
    connect(open_, &QAction::triggered, this, [this] { openList(); });
    box.onStep = [this](int steps) {
      if (settle()) act([this, steps] { stepField(steps); });
    };
    box.onLeave = [this] { commit(); };
    box.onOpen = [this] {
      if (settle()) act([this] { field_.openDialog(); });
    };
  }
  ~SpinTimeBinder() override {
    box_.onStep = nullptr;
    box_.onLeave = box_.onOpen = nullptr;
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::State) box_.setReadOnly(field_.Locked);
    if (aspect == Aspect::Structure) showDropDown();
    TypedBinder::update(aspect);
  }

 protected:
  QString shown() const override { return field_.isEmpty() ? unreadable() : shortTime(*field_.Value.get()); }
  QString unreadable() const override { return field_.isEmpty() ? qt(field_.Unreadable()) : QString(); }
  bool isWhole(const QString& text) const override {
    const auto time = readTime(utf8(text));
    return time && shortTime(*time) == text;
  }
  void enter(const std::string& text) override { field_.typeTime(text); }
  bool isLocked() const override { return field_.Locked; }

 private:
  void showDropDown() {
    open_->setVisible(field_.DropDown);
    box_.fitTo(shortTime({22, 58, 0}) + (field_.DropDown ? "00000" : "0"));
  }
  void stepField(int steps) {
    const QPointer<Binder> alive(this);
    for (int i = 0; i < std::abs(steps) && alive; ++i) field_.spin(steps > 0 ? 1 : -1);
  }

  void openList() {
    if (!field_.usable() || field_.Locked) return;
    auto* popup = new QFrame(&box_, Qt::Popup);
    popup->setAttribute(Qt::WA_DeleteOnClose);
    popup->setFrameShape(QFrame::StyledPanel);
    auto* list = new QListWidget(popup);
    for (const std::string& choice : field_.Choices) list->addItem(qt(choice));
    auto* layout = new QVBoxLayout(popup);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(list);
    connect(list, &QListWidget::itemClicked, this,
            [this, popup, list] { choose(*popup, list->currentRow()); });
    connect(list, &QListWidget::itemActivated, this,
            [this, popup, list] { choose(*popup, list->currentRow()); });
    popup->resize(std::max(box_.width(), list->sizeHintForColumn(0) + 6 * style::kUnit),
                  list->sizeHintForRow(0) * kListRows + style::kUnit);
    popup->move(box_.mapToGlobal(QPoint(0, box_.height() + 2)));
    popup->show();
    list->setFocus();
  }
  void choose(QWidget& popup, int row) {
    popup.close();
    act([this, row] { field_.choose(row); });
  }

  SpinTimeField& field_;
  StepBox& box_;
  QAction* open_;
};

std::unique_ptr<Binder> bindSpinTimeField(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<SpinTimeBinder>(static_cast<SpinTimeField&>(control), host, *new StepBox(parent));
}

}  // namespace vantry
