#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "messaging/modGlobal.h"
#include "messaging/server_session.h"
#include "platform/controls.h"

namespace vantry {

class frmConnect;

/// Stands while the connection is opened, and tells why it could not be.
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
  /// True when the operator has logged on; his id is the session's then. False when he cancelled, or was
  /// refused three times. An operator of before is logged off first. With `onlyOperator` the id is fixed: the
  /// same operator goes on, within the request that found his session ended.
  [[nodiscard]] bool Run(ServerSession& session, TagMessage& message, std::string_view onlyOperator = {});

 private:
  Windows& windows_;
  ServerTools& tools_;
};

/// One choice in the catalogue search: a title, or one of its holdings records.
struct BibSelection {
  std::string BI;
  std::string MI;  ///< "0" for a bare title
};

/// The catalogue search.
class BibSearchDialog {
 public:
  void Initialise(TagMessage& message, ServerSession& session, bool allowHoldingsKeyword) {
    message_ = &message;
    session_ = &session;
    allowHoldingsKeyword_ = allowHoldingsKeyword;
  }
  bool RetainSearch = false;
  bool AutoTruncate = false;

 private:
  TagMessage* message_ = nullptr;
  ServerSession* session_ = nullptr;
  bool allowHoldingsKeyword_ = false;
};

}  // namespace vantry
