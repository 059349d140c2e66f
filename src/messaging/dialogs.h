#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "messaging/modGlobal.h"
#include "messaging/server_session.h"
#include "platform/controls.h"

namespace vantry {

class frmConnect;

/// Is shown while the connection is opened, and tells why it could not be.
class ConnectDialog {
 public:
  explicit ConnectDialog(Windows& windows);
  ~ConnectDialog();
  /// Every dialog is given its session; this one learns all it needs from `TagMessage::Connect`.
  void SetSession(ServerSession&) {}
  void Close();

  // For TagMessage::Connect, and for TagMessage::OnLost.
  void open();
  /// Says why no server answers; true to try again. The window need not be open.
  [[nodiscard]] bool askRetry(const std::string& reason);

 private:
  Windows& windows_;
  std::unique_ptr<frmConnect> window_;
};

/// The operator's login: three tries, a plain word on a wrong one.
class LogonDialog {
 public:
  LogonDialog(Windows& windows, ServerTools& tools) : windows_(windows), tools_(tools) {}
  /// True when the operator has logged on; the session has their id then. False when they cancelled, or were
  /// refused three times. An operator of before is logged off first. With `onlyOperator` the id is fixed: the
  /// same operator continues, within the request that found the session ended.
  [[nodiscard]] bool Run(ServerSession& session, TagMessage& message, std::string_view onlyOperator = {});

 private:
  Windows& windows_;
  ServerTools& tools_;
};

/// One choice in the catalogue search: a title, or one of its holdings records.
struct BibSelection {
  std::string BI;
  std::string MI;  ///< "0" for a bare title
  bool operator==(const BibSelection&) const = default;
};

/// What the operator looks for in the catalogue.
struct BibCriteria {
  int field = 0;  ///< place in the list of what can be searched by
  std::string text;
  bool holdings = true;  ///< keywords are looked for in holdings too, where that is allowed
};

/// The catalogue search.
class BibSearchDialog {
 public:
  BibSearchDialog(Windows& windows, ServerTools& tools, modGlobal& global)
      : windows_(windows), tools_(tools), global_(global) {}
  /// The session is given as to all dialogs of the connection; the message speaks for it.
  void Initialise(TagMessage& message, ServerSession&, bool allowHoldingsKeyword) {
    message_ = &message;
    allowHoldingsKeyword_ = allowHoldingsKeyword;
  }
  bool RetainSearch = false;  ///< the next search begins with the words of the last one
  bool AutoTruncate = false;  ///< a search that is not by keyword finds all that begins with its text

  /// Lets the operator search and choose, in a modal window. Returns what they chose, in their order and each
  /// once; empty when they cancelled. Needs `Initialise`. A walk of the caller's over the message's reply
  /// continues afterwards.
  [[nodiscard]] std::vector<BibSelection> Search();

 private:
  Windows& windows_;
  ServerTools& tools_;
  modGlobal& global_;
  TagMessage* message_ = nullptr;
  bool allowHoldingsKeyword_ = false;
  BibCriteria last_;
};

}  // namespace vantry
