#pragma once

#include <string>
#include <vector>

#include "platform/element.h"

namespace vantry {

class Button;
class MenuItem;
class Tool;

/// One thing that the operator can do. Buttons, menu entries and tools that are linked to it run its handler
/// and show whether it can be used, all alike.
class Command : public Element {
 public:
  Command();
  explicit Command(Event run);

  Event Run;
  /// Whether the state of the window permits it.
  Property<bool> Enabled{*this, Aspect::Enabled, true};
  /// Whether the operator's rights permit it.
  Property<bool> Allowed{*this, Aspect::Enabled, true};

  [[nodiscard]] bool usable() const { return Enabled && Allowed; }
  /// Runs the handler; a command that cannot be used stays silent.
  void run() const;

  /// Lets the element run the command. What is linked lives at least as long as the command is used.
  void link(Button& button);
  void link(Tool& tool);
  /// An entry that holds others opens them and runs nothing: it only shows whether the command can be used.
  void link(MenuItem& entry, const std::string& keys = {});
  /// Leaves an entry to another command; it cannot be used until that one is linked.
  void unlink(MenuItem& entry);

 private:
  void showOn();

  std::vector<Button*> buttons_;
  std::vector<Tool*> tools_;
  std::vector<MenuItem*> entries_;
};

}  // namespace vantry
