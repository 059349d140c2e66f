#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "messaging/server_tools.h"
#include "messaging/tagmessage.h"
#include "platform/inifile.h"
#include "platform/windows.h"

namespace vantry {

/// What the reporter leaves for the window that shows a system error.
struct ErrorReport {
  std::string errorText;
  std::string module;
  std::string returnCode;
  std::string formName;
  std::string missingTags;
};

/// The helpers that bracket every request: busy and ready windows, and the words for a failure.
class modGlobal {
 public:
  modGlobal(Windows& windows, TagMessage& message, ServerTools& tools);

  /// Ends the program at once, for the return code of a lost server. Set by the program.
  std::function<void()> Abort;

  void BusyForm(Form& form);
  void BusyAllForms();
  void ReadyForm(Form& form);
  /// Enables every window, whatever the caller before did: the pair does not nest.
  void ReadyAllForms();

  /// Says what a return code means, in the way of its kind; codes without words stay silent.
  void ReportRequestError(int rc, std::string_view module, std::string_view formName);

  /// The lines of a section of the help map, each led by one blank and joined by line breaks; "~" is a tab.
  [[nodiscard]] static std::string ReadHelpSection(IniFile& helpMap, std::string_view sectionName);

  [[nodiscard]] TagMessage& message() const { return message_; }
  [[nodiscard]] Desktop& desktop() const { return windows_.desktop(); }

 private:
  void pointerAndForms(Pointer pointer, bool enabled);
  Windows& windows_;
  TagMessage& message_;
  ServerTools& tools_;
};

}  // namespace vantry
