#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/desktop.h"
#include "platform/windows.h"
#include "support/scripted_printer.h"

namespace vantry::test {

/// The operator and their screen, as a script. Every box, modal window, popup menu and input box must have
/// been announced, in its order; what was not announced fails the test, and so does what was announced and
/// never came.
class ScriptedDesktop : public Desktop {
 public:
  ScriptedDesktop() = default;
  ~ScriptedDesktop() override;

  void expectBox(Box::Kind kind, std::string text, int answer = 0, std::string caption = {});
  void expectInformation(std::string text) { expectBox(Box::Kind::Information, std::move(text)); }
  void expectWarning(std::string text) { expectBox(Box::Kind::Warning, std::move(text)); }
  void expectCritical(std::string text) { expectBox(Box::Kind::Critical, std::move(text)); }
  /// Yes and No, and what the operator says.
  void expectQuestion(std::string text, bool yes) {
    expectBox(Box::Kind::Question, std::move(text), yes ? 0 : 1);
  }
  /// The modal window of this name appears; `play` is what the operator does with it, and must close it.
  void expectModal(std::string name, std::function<void(Form&)> play);
  template <class Window>
  void expectModalWindow(std::string name, std::function<void(Window&)> play) {
    expectModal(std::move(name), [play](Form& form) { play(dynamic_cast<Window&>(form)); });
  }
  /// The popup menu of this name opens and the operator chooses an entry; empty: they close it.
  void expectPopup(std::string menu, std::string entry);
  void expectInput(std::string prompt, std::optional<std::string> answer);
  /// The chooser of a file or a colour opens with this; without an answer the operator cancels it.
  void expectFile(std::string filter, std::optional<std::string> answer);
  void expectColour(Colour initial, std::optional<Colour> answer);

  /// Fails for each announcement that has not come, and forgets them. Runs at the end as well.
  void checkAllCame();

  std::string shortDate = "dd/MM/yyyy";
  Pointer pointer = Pointer::Default;
  bool ended = false;
  Box lastBox;  ///< the last box as it came
  std::string clipboard;
  ScriptedPrinter pages;
  std::vector<std::string> sounds;
  std::string uselessFile;  ///< neither a sound nor a picture
  std::vector<std::string> addresses;
  std::vector<std::string> helpTopics;
  /// Runs at each repaint, for tests that watch what the operator sees during a command.
  std::function<void(Form&)> onRepaint;
  /// The same while a box stands open.
  std::function<void()> onBox;

  void show(Form& form) override;
  void hide(Form&) override {}
  void forget(Form&) override {}
  void activate(Form& form) override;
  void runModal(Form& form) override;
  void repaint(Form& form, bool atOnce) override;
  void handleEvents() override {}
  void focus(Control&) override {}
  void setPointer(Pointer shape) override { pointer = shape; }
  int messageBox(const Box& box) override;
  std::optional<std::string> inputBox(std::string_view prompt, std::string_view caption,
                                      std::string_view initial) override;
  void popupMenu(MenuItem& menu, const Control* below) override;
  void timerChanged(Timer&) override {}
  int textWidth(std::string_view text, TextWeight) override { return static_cast<int>(text.size()) * 100; }
  std::string shortDateFormat() override { return shortDate; }
  std::optional<std::string> chooseFile(std::string_view caption, std::string_view filter,
                                        std::string_view initial) override;
  std::optional<Colour> chooseColour(Colour initial) override;
  std::string clipboardText() override { return clipboard; }
  void copyToClipboard(std::string_view text) override { clipboard = text; }
  Printer& printer() override { return pages; }
  void playSound(std::string_view file) override { sounds.emplace_back(file); }
  bool canPlay(std::string_view file) override { return file != uselessFile; }
  bool canShow(std::string_view file) override { return file != uselessFile; }
  void openBrowser(std::string_view address) override { addresses.emplace_back(address); }
  void showHelp(std::string_view topic) override { helpTopics.emplace_back(topic); }
  [[noreturn]] void endProgram() override {
    ended = true;
    throw ProgramEnd{};
  }

 private:
  struct Announcement {
    std::string what;  ///< in words, for messages; what comes must read the same
    int answer = 0;
    std::string entry;
    std::optional<std::string> input;
    std::function<void(Form&)> play;
  };
  /// Takes the next announcement when it is this one; otherwise fails the test.
  std::optional<Announcement> take(const std::string& what);

  std::deque<Announcement> announced_;
};

}  // namespace vantry::test
