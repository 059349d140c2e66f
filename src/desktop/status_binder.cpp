#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QTimer>
#include <array>
#include <utility>

#include "desktop/binder.h"
#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/bars.h"
#include "platform/clock.h"
#include "platform/form.h"
#include "platform/windows.h"

namespace vantry {

static constexpr int kSecond = 1000;
static constexpr int kFreePanel = 2;

class StatusWidget : public QWidget {
 public:
  explicit StatusWidget(QWidget* parent) : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(2 * style::kUnit, 0, 2 * style::kUnit, 0);
    layout->setSpacing(4 * style::kUnit);
    for (int i = 0; i < StatusBar::kPanels; ++i) {
      auto* label = new QLabel(this);
      label->setTextFormat(Qt::PlainText);
      label->setMinimumWidth(1);  // a long text does not hold the window wide
      label->setObjectName(QStringLiteral("panel(%1)").arg(i + 1));
      if (i + 1 == kFreePanel) label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
      layout->addWidget(label, i + 1 == kFreePanel ? 1 : 0);
      labels_[static_cast<std::size_t>(i)] = label;
    }
    setFixedHeight(fontMetrics().height() + 2 * style::kUnit);
  }
  QLabel& label(int panel) const { return *labels_.at(static_cast<std::size_t>(panel - 1)); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), style::barGround());
    painter.setPen(style::hairline());
    painter.drawLine(rect().topLeft(), rect().topRight());
    // A quiet line between the panels that say something.
    bool first = true;
    for (const QLabel* label : labels_) {
      if (!label->isVisible()) continue;
      const int x = label->x() - 2 * style::kUnit;
      if (!std::exchange(first, false)) painter.drawLine(x, style::kUnit, x, height() - style::kUnit);
    }
  }

 private:
  std::array<QLabel*, StatusBar::kPanels> labels_{};
};

class StatusBinder : public Binder {
 public:
  StatusBinder(StatusBar& bar, Host& host, StatusWidget& widget)
      : Binder(bar, host, widget), bar_(bar), widget_(widget) {
    later_.setSingleShot(true);
    connect(&later_, &QTimer::timeout, this, [this] { showTexts(); });
    connect(&clock_, &QTimer::timeout, this, [this] { showClock(); });
    for (int i = 1; i <= StatusBar::kPanels; ++i) listen(i);
    showTexts();
    clock_.start(kSecond);
  }

  /// What waits for its turn is shown when the window is painted.
  void flush() override {
    if (later_.isActive()) showTexts();
  }

  void release() override {
    for (int i = 1; i <= StatusBar::kPanels; ++i) bar_.Panels(i).Shower = nullptr;
    Binder::release();
  }

 private:
  void listen(int number) {
    Panel& panel = bar_.Panels(number);
    if (panel.style == Panel::Style::Picture && !panel.Picture.empty())
      widget_.label(number).setPixmap(icon(panel.Picture).pixmap(style::kMenuIcon, style::kMenuIcon));
    panel.Shower = [this](Aspect) { textChanged(); };
  }

  /// The text of each record of a long reply comes here; it is shown as often as it can be seen.
  void textChanged() {
    if (!lastPaint_.isValid() || lastPaint_.elapsed() >= host().paintInterval()) return showTexts();
    if (!later_.isActive()) later_.start(host().paintInterval());
  }

  void showTexts() {
    lastPaint_.start();
    later_.stop();
    for (int i = 1; i <= StatusBar::kPanels; ++i) {
      const Panel& panel = bar_.Panels(i);
      QLabel& label = widget_.label(i);
      if (panel.style == Panel::Style::Text) label.setText(qt(panel.Text.get()));
      const bool empty = panel.style == Panel::Style::Text && panel.Text.get().empty();
      label.setVisible(panel.Visible && (i == kFreePanel || !empty));
    }
    showClock();
  }

  void showClock() {
    const DateTime now = SystemClock().now();
    const std::string date = formatDate(now.date, bar_.form().windows().shortDateFormat());
    const QString time = shortTime(now.time);
    for (int i = 1; i <= StatusBar::kPanels; ++i) {
      const auto kind = bar_.Panels(i).style;
      if (kind == Panel::Style::Date) widget_.label(i).setText(qt(date));
      if (kind == Panel::Style::Time) widget_.label(i).setText(time);
    }
  }

  StatusBar& bar_;
  StatusWidget& widget_;
  QTimer later_;
  QTimer clock_;
  QElapsedTimer lastPaint_;
};

std::unique_ptr<Binder> bindStatusBar(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<StatusBinder>(static_cast<StatusBar&>(control), host, *new StatusWidget(parent));
}

}  // namespace vantry
