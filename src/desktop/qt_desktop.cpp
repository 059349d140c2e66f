#include "desktop/qt_desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QEventLoop>
#include <QImageReader>
#include <QKeyEvent>
#include <QLocale>
#include <QSessionManager>
#include <QSettings>
#include <QTimer>
#include <QUrl>
#include <algorithm>

#include "desktop/boxes.h"
#include "desktop/choosers.h"
#include "desktop/form_window.h"
#include "desktop/help_window.h"
#include "desktop/menus.h"
#include "desktop/qt_printer.h"
#include "desktop/qtext.h"
#include "desktop/scan_reader.h"
#include "desktop/sound.h"
#include "desktop/style.h"
#include "desktop/text_widths.h"
#include "platform/controls.h"
#include "platform/windows.h"

namespace vantry {

static constexpr QSize kPictureSize{1366, 768};
/// A box that no window is to answer any more.
static constexpr int kFailure = 1;

QtDesktop::QtDesktop(std::string geometryFile) : geometryFile_(std::move(geometryFile)) {
  // The program ends when its main window says so, not when a dialog was the only window for a moment.
  QApplication::setQuitOnLastWindowClosed(false);
  reader_ = std::make_unique<ScanReader>(
      ScanReader::Outside{[this](QWidget& widget) { return takesTyping(widget); },
                          [this](QWidget& widget) { return answersEnter(widget); },
                          [this](std::string text) { scanned(std::move(text)); }});
  qApp->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusChanged(now); });
}

QtDesktop::~QtDesktop() {
  setPointer(Pointer::Default);
  for (const auto& [form, window] : windows_) {
    window->release(true);
    delete window;
  }
}

// Events and their end

int QtDesktop::run(const std::function<bool()>& start) {
  bool started = false;
  dispatch([&] { started = start(); });
  if (started && !ended_) QApplication::exec();
  ended_ = true;
  return failed_ ? kFailure : 0;
}

void QtDesktop::endWithSession(Form& form) {
  connect(qApp, &QGuiApplication::commitDataRequest, this, [this, &form](QSessionManager& manager) {
    if (!manager.allowsInteraction()) return;
    dispatch([&form] { form.Form_Terminate(); });
    if (!ended_) manager.cancel();  // a window that still holds work refused
    manager.release();
  });
}

void QtDesktop::dispatch(const std::function<void()>& event) {
  if (ended_) return;
  ++dispatching_;
  try {
    event();
  } catch (const ProgramEnd&) {
    leave();
  } catch (const std::exception& error) {
    failed_ = true;
    setPointer(Pointer::Default);
    runBox({Box::Kind::Critical, std::string("The program cannot go on:\n\n") + error.what(), {}});
    leave();
  }
  --dispatching_;
  if (!toSweep_.empty() && dispatching_ == 0) QTimer::singleShot(0, this, [this] { sweep(); });
}

void QtDesktop::leave() {
  ended_ = true;
  for (const auto& [form, window] : windows_) writeGeometry(*window, *form);
  setPointer(Pointer::Default);
  QApplication::exit(failed_ ? kFailure : 0);
}

void QtDesktop::leaveIfEnded() const {
  if (ended_) throw ProgramEnd{};
}

void QtDesktop::endProgram() {
  throw ProgramEnd{};
}

void QtDesktop::sweepLater(Windows& windows) {
  toSweep_.insert(&windows);
  if (dispatching_ == 0) QTimer::singleShot(0, this, [this] { sweep(); });
}

/// Only between events: while a modal window or a box waits, the event that opened it is still under way.
void QtDesktop::sweep() {
  if (dispatching_ > 0 || ended_) return;
  const auto windows = std::move(toSweep_);
  toSweep_.clear();
  for (Windows* each : windows) each->sweep();
}

// Windows

FormWindow* QtDesktop::windowOf(const Form& form) const {
  const auto found = windows_.find(&form);
  return found == windows_.end() ? nullptr : found->second;
}

FormWindow& QtDesktop::prepare(Form& form) {
  FormWindow*& window = windows_[&form];
  if (!window) window = new FormWindow(form, *this);
  return *window;
}

void QtDesktop::show(Form& form) {
  leaveIfEnded();
  prepare(form).present(false);
  activated(form);
  leaveIfEnded();
}

void QtDesktop::runModal(Form& form) {
  leaveIfEnded();
  prepare(form).present(true);
  activated(form);
  if (form.isShown()) {
    QEventLoop loop;
    loops_[&form] = &loop;
    setPointer(Pointer::Default);
    loop.exec();
    loops_.erase(&form);
  }
  leaveIfEnded();
}

void QtDesktop::hide(Form& form) {
  if (front_ == &form) front_ = nullptr;
  if (const auto loop = loops_.find(&form); loop != loops_.end()) loop->second->quit();
  FormWindow* window = windowOf(form);
  if (window) writeGeometry(*window, form);
  if (!form.isLoaded()) {
    dropWindow(form, true);
    sweepLater(form.windows());
  } else if (window) {
    window->hide();
  }
}

void QtDesktop::dropWindow(Form& form, bool controlsLive) {
  FormWindow* window = windowOf(form);
  if (!window) return;
  windows_.erase(&form);
  window->release(controlsLive);
  window->hide();
  window->deleteLater();  // it may stand in an event of its own
}

void QtDesktop::forget(Form& form) {
  if (front_ == &form) front_ = nullptr;
  std::erase_if(timers_, [&](const auto& entry) { return entry.second.form == &form; });
  if (const auto loop = loops_.find(&form); loop != loops_.end()) loop->second->quit();
  dropWindow(form, false);
}

void QtDesktop::activate(Form& form) {
  FormWindow* window = windowOf(form);
  if (!window || !window->isVisible()) return;
  window->bringToFront();
  activated(form);
  leaveIfEnded();
}

void QtDesktop::activated(Form& form) {
  if (front_ == &form || !form.isShown()) return;
  front_ = &form;
  dispatch([&form] { form.Form_Activate(); });
  deliverScansLater();
}

void QtDesktop::repaint(Form& form, bool atOnce) {
  if (FormWindow* window = windowOf(form)) window->paintNow(atOnce);
}

void QtDesktop::flushAll() {
  for (const auto& [form, window] : windows_) window->flush();
}

void QtDesktop::handleEvents() {
  ++dispatching_;
  ++drawing_;
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  flushAll();
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  --drawing_;
  --dispatching_;
  deliverScansLater();
  leaveIfEnded();
}

void QtDesktop::focus(Control& control) {
  const FormWindow* window = windowOf(control.form());
  if (Binder* binder = window ? window->binderOf(control) : nullptr)
    binder->widget().setFocus(Qt::OtherFocusReason);
}

void QtDesktop::focusChanged(QWidget* now) {
  if (!now) return;  // another program, or a box of this one
  FormWindow* window = ownerOf(*now);
  if (!window) return;
  window->markDefault(*now);
  Form& form = window->form();
  if (Control* control = window->controlOf(now)) dispatch([&form, control] { form.focusMoved(control); });
}

void QtDesktop::setPointer(Pointer pointer) {
  const bool hourglass = pointer == Pointer::Hourglass;
  if (hourglass == hourglass_) return;
  hourglass_ = hourglass;
  if (hourglass) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

/// The widget that keys go to first.
static QWidget* typingTarget() {
  QWidget* popup = QApplication::activePopupWidget();
  if (popup) return popup->focusWidget() ? popup->focusWidget() : popup;
  QWidget* focused = QApplication::focusWidget();
  return focused ? focused : QApplication::activeWindow();
}

static bool isInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

FormWindow* QtDesktop::ownerOf(const QObject& watched) const {
  const QObject* top = &watched;
  if (watched.isWidgetType()) {
    top = static_cast<const QWidget&>(watched).window();
  } else {
    // The keys of a menu's entry go to its action, which lies in the menus of its window.
    while (top->parent()) top = top->parent();
  }
  const auto found = std::find_if(windows_.begin(), windows_.end(),
                                  [top](const auto& entry) { return entry.second == top; });
  return found == windows_.end() ? nullptr : found->second;
}

bool QtDesktop::isBlocked(const QObject& watched) const {
  const FormWindow* window = ownerOf(watched);
  return window && window->isBlocked();
}

bool QtDesktop::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Hide && !scans_.empty()) deliverScansLater();  // a menu or a list has closed
  const bool reaches = watched->isWidgetType() || event->type() == QEvent::Shortcut;
  if (!reaches || !isInput(event->type())) return false;
  const bool dropped = isBlocked(*watched);
  if (event->type() != QEvent::KeyPress) return dropped;
  auto& widget = static_cast<QWidget&>(*watched);
  // What a widget leaves alone goes to its parents, and comes by here again.
  if (&widget != typingTarget()) return dropped;
  if (!reader_->press(widget, static_cast<const QKeyEvent&>(*event), dropped)) return false;
  event->accept();
  return true;
}

// Scans

/// Text fields do, but where the window has another place for scans: there a scan must leave no trace.
bool QtDesktop::takesTyping(QWidget& widget) const {
  const bool isText = widget.inherits("QLineEdit") || widget.inherits("QPlainTextEdit") ||
                      widget.inherits("QAbstractSpinBox");
  if (!isText || widget.property("readOnly").toBool()) return false;
  const FormWindow* window = ownerOf(widget);
  if (!window || !window->form().takesScans()) return true;
  return !window->form().ScanReceived && window->controlOf(&widget) == window->form().scanField();
}

/// An input box waits for a text, which may be read as well as typed. In a window, only a field that answers
/// Enter gets it; the button behind was not meant.
bool QtDesktop::answersEnter(QWidget& widget) const {
  const FormWindow* window = ownerOf(widget);
  if (!window || widget.inherits("QPlainTextEdit")) return true;
  const Control* control = window->controlOf(&widget);
  if (!control || control->kind() != ControlKind::TextBox) return false;
  return static_cast<bool>(static_cast<const TextBox&>(*control).Enter);
}

void QtDesktop::scanned(std::string text) {
  scans_.push_back(std::move(text));
  // Something waits for the operator's answer first.
  const bool waits = boxes_ > 0 || QApplication::activePopupWidget() || QApplication::activeModalWidget();
  if (waits && !(boxes_ == 0 && front_ && front_->takesScans())) QApplication::beep();
  deliverScansLater();
}

void QtDesktop::deliverScansLater() {
  if (scans_.empty()) return;
  QMetaObject::invokeMethod(
      this, [this] { deliverScans(); }, Qt::QueuedConnection);
}

/// One after the other, each when the one before has been dealt with. A modal window that has no place for a
/// scan leaves it to the window below; any other lets it go with a sound, since what is scanned now must not
/// act in a view that is opened later.
void QtDesktop::deliverScans() {
  while (!scans_.empty() && !ended_) {
    if (boxes_ > 0 || drawing_ > 0 || QApplication::activePopupWidget()) return;
    FormWindow* window = front_ ? windowOf(*front_) : nullptr;
    QWidget* modal = QApplication::activeModalWidget();
    if (!window || window->isBlocked() || (modal && modal != window)) return;
    const std::string text = std::move(scans_.front());
    scans_.pop_front();
    Form& form = window->form();
    bool taken = false;
    dispatch([&] { taken = form.scan(text); });
    if (taken || ended_) continue;
    if (modal) return scans_.push_front(text);
    QApplication::beep();
  }
}

// Boxes and menus

/// Shows a box, or another dialog that answers for itself.
template <class Show>
auto QtDesktop::inBox(Show show) {
  leaveIfEnded();
  flushAll();
  const bool hourglass = hourglass_;
  setPointer(Pointer::Default);
  ++boxes_;
  auto answer = show();
  --boxes_;
  deliverScansLater();
  leaveIfEnded();
  setPointer(hourglass ? Pointer::Hourglass : Pointer::Default);
  return answer;
}

int QtDesktop::messageBox(const Box& box) {
  return inBox([&] { return runBox(box); });
}

std::optional<std::string> QtDesktop::inputBox(std::string_view prompt, std::string_view caption,
                                               std::string_view initial) {
  return inBox([&] { return runInputBox(prompt, caption, initial); });
}

std::optional<std::string> QtDesktop::chooseFile(std::string_view caption, std::string_view filter,
                                                 std::string_view initial) {
  return inBox([&] { return runFileChooser(caption, filter, initial); });
}

std::optional<Colour> QtDesktop::chooseColour(Colour initial) {
  return inBox([&] { return runColourChooser(initial); });
}

void QtDesktop::popupMenu(MenuItem& menu, const Control* below) {
  leaveIfEnded();
  FormWindow* window = windowOf(menu.form());
  if (!window || !window->menus()) return;
  flushAll();
  QPoint position = window->takePopupPosition();
  const Binder* binder = below ? window->binderOf(*below) : nullptr;
  if (binder) position = binder->widget().mapToGlobal(QPoint(0, binder->widget().height()));
  MenuItem* chosen = window->menus()->open(menu, position);
  leaveIfEnded();
  if (chosen) chosen->choose();
}

// Timers

void QtDesktop::timerChanged(Timer& timer) {
  if (!timer.Enabled || timer.Interval <= 0) {
    // Within its own tick it is only stopped.
    if (const auto found = timers_.find(&timer); found != timers_.end()) found->second.timer->stop();
    return;
  }
  Ticking& ticking = timers_[&timer];
  if (!ticking.timer) {
    ticking.form = &timer.form();
    ticking.timer = std::make_unique<QTimer>();
    connect(ticking.timer.get(), &QTimer::timeout, this, [this, &timer] {
      // Deliberate: a busy window's ticks are dropped, also those of a clock. A request waits meanwhile, and
      // a tick may send one of its own, into the middle of it. So are ticks under a modal window or a box:
      // the event that opened it may be walking a reply. The next tick comes anyway.
      const bool eventStands = dispatching_ > 0 || !loops_.empty();
      if (timer.Enabled && timer.form().Enabled && !eventStands) dispatch([&timer] { raise(timer.Tick); });
    });
  }
  ticking.timer->start(timer.Interval);
}

// Texts

int QtDesktop::textWidth(std::string_view text, TextWeight weight) {
  std::unique_ptr<TextWidths>& widths = textWidths_[static_cast<std::size_t>(weight)];
  if (!widths) {
    QFont font = QApplication::font();
    font.setBold(weight == TextWeight::Bold);
    widths = std::make_unique<TextWidths>(font);
  }
  return style::twips(widths->of(text));
}

std::string QtDesktop::shortDateFormat() {
  const QLocale locale;
  if (locale.language() == QLocale::C) return "yyyy-MM-dd";
  QString format = locale.dateFormat(QLocale::ShortFormat);
  format.remove('\'');
  format.replace("MMMM", "MM").replace("MMM", "MM");
  if (!format.contains("yyyy")) format.replace("yy", "yyyy");
  return utf8(format);
}

// The outside

std::string QtDesktop::clipboardText() {
  return utf8(QGuiApplication::clipboard()->text());
}

void QtDesktop::copyToClipboard(std::string_view text) {
  QGuiApplication::clipboard()->setText(qt(text));
}

Printer& QtDesktop::printer() {
  if (!printer_) printer_ = std::make_unique<QtPrinter>();
  return *printer_;
}

void QtDesktop::playSound(std::string_view file) {
  if (!sound_) sound_ = std::make_unique<SoundPlayer>();
  sound_->play(std::string(file));
}

bool QtDesktop::canPlay(std::string_view file) {
  return isWaveFile(qt(file));
}

bool QtDesktop::canShow(std::string_view file) {
  return QImageReader(qt(file)).canRead();
}

void QtDesktop::openBrowser(std::string_view address) {
  if (QDesktopServices::openUrl(QUrl::fromUserInput(qt(address)))) return;
  warningBox(*this, "No program on this workstation opens " + std::string(address));
}

void QtDesktop::showHelp(std::string_view topic) {
  if (QWidget* dialog = QApplication::activeModalWidget()) return (new HelpWindow(dialog))->open(qt(topic));
  if (!help_) help_ = std::make_unique<HelpWindow>();
  help_->open(qt(topic));
}

// Pictures and places

bool QtDesktop::writePicture(Form& form, const std::string& file) {
  FormWindow* window = windowOf(form);
  if (!window || !window->isVisible()) return false;
  // The screen that nobody sees is small; the picture takes the size of a common desk's.
  if (QApplication::platformName() == "offscreen") window->resize(kPictureSize);
  handleEvents();
  window->flush();
  return window->grab().save(qt(file), "PNG");
}

bool QtDesktop::isPlaceTaken(const FormWindow& window) const {
  return std::any_of(windows_.begin(), windows_.end(), [&](const auto& entry) {
    const FormWindow& other = *entry.second;
    return &other != &window && other.isVisible() && other.pos() == window.pos();
  });
}

bool QtDesktop::readGeometry(QWidget& window, const Form& form) const {
  if (geometryFile_.empty()) return false;
  const QSettings settings(qt(geometryFile_), QSettings::IniFormat);
  const QByteArray geometry = settings.value("Windows/" + qt(form.Name())).toByteArray();
  const bool isRestored = !geometry.isEmpty() && window.restoreGeometry(geometry);
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  return isRestored;
}

void QtDesktop::writeGeometry(const QWidget& window, const Form& form) const {
  if (geometryFile_.empty() || !form.Resizable || !window.isVisible()) return;
  QSettings settings(qt(geometryFile_), QSettings::IniFormat);
  settings.setValue("Windows/" + qt(form.Name()), window.saveGeometry());
}

}  // namespace vantry
