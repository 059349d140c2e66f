#include "desktop/date_popup.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScreen>
#include <QToolButton>
#include <algorithm>

#include "desktop/calendar_widget.h"
#include "desktop/icons.h"
#include "desktop/style.h"
#include "platform/clock.h"

namespace vantry {

static QToolButton* makeStep(const char* picture, const QString& name, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setIcon(icon(picture));
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::NoFocus);
  button->setAccessibleName(name);
  button->setToolTip(name);
  return button;
}

DatePopup::DatePopup(const Date& shown, QWidget* field)
    : QFrame(field, Qt::Popup),
      calendar_(new CalendarWidget(CalendarWidget::Span::Small, this)),
      month_(new QLabel(this)) {
  setAttribute(Qt::WA_DeleteOnClose);
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);
  auto* previous = makeStep("chevron-left", tr("Previous month"), this);
  auto* next = makeStep("chevron-right", tr("Next month"), this);
  auto* today = new QPushButton(tr("&Today"), this);
  today->setAutoDefault(false);
  month_->setAlignment(Qt::AlignCenter);
  month_->setFont(style::captionFont());
  auto* head = new QHBoxLayout;
  head->addWidget(previous);
  head->addWidget(month_, 1);
  head->addWidget(next);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(style::kUnit, style::kUnit, style::kUnit, style::kUnit);
  layout->setSpacing(style::kUnit);
  layout->addLayout(head);
  layout->addWidget(calendar_);
  layout->addWidget(today);
  connect(previous, &QToolButton::clicked, this, [this] { show(addMonths(calendar_->chosen(), -1)); });
  connect(next, &QToolButton::clicked, this, [this] { show(addMonths(calendar_->chosen(), 1)); });
  connect(today, &QPushButton::clicked, this, [this] { choose(SystemClock().now().date); });
  calendar_->onAction = [this](CalendarWidget::Action action, const Date& day) {
    action == CalendarWidget::Action::Move ? show(day) : choose(day);
  };
  show(shown);
}

void DatePopup::show(const Date& day) {
  calendar_->setChosen(day);
  month_->setText(QStringLiteral("%1 %2").arg(QLocale::c().standaloneMonthName(day.month)).arg(day.year));
}

void DatePopup::openBelow(const QWidget& field) {
  adjustSize();
  const QRect room = field.screen()->availableGeometry();
  QPoint place = field.mapToGlobal(QPoint(0, field.height() + 2));
  if (place.y() + height() > room.bottom()) place = field.mapToGlobal(QPoint(0, -height() - 2));
  place.setX(std::clamp(place.x(), room.left(), std::max(room.left(), room.right() - width())));
  move(place);
  setVisible(true);
  calendar_->setFocus();
}

void DatePopup::choose(const Date& day) {
  const auto listener = onChosen;
  close();
  if (listener) listener(day);
}

void DatePopup::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    close();
  } else {
    QFrame::keyPressEvent(event);
  }
}

}  // namespace vantry
