#pragma once

#include <string>
#include <string_view>

#include "platform/desktop.h"
#include "platform/fields.h"
#include "platform/form.h"

namespace vantry {

class ServerSession;

/// Conversions between server texts and controls, and small services for windows.
class ServerTools {
 public:
  explicit ServerTools(Desktop& desktop) : desktop_(desktop) {}

  /// True means: stop at once, without a word. It is so when the command line asks only for what needs no
  /// window.
  [[nodiscard]] bool CheckStartup(const ServerSession& session) const;
  /// Called by every window's `Form_Load` before anything else that shows: a window starts enabled, not as an
  /// icon, with the focus nowhere.
  void PrepareForm(Form& form) const;

  /// The control's date, with the time control's time where one is given, as the server writes it; empty for
  /// an empty date. An empty time reads as midnight, so that moments always compare as texts.
  [[nodiscard]] static std::string GetControlDate(const DateField& date, const TimeField* time = nullptr);
  /// Shows a server's date; text that is none empties the control.
  static void PutControlDate(std::string_view value, DateField& date);
  /// Shows the time of a server's moment, or a clock time of four digits; text that is none empties the
  /// control.
  static void PutControlTime(std::string_view value, TimeField& time);

  /// The token that starts at the position (from 1); the position moves behind the delimiter, and to 0 after
  /// the last token. Neighbouring delimiters, and one at the end, have an empty token between or behind them;
  /// a position beyond the text gives an empty token and 0.
  [[nodiscard]] static std::string NextToken(int& position, std::string_view text,
                                             std::string_view delimiter);

  /// Opens the support pages.
  void OpenWebSite(std::string_view caption) const;
  /// Where the support pages are; whoever runs the service sets it.
  void setSupportAddress(std::string address) { supportAddress_ = std::move(address); }

 private:
  Desktop& desktop_;
  std::string supportAddress_ = "https://support.brindlex.example/vantry";
};

}  // namespace vantry
