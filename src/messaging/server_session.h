#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "messaging/password_sealer.h"
#include "messaging/transport.h"

namespace vantry {

/// The connection and the operator who is logged on; lives as long as the program.
class ServerSession {
 public:
  explicit ServerSession(Transport& transport) : transport_(transport) {}

  void Initialise(std::string_view application, std::string_view commandLine);
  /// Caption of the help menu's entry that leads to the support pages.
  [[nodiscard]] std::string GetSupportWebCaption() const;
  /// Whether the line to the server is protected, which the fifth status panel shows by a picture.
  [[nodiscard]] bool IsIndicatorShown() const { return indicator_; }
  /// Font for catalogue text; empty for the windows' own.
  [[nodiscard]] std::string GetDataFontName() const { return {}; }
  [[nodiscard]] const std::string& GetOperatorId() const { return operatorId_; }

  /// The encoder of passwords that requests carry: set once by whoever composes the program.
  void setSealer(PasswordSealer& sealer) { sealer_ = &sealer; }
  /// A password sealed for the server; nothing where its key cannot be had now. Throws std::logic_error for a
  /// program without an encoder.
  [[nodiscard]] std::optional<std::string> seal(std::string_view password) const;

  // For the dialogs of the connection and the login.
  void setOperatorId(std::string id) { operatorId_ = std::move(id); }
  void setIndicator(bool shown) { indicator_ = shown; }
  Transport& transport() const { return transport_; }
  const std::string& commandLine() const { return commandLine_; }

 private:
  Transport& transport_;
  std::string commandLine_;
  std::string operatorId_;
  bool indicator_ = false;
  PasswordSealer* sealer_ = nullptr;
};

}  // namespace vantry
