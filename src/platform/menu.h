#pragma once

#include <string>
#include <vector>

#include "platform/element.h"

namespace vantry {

class Form;

/// An entry of a window's menus. An entry made on the form is one of the menu bar, an entry made on another
/// one is below it; the caption "-" is a line. A bar entry that is not visible serves as a popup menu.
class MenuItem : public Element {
 public:
  MenuItem(Form& form, std::string name, std::string caption);
  MenuItem(MenuItem& parent, std::string name, std::string caption);

  const std::string& Name() const { return name_; }
  Form& form() const { return form_; }
  MenuItem* parent() const { return parent_; }
  const std::vector<MenuItem*>& Items() const { return items_; }
  bool isLine() const { return Caption.get() == "-"; }

  Property<std::string> Caption{*this, Aspect::Caption};
  Property<bool> Enabled{*this, Aspect::Enabled, true};
  Property<bool> Visible{*this, Aspect::Visible, true};
  Property<bool> Checked{*this, Aspect::Value};
  std::string Shortcut;  ///< as "Ctrl+N"; empty for none
  std::string Picture;   ///< name of an icon of the program's set; empty for none

  /// The operator chose it. For an entry that has others below it: it is about to open.
  Event Click;

  /// The operator chooses it; an entry that cannot be reached stays silent.
  void choose();
  /// Whether the operator could choose it, in the bar or in a popup.
  bool usable() const;

 private:
  Form& form_;
  MenuItem* parent_ = nullptr;
  std::string name_;
  std::vector<MenuItem*> items_;
};

}  // namespace vantry
