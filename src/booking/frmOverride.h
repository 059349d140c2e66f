#pragma once

#include <string>
#include <string_view>

#include "frame/app.h"
#include "platform/controls.h"
#include "platform/number_fields.h"

namespace vantry {

/// What a failure of policy is about, as a validator reads it from a reply.
struct OverrideFacts {
  int OverrideContext = 0;  ///< the request's return code
  int OverrideCode = 0;     ///< the failure's code
  std::string OverrideName;
  std::string OverridePeriod;  ///< as `PeriodText` words it
  std::string OverrideName2;
  std::string OverrideLimit;  ///< of code 110: what is authorized, and what there is
  std::string OverrideCount;
};

/// The sentence of a failure; empty where there is none, which 154 has on purpose. Amounts pass through the
/// currency field.
[[nodiscard]] std::string overrideSentence(const OverrideFacts& facts, CurrencyField& currency);

/// The right that lets an operator override by themselves, and the one that is asked of a supervisor instead.
struct OverrideNeed {
  bool byRight = false;  ///< whether a right short of OVOTR does
  Right right = Right::OVOTR;
  std::string_view RequiredRight;
};
[[nodiscard]] OverrideNeed overrideNeed(const OverrideFacts& facts);

/// States a failure of policy and lets an operator with the right, or a supervisor, continue all the same.
class frmOverride : public Form, public OverrideFacts {
 public:
  frmOverride(App& app, OverrideFacts facts);
  void Form_Load() override;
  void cmdOverride_Click();
  void cmdSupervisor_Click();
  void cmdCancel_Click();

  std::string OverrideResult = "0";  ///< "1": overridden

  Image imgOverride{*this, "imgOverride", "warning"};
  Label lblMessage{*this, "lblMessage"};
  CurrencyField txtTempCurrency{*this, "txtTempCurrency", -9000000000, 9000000000};  ///< hidden
  Button cmdOverride{*this, "cmdOverride", "&Override"};
  Button cmdSupervisor{*this, "cmdSupervisor", "&Supervisor..."};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  App& app_;
  std::string_view RequiredRight_;
};

/// Shows the override window; true when the failure was overridden.
[[nodiscard]] bool AskOverride(App& app, const OverrideFacts& facts);

}  // namespace vantry
