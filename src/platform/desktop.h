#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/element.h"

namespace vantry {

class Control;
class Form;
class MenuItem;
class Printer;
class Timer;

/// A message box.
struct Box {
  /// The icon beside the text; `Plain` has none.
  enum class Kind { Question, Information, Warning, Critical, Plain };
  Kind kind = Kind::Information;
  std::string text;
  std::string caption;                         ///< empty: the program's name
  std::vector<std::string> buttons = {"&OK"};  ///< captions with mnemonics
  int closing = kLast;                         ///< button that Escape and the system's close mean
  int defaultButton = 0;                       ///< button that has the focus first

  static constexpr int kLast = -1;
  /// For `closing`: the box ignores Escape and close, since none of its answers is harmless.
  static constexpr int kNone = -2;
};

/// Thrown to unwind the command that ended the program. The front end catches it around each event that it
/// dispatches and around the program's start, leaves its event loops, and throws it again from the calls that
/// show a modal window or a box.
struct ProgramEnd {};

enum class Pointer { Default, Hourglass };
enum class TextWeight { Normal, Bold };

/// What a toolkit, or a test, does for the windows. All calls come from the one thread of the program.
class Desktop {
 public:
  virtual ~Desktop() = default;

  virtual void show(Form& form) = 0;
  /// Takes the form off the screen; it may be shown again.
  virtual void hide(Form& form) = 0;
  /// The form is being destroyed and its controls no longer exist: drop all that refers to it.
  virtual void forget(Form& form) = 0;
  virtual void activate(Form& form) = 0;
  /// Shows the form and returns when it is hidden or unloaded; the other windows cannot be used meanwhile.
  virtual void runModal(Form& form) = 0;
  /// Paints what has changed, without handling the operator's input: some 25 times a second at most, or now
  /// in any case.
  virtual void repaint(Form& form, bool atOnce) = 0;
  /// Handles what is pending, but for the operator's input, so that a window is fully drawn.
  virtual void handleEvents() = 0;
  virtual void focus(Control& control) = 0;
  virtual void setPointer(Pointer pointer) = 0;

  /// The index of the button pressed, or of the one that closing the box means.
  virtual int messageBox(const Box& box) = 0;
  /// The text entered, or nothing when the operator cancelled.
  virtual std::optional<std::string> inputBox(std::string_view prompt, std::string_view caption,
                                              std::string_view initial) = 0;
  /// Opens the menu below the control, or at the pointer; returns when it is closed and its choice has run.
  virtual void popupMenu(MenuItem& menu, const Control* below) = 0;
  virtual void timerChanged(Timer& timer) = 0;

  /// Width of a text in a grid's cell, in twips (1440 to the inch), without margins.
  virtual int textWidth(std::string_view text, TextWeight weight) = 0;
  /// The system's short date, in the letters d, M and y: "dd/MM/yyyy".
  virtual std::string shortDateFormat() = 0;

  /// Asks for a file that exists. The filter has pairs of a name and its patterns, all joined by "|":
  /// "Images (*.gif;*.jpg)|*.gif;*.jpg". Nothing when the operator cancelled.
  virtual std::optional<std::string> chooseFile(std::string_view caption, std::string_view filter,
                                                std::string_view initial) = 0;
  /// Nothing when the operator cancelled.
  virtual std::optional<Colour> chooseColour(Colour initial) = 0;

  /// The text that was copied last, in any program; empty when something else was copied.
  virtual std::string clipboardText() = 0;
  virtual void copyToClipboard(std::string_view text) = 0;

  /// What reports are printed with.
  virtual Printer& printer() = 0;
  /// Plays a wave file; a file that cannot be played is silence.
  virtual void playSound(std::string_view file) = 0;
  /// Whether the file is a wave file.
  virtual bool canPlay(std::string_view file) = 0;
  /// Whether the file is a picture that the list bar can have for its background.
  virtual bool canShow(std::string_view file) = 0;
  virtual void openBrowser(std::string_view address) = 0;  ///< of the web, or a file by its whole path
  /// Opens the help pages at a topic; empty for their start.
  virtual void showHelp(std::string_view topic) = 0;
  /// Ends the program: no further event of any window runs. Throws ProgramEnd, so that the command under way
  /// ends here as well.
  [[noreturn]] virtual void endProgram() = 0;
};

// The kinds of boxes that the windows use.
inline void informationBox(Desktop& desktop, std::string text, std::string caption = {}) {
  desktop.messageBox({Box::Kind::Information, std::move(text), std::move(caption)});
}
inline void warningBox(Desktop& desktop, std::string text, std::string caption = {}) {
  desktop.messageBox({Box::Kind::Warning, std::move(text), std::move(caption)});
}
inline void criticalBox(Desktop& desktop, std::string text, std::string caption = {}) {
  desktop.messageBox({Box::Kind::Critical, std::move(text), std::move(caption)});
}
inline void plainBox(Desktop& desktop, std::string text, std::string caption = {}) {
  desktop.messageBox({Box::Kind::Plain, std::move(text), std::move(caption)});
}
/// Whether the operator said yes. Only a button answers: a stray Escape must not mean No.
inline bool askBox(Desktop& desktop, Box::Kind kind, std::string text, std::string caption = {}) {
  return desktop.messageBox({kind, std::move(text), std::move(caption), {"&Yes", "&No"}, Box::kNone}) == 0;
}
inline bool questionBox(Desktop& desktop, std::string text, std::string caption = {}) {
  return askBox(desktop, Box::Kind::Question, std::move(text), std::move(caption));
}

}  // namespace vantry
