#pragma once

#include <QObject>
#include <array>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/desktop.h"

class QEventLoop;
class QTimer;
class QWidget;

namespace vantry {

class FormWindow;
class HelpWindow;
class QtPrinter;
class ScanReader;
class SoundPlayer;
class TextWidths;
class Windows;

/// Shows the platform's windows with Qt. It needs a QApplication and must outlive the windows.
class QtDesktop final : public QObject, public Desktop {
 public:
  /// Sizes and places of windows are kept in that file; without one they are not kept.
  explicit QtDesktop(std::string geometryFile = {});
  ~QtDesktop() override;

  /// Starts the program and runs it until it ends. It ends at once if `start` returns false.
  int run(const std::function<bool()>& start);
  /// When the system ends the operator's session, the form says whether the program may go.
  void endWithSession(Form& form);
  /// Writes the picture of a shown form, as PNG; false where it is not shown or the file cannot be written.
  bool writePicture(Form& form, const std::string& file);
  /// Runs an event of a window. An exception ends the program, after a box that tells it; ProgramEnd needs no
  /// box.
  void dispatch(const std::function<void()>& event);

  /// In milliseconds. What is pressed during a longer wait is not meant for what comes after it.
  int noticeableWait = 200;
  /// A window is painted during a command as often as the eye can follow.
  int paintInterval = 40;

  void show(Form& form) override;
  void hide(Form& form) override;
  void forget(Form& form) override;
  void activate(Form& form) override;
  void runModal(Form& form) override;
  void repaint(Form& form, bool atOnce) override;
  void handleEvents() override;
  void focus(Control& control) override;
  void setPointer(Pointer pointer) override;
  int messageBox(const Box& box) override;
  std::optional<std::string> inputBox(std::string_view prompt, std::string_view caption,
                                      std::string_view initial) override;
  void popupMenu(MenuItem& menu, const Control* below) override;
  void timerChanged(Timer& timer) override;
  int textWidth(std::string_view text, TextWeight weight) override;
  std::string shortDateFormat() override;
  std::optional<std::string> chooseFile(std::string_view caption, std::string_view filter,
                                        std::string_view initial) override;
  std::optional<Colour> chooseColour(Colour initial) override;
  std::string clipboardText() override;
  void copyToClipboard(std::string_view text) override;
  Printer& printer() override;
  void playSound(std::string_view file) override;
  bool canPlay(std::string_view file) override;
  bool canShow(std::string_view file) override;
  void openBrowser(std::string_view address) override;
  void showHelp(std::string_view topic) override;
  [[noreturn]] void endProgram() override;

  // For its windows.
  FormWindow* windowOf(const Form& form) const;
  /// The form's window has come to the front.
  void activated(Form& form);
  /// Hands on the kept scans as soon as a window can take them.
  void deliverScansLater();
  /// Whether another window is exactly there.
  bool isPlaceTaken(const FormWindow& window) const;
  /// False where none is kept.
  bool readGeometry(QWidget& window, const Form& form) const;
  void writeGeometry(const QWidget& window, const Form& form) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Ticking {
    std::unique_ptr<QTimer> timer;
    const Form* form;
  };
  FormWindow* ownerOf(const QObject& watched) const;
  bool isBlocked(const QObject& watched) const;
  bool takesTyping(QWidget& widget) const;
  bool answersEnter(QWidget& widget) const;
  void scanned(std::string text);
  void deliverScans();
  template <class Show>
  auto inBox(Show show);
  FormWindow& prepare(Form& form);
  void dropWindow(Form& form, bool controlsLive);
  void focusChanged(QWidget* now);
  void flushAll();
  /// Leaves all event loops, and says so to whoever waits in them.
  void leave();
  void leaveIfEnded() const;
  void sweepLater(Windows& windows);
  void sweep();

  std::string geometryFile_;
  std::map<const Form*, FormWindow*> windows_;
  std::map<const Form*, QEventLoop*> loops_;
  std::map<const Timer*, Ticking> timers_;
  std::unique_ptr<HelpWindow> help_;
  std::unique_ptr<SoundPlayer> sound_;
  std::unique_ptr<QtPrinter> printer_;
  std::array<std::unique_ptr<TextWidths>, 2> textWidths_;  ///< by `TextWeight`; made with the first use
  std::set<Windows*> toSweep_;
  std::unique_ptr<ScanReader> reader_;
  std::deque<std::string> scans_;  ///< read and not yet taken
  const Form* front_ = nullptr;
  int dispatching_ = 0;
  int drawing_ = 0;  ///< within `handleEvents`, which runs no event of the operator's
  int boxes_ = 0;
  bool hourglass_ = false;
  bool ended_ = false;
  bool failed_ = false;
};

}  // namespace vantry
