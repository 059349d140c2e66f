#include "desktop/form_window.h"

#include <QAccessible>
#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QToolButton>
#include <QWindow>
#include <algorithm>

#include "desktop/accessible.h"
#include "desktop/icons.h"
#include "desktop/layout_builder.h"
#include "desktop/menus.h"
#include "desktop/qt_desktop.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/controls.h"
#include "platform/text.h"

namespace vantry {

/// A window with menus is a working window and starts large.
static constexpr QSize kWorkingSize{1280, 800};
/// A window that leads through steps has room for all of them from the first one on.
static constexpr QSize kStepsSize{1120, 700};
static constexpr int kNarrowest = 340;
/// Windows of one kind are placed side by side, so that each title can be seen.
static constexpr int kCascade = 4 * style::kUnit;
static constexpr QSize kUnseenScreen{1366, 768};
static constexpr double kShareOfScreen = 0.94;

static bool isBar(ControlKind kind) {
  return kind == ControlKind::ToolBar || kind == ControlKind::StatusBar;
}

static bool hasSteps(const Form& form) {
  return std::any_of(form.Controls().begin(), form.Controls().end(),
                     [](const Control* control) { return control->kind() == ControlKind::StepLine; });
}

FormWindow::FormWindow(Form& form, QtDesktop& desktop) : form_(form), desktop_(desktop) {
  setObjectName(qt(form.Name()));
  setWindowIcon(icon(form.Icon.empty() ? "vantry" : form.Icon));
  accessible::setRole(*this, form.Menus().empty() ? QAccessible::Dialog : QAccessible::Window);
  build();
  form.Shower = [this](Aspect aspect) { update(aspect); };
  update(Aspect::Caption);
}

FormWindow::~FormWindow() = default;

void FormWindow::release(bool controlsLive) {
  if (released_) return;
  released_ = true;
  if (controlsLive) {
    for (const auto& binder : binders_) binder->release();
    if (menus_) menus_->release();
    form_.Shower = nullptr;
  }
  byControl_.clear();
  byWidget_.clear();
  binders_.clear();
  menus_.reset();
}

// Building

/// Notes each control that the layout places.
static void collect(const LayoutNode& node, std::vector<const Control*>& placed) {
  if (node.kind == LayoutNode::Kind::Item) {
    placed.push_back(node.control);
  }
  for (const LayoutNode& child : node.children) collect(child, placed);
}

void FormWindow::build() {
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->setSpacing(0);
  menus_ = std::make_unique<Menus>(form_, *this, *this);
  if (menus_->bar()) {
    outer->setMenuBar(menus_->bar());
    menus_->bar()->setAccessibleName(tr("Menu"));
  }
  body_ = new QWidget(this);
  body_->setMinimumWidth(kNarrowest);
  buildControls(form_, body_);
  for (const Control* control : form_.Controls()) {
    if (control->kind() == ControlKind::ToolBar) outer->addWidget(&binderOf(*control)->widget());
  }
  middle_ = new QHBoxLayout;
  middle_->setSpacing(0);
  outer->addLayout(middle_, 1);
  for (const Control* control : form_.Controls()) {
    if (control->kind() == ControlKind::StatusBar) outer->addWidget(&binderOf(*control)->widget());
  }
  arrange();
  bindFrom(0);
}

/// Makes the widgets in the order of the controls, which becomes their tab order.
void FormWindow::buildControls(const Container& container, QWidget* parent) {
  std::vector<const Control*> placed;
  collect(container.Layout, placed);
  for (Control* control : container.Controls()) {
    const bool shows =
        isBar(control->kind()) || std::find(placed.begin(), placed.end(), control) != placed.end();
    if (!shows) continue;
    QWidget* widget = makeWidget(*control, parent);
    if (!widget || control->kind() != ControlKind::Frame) continue;
    auto& frame = *static_cast<Frame*>(control);
    if (waits(frame)) continue;
    filled_.insert(&frame);
    buildControls(frame, widget);
  }
}

/// Binders may come in the meantime: a frame that shows makes what stands in it.
void FormWindow::bindFrom(std::size_t first) {
  for (std::size_t i = first; i < binders_.size(); ++i) binders_[i]->bind();
}

bool FormWindow::waits(const Frame& frame) const {
  return frame.FillsWhenShown && !frame.Visible && !filled_.contains(&frame);
}

void FormWindow::fill(Frame& frame) {
  if (!filled_.insert(&frame).second) return;
  const std::size_t before = binders_.size();
  buildControls(frame, widgetOf(frame));
  arrangeFrame(frame);
  arrangeFrames(frame);
  bindFrom(before);
  nameControls();
}

QWidget* FormWindow::makeWidget(Control& control, QWidget* parent) {
  if (const Binder* binder = binderOf(control)) return &binder->widget();
  auto binder = makeBinder(control, *this, parent);
  if (!binder) return nullptr;
  QWidget* widget = &binder->widget();
  byControl_[&control] = binder.get();
  byWidget_[widget] = &control;
  binders_.push_back(std::move(binder));
  return widget;
}

QWidget* FormWindow::widgetOf(Control& control) const {
  if (isBar(control.kind())) return nullptr;
  const Binder* binder = binderOf(control);
  return binder ? &binder->widget() : nullptr;
}

static void arrangeContainer(QWidget& widget, const LayoutNode& node, int margin, const WidgetOf& widgetOf) {
  delete widget.layout();
  QLayout* layout = buildLayout(node, widgetOf);
  layout->setContentsMargins(margin, margin, margin, margin);
  widget.setLayout(layout);
}

/// List bars at the ends of the outermost row stand at the sides of the window, without margins.
static LayoutNode takeSides(LayoutNode node, std::vector<Control*>& left, std::vector<Control*>& right) {
  std::erase_if(node.children, [](const LayoutNode& child) {
    return child.kind == LayoutNode::Kind::Item && isBar(child.control->kind());
  });
  while (node.kind == LayoutNode::Kind::Column && node.children.size() == 1)
    node = LayoutNode(node.children.front());
  if (node.kind != LayoutNode::Kind::Row) return node;
  const auto isListBar = [](const LayoutNode& child) {
    return child.kind == LayoutNode::Kind::Item && child.control->kind() == ControlKind::ListBar;
  };
  auto& nodes = node.children;
  while (!nodes.empty() && isListBar(nodes.front())) {
    left.push_back(nodes.front().control);
    nodes.erase(nodes.begin());
  }
  while (!nodes.empty() && isListBar(nodes.back())) {
    right.insert(right.begin(), nodes.back().control);
    nodes.pop_back();
  }
  return node;
}

void FormWindow::arrange() {
  const WidgetOf find = [this](Control& control) { return widgetOf(control); };
  while (QLayoutItem* item = middle_->takeAt(0)) delete item;
  std::vector<Control*> left;
  std::vector<Control*> right;
  LayoutNode inner = takeSides(form_.Layout, left, right);
  // Controls that were not placed before are made now.
  buildControls(form_, body_);
  for (Control* bar : left) middle_->addWidget(widgetOf(*bar));
  middle_->addWidget(body_, 1);
  for (Control* bar : right) middle_->addWidget(widgetOf(*bar));
  const bool dialog = !menus_ || !menus_->bar();
  arrangeContainer(*body_, inner, (dialog ? 3 : 2) * style::kUnit, find);
  arrangeFrames(form_);
  layout()->setSizeConstraint(form_.Resizable ? QLayout::SetDefaultConstraint : QLayout::SetFixedSize);
  nameControls();
}

void FormWindow::arrangeFrame(const Frame& frame) {
  const WidgetOf find = [this](Control& control) { return widgetOf(control); };
  const int margin = frame.BorderStyle == 0 ? 0 : 2 * style::kUnit;
  arrangeContainer(binderOf(frame)->widget(), frame.Layout, margin, find);
}

void FormWindow::arrangeFrames(const Container& container) {
  for (const Control* control : container.Controls()) {
    if (control->kind() != ControlKind::Frame || !binderOf(*control)) continue;
    const auto& frame = static_cast<const Frame&>(*control);
    if (waits(frame)) continue;
    arrangeFrame(frame);
    arrangeFrames(frame);
  }
}

/// The names of controls that have neither a label nor a text of their own.
struct KindName {
  ControlKind kind;
  const char* name;  ///< empty: that of the frame or window around it
};
static constexpr KindName kKindNames[] = {{ControlKind::ListBar, QT_TR_NOOP("Views")},
                                          {ControlKind::ToolBar, QT_TR_NOOP("Tools")},
                                          {ControlKind::StatusBar, QT_TR_NOOP("Status")},
                                          {ControlKind::TabStrip, QT_TR_NOOP("Pages")},
                                          {ControlKind::Ruler, QT_TR_NOOP("Hours")},
                                          {ControlKind::MonthCalendar, QT_TR_NOOP("Month")},
                                          {ControlKind::YearCalendar, QT_TR_NOOP("Year")},
                                          {ControlKind::Grid, ""},
                                          {ControlKind::Tree, ""},
                                          {ControlKind::ListBox, ""},
                                          {ControlKind::TextBox, ""},
                                          {ControlKind::ComboBox, ""},
                                          {ControlKind::ScheduleBar, ""},
                                          {ControlKind::DateField, ""},
                                          {ControlKind::TimeField, ""},
                                          {ControlKind::SpinTimeField, ""},
                                          {ControlKind::NumberField, ""},
                                          {ControlKind::CurrencyField, ""},
                                          {ControlKind::MaskedField, ""}};

static constexpr const char* kNamedHere = "namedHere";

/// The heading above the control in its frame, else the frame's or the window's caption.
static QString nameAround(const Control& control) {
  for (const Container* around = &control.parent();;) {
    for (const Control* other : around->Controls()) {
      if (other->kind() == ControlKind::Label && static_cast<const Label*>(other)->Heading &&
          other->Visible && !static_cast<const Label*>(other)->Caption.get().empty())
        return withoutMnemonic(static_cast<const Label*>(other)->Caption.get());
    }
    const auto* frame = dynamic_cast<const Frame*>(around);
    if (!frame) {
      const std::string& caption = around->form().Caption;
      return caption.empty() ? QApplication::applicationDisplayName() : withoutMnemonic(caption);
    }
    if (!frame->Caption.get().empty()) return withoutMnemonic(frame->Caption.get());
    around = &static_cast<const Control*>(frame)->parent();
  }
}

void FormWindow::showCaption() {
  const std::string& caption = form_.Caption;
  setWindowTitle(caption.empty() ? QApplication::applicationDisplayName() : withoutMnemonic(caption));
  nameControls();
}

/// Names that come from around a control follow their source.
void FormWindow::nameControls() {
  for (const auto& binder : binders_) {
    const Control& control = binder->control();
    QWidget& widget = binder->widget();
    const auto* row = std::find_if(std::begin(kKindNames), std::end(kKindNames),
                                   [&](const KindName& each) { return each.kind == control.kind(); });
    if (row == std::end(kKindNames)) continue;
    if (widget.accessibleName().isEmpty() || widget.property(kNamedHere).toBool()) {
      widget.setProperty(kNamedHere, true);
      widget.setAccessibleName(*row->name ? tr(row->name) : nameAround(control));
    }
    // The line within a box with buttons is what is met.
    if (auto* line = widget.findChild<QLineEdit*>()) line->setAccessibleName(widget.accessibleName());
    // A button within a field is named by its tip.
    for (QToolButton* button : widget.findChildren<QToolButton*>()) {
      if (button->accessibleName().isEmpty()) button->setAccessibleName(button->toolTip());
    }
  }
}

// Showing

void FormWindow::update(Aspect aspect) {
  switch (aspect) {
    case Aspect::Caption:
      showCaption();
      break;
    case Aspect::Enabled:
      enabledChanged();
      break;
    case Aspect::State:
      showState();
      break;
    case Aspect::Structure: {
      const std::size_t before = binders_.size();
      arrange();
      bindFrom(before);
      break;
    }
    default:
      break;
  }
}

void FormWindow::showState() {
  Qt::WindowStates state = windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
  if (form_.WindowState == FormState::Minimized) state |= Qt::WindowMinimized;
  if (form_.WindowState == FormState::Maximized) state |= Qt::WindowMaximized;
  if (state != windowState()) setWindowState(state);
}

/// A busy window keeps its looks, which would flicker with every request; its input is dropped instead, and
/// what has come in during a noticeable wait is dropped as well.
void FormWindow::enabledChanged() {
  if (!form_.Enabled) return busy_.start();
  if (!busy_.isValid() || busy_.elapsed() < desktop_.noticeableWait) return desktop_.deliverScansLater();
  settling_ = true;
  QTimer::singleShot(0, this, [this] {
    QTimer::singleShot(0, this, [this] {
      settling_ = false;
      desktop_.deliverScansLater();
    });
  });
}

/// A screen that nobody sees has no size of its own that would mean anything.
static QRect roomOn(const QScreen& screen) {
  if (QGuiApplication::platformName() == "offscreen") return {QPoint(0, 0), kUnseenScreen};
  return screen.availableGeometry();
}

void FormWindow::place(bool modal) {
  setWindowModality(modal ? Qt::ApplicationModal : Qt::NonModal);
  Qt::WindowFlags flags = modal || !form_.Resizable ? Qt::Dialog : Qt::Window;
  flags |= Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
  if (!modal && form_.Resizable) flags |= Qt::WindowMinMaxButtonsHint;
  if ((windowFlags() & flags) != flags) setWindowFlags(flags);
  if (placed_) return;
  placed_ = true;
  const QRect room = roomOn(*screen());
  const bool working = menus_ && menus_->bar();
  const QSize least = working ? kWorkingSize : hasSteps(form_) ? kStepsSize : QSize();
  resize(sizeHint().expandedTo(least).boundedTo(room.size() * kShareOfScreen));
  const QWidget* front = QApplication::activeWindow();
  const QRect around = front && front != this ? front->frameGeometry() : room;
  move(around.center() - rect().center());
  // What is kept is the place of the content; a place to move to is one of the frame.
  if (form_.Resizable && desktop_.readGeometry(*this, form_) && !isMaximized())
    move(geometry().marginsAdded(frameMargins()).topLeft());
  if (isMaximized()) form_.WindowState.put(FormState::Maximized);
  findPlace();
}

QRect FormWindow::screenRoom() const {
  const QScreen* under = QGuiApplication::screenAt(frameGeometry().center());
  return roomOn(under ? *under : *QGuiApplication::primaryScreen());
}

/// Past the corner of the screen the search goes on at its top left; where all places are taken, windows may
/// cover each other.
void FormWindow::findPlace() {
  keepOnScreen();
  if (isMaximized()) return;
  bool wrapped = false;
  while (desktop_.isPlaceTaken(*this)) {
    const QPoint before = pos();
    move(before + QPoint(kCascade, kCascade));
    keepOnScreen();
    if (pos() != before) continue;
    if (wrapped) return;
    wrapped = true;
    move(screenRoom().topLeft());
  }
}

static QMargins frameOf(const QWidget& window) {
  const QRect outer = window.frameGeometry();
  const QRect inner = window.geometry();
  return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
          outer.bottom() - inner.bottom()};
}

/// What a window manager puts around the window. It tells so only some time after the window is shown; until
/// then the frames of the other windows say what it will be.
QMargins FormWindow::frameMargins() const {
  QMargins margins = frameOf(*this);
  if (!margins.isNull()) return margins;
  for (const QWidget* other : QApplication::topLevelWidgets()) {
    if (other->isVisible()) margins = margins | frameOf(*other);
  }
  return margins;
}

/// Screens change between two days, and a window may have been left at the edge of one.
void FormWindow::keepOnScreen() {
  if (isMaximized()) return;
  const QRect room = screenRoom();
  const QSize frame = size().grownBy(frameMargins()) - size();
  resize(size().boundedTo(room.size() - frame));
  const QRect place(frameGeometry().topLeft(), size() + frame);
  const QPoint kept(
      std::clamp(place.left(), room.left(), std::max(room.left(), room.right() + 1 - place.width())),
      std::clamp(place.top(), room.top(), std::max(room.top(), room.bottom() + 1 - place.height())));
  // The first window's frame is not known yet. A move is one of the frame and would push the window down by
  // its title bar each time that it opens.
  if (kept != place.topLeft()) move(kept);
}

void FormWindow::present(bool modal) {
  if (isVisible()) return bringToFront();
  flush();
  place(modal);
  showState();
  winId();  // makes the window, which then knows what it stands above
  QWidget* front = QApplication::activeWindow();
  if (modal && front && front != this) windowHandle()->setTransientParent(front->windowHandle());
  if (QWidget* first = firstFocus()) first->setFocus();
  setVisible(true);
  findPlace();  // now that its frame is known
  bringToFront();
}

/// The control that has the focus by the form's word, or the first one that can have it. Where that is a
/// button, it is the default one: Enter must not press another than the window proposes.
QWidget* FormWindow::firstFocus() const {
  if (const Control* active = form_.ActiveControl()) {
    if (const Binder* binder = binderOf(*active)) return &binder->widget();
  }
  for (const auto& binder : binders_) {
    const ControlKind kind = binder->control().kind();
    if (isBar(kind) || kind == ControlKind::ListBar || !binder->control().usable()) continue;
    if (!(binder->widget().focusPolicy() & Qt::TabFocus)) continue;
    QWidget* proposed = kind == ControlKind::Button ? buttonOf(&Button::Default) : nullptr;
    return proposed ? proposed : &binder->widget();
  }
  return nullptr;
}

QPushButton* FormWindow::buttonOf(bool Button::*which) const {
  for (const auto& binder : binders_) {
    if (binder->control().kind() != ControlKind::Button || !binder->control().usable()) continue;
    if (static_cast<const Button&>(binder->control()).*which)
      return static_cast<QPushButton*>(&binder->widget());
  }
  return nullptr;
}

void FormWindow::markDefault(const QWidget& focused) {
  const bool onButton = qobject_cast<const QPushButton*>(&focused) != nullptr;
  for (const auto& binder : binders_) {
    if (binder->control().kind() != ControlKind::Button) continue;
    auto& button = static_cast<QPushButton&>(binder->widget());
    button.setDefault(onButton ? &button == &focused : static_cast<const Button&>(binder->control()).Default);
  }
}

void FormWindow::bringToFront() {
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  activateWindow();
}

void FormWindow::flushLater() {
  if (flushComing_ || released_) return;
  flushComing_ = true;
  QMetaObject::invokeMethod(
      this, [this] { flush(); }, Qt::QueuedConnection);
}

void FormWindow::holdSize() {
  layout()->setEnabled(false);
  flushLater();
}

void FormWindow::flush() {
  flushComing_ = false;
  for (const auto& binder : binders_) binder->flush();
  if (layout()->isEnabled()) return;
  layout()->setEnabled(true);
  layout()->invalidate();
  layout()->activate();
}

int FormWindow::paintInterval() const {
  return desktop_.paintInterval;
}

void FormWindow::paintNow(bool atOnce) {
  if (!isVisible()) return;
  if (!atOnce && lastPaint_.isValid() && lastPaint_.elapsed() < paintInterval()) return;
  lastPaint_.start();
  flush();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  QCoreApplication::sendPostedEvents(this, QEvent::UpdateRequest);
}

// Finding

Binder* FormWindow::binderOf(const Control& control) const {
  const auto found = byControl_.find(&control);
  return found == byControl_.end() ? nullptr : found->second;
}

Control* FormWindow::controlOf(QWidget* widget) const {
  for (; widget && widget != this; widget = widget->parentWidget()) {
    const auto found = byWidget_.find(widget);
    if (found != byWidget_.end()) return found->second;
  }
  return nullptr;
}

QPoint FormWindow::takePopupPosition() {
  const QPoint position = popupPosition_.isNull() ? QCursor::pos() : popupPosition_;
  popupPosition_ = {};
  return position;
}

// The operator

void FormWindow::act(const std::function<void()>& event) {
  if (released_) return;
  if (Control* control = controlOf(QApplication::focusWidget())) binderOf(*control)->commit();
  const QPointer<FormWindow> alive(this);  // the event may be the window's last
  if (!released_) desktop_.dispatch(event);
  if (alive) popupPosition_ = {};
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();  // it goes when the form does
  if (!released_) act([this] { form_.closeByOperator(); });
}

void FormWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (released_ || event->type() != QEvent::WindowStateChange) return;
  form_.WindowState.put(isMinimized()   ? FormState::Minimized
                        : isMaximized() ? FormState::Maximized
                                        : FormState::Normal);
  if (isMinimized() || isMaximized()) return;
  // The window has its restored geometry only after this event.
  QMetaObject::invokeMethod(
      this, [this] { keepOnScreen(); }, Qt::QueuedConnection);
}

bool FormWindow::event(QEvent* event) {
  // Qt keeps the input away by itself, and telling each child of each open window costs more than the box.
  if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowUnblocked) return true;
  const bool done = QWidget::event(event);
  if (event->type() == QEvent::WindowActivate && !released_) desktop_.activated(form_);
  return done;
}

bool FormWindow::pressButton(bool Button::*which) {
  QPushButton* button = buttonOf(which);
  if (button) button->animateClick();
  return button != nullptr;
}

/// The help page of a window bears its name: that of "frmBooking" is "booking".
static std::string helpTopic(const Form& form) {
  const std::string name = lower(form.Name());
  return name.starts_with("frm") ? name.substr(3) : name;
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_F1) return desktop_.showHelp(helpTopic(form_));
  if (key == Qt::Key_Escape && pressButton(&Button::Cancel)) return;
  if (key != Qt::Key_Return && key != Qt::Key_Enter) return QWidget::keyPressEvent(event);
  // A button or tool with the focus is the one that Enter means.
  QWidget* focused = QApplication::focusWidget();
  if (qobject_cast<QPushButton*>(focused) || qobject_cast<QToolButton*>(focused))
    return static_cast<QAbstractButton*>(focused)->animateClick();
  if (!pressButton(&Button::Default)) QWidget::keyPressEvent(event);
}

}  // namespace vantry
