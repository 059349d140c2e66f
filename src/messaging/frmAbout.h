#pragma once

#include "messaging/server_session.h"
#include "platform/controls.h"
#include "platform/windows.h"

namespace vantry {

/// Two small windows that only tell something: the login information and the about box.
class frmTell : public Form {
 public:
  frmTell(Windows& windows, std::string name, std::string caption);
  void cmdOK_Click();

  Image imgVantry{*this, "imgVantry", "vantry"};
  Label lblHeading{*this, "lblHeading"};
  Button cmdOK{*this, "cmdOK", "&OK"};
};

class frmLoginInfo : public frmTell {
 public:
  frmLoginInfo(Windows& windows, const ServerSession& session, std::string_view locationName);

  Label lblOperator{*this, "lblOperator", "Operator:"};
  Label lblOperatorText{*this, "lblOperatorText"};
  Label lblLocation{*this, "lblLocation", "Location:"};
  Label lblLocationText{*this, "lblLocationText"};
  Label lblLine{*this, "lblLine", "Connection:"};
  Label lblLineText{*this, "lblLineText"};
};

class frmAbout : public frmTell {
 public:
  frmAbout(Windows& windows, const ServerSession& session);

  Label lblVersion{*this, "lblVersion"};
  Label lblPurpose{*this, "lblPurpose", "The workstation of a library's booking desk."};
  Label lblOperator{*this, "lblOperator"};
};

}  // namespace vantry
