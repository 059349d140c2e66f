#include "platform/command.h"

#include "platform/bars.h"
#include "platform/menu.h"
#include "platform/wiring.h"

namespace vantry {

Command::Command() : Command(Event{}) {}

Command::Command(Event run) : Run(std::move(run)) {
  Enabled.Changed = Allowed.Changed = [this] { showOn(); };
}

void Command::run() const {
  if (usable()) raise(Run);
}

void Command::link(Button& button) {
  buttons_.push_back(&button);
  on(button.Click, this, &Command::run);
  button.Enabled = usable();
}

void Command::link(Tool& tool) {
  tools_.push_back(&tool);
  on(tool.Click, this, &Command::run);
  tool.Enabled = usable();
}

void Command::link(MenuItem& entry, const std::string& keys) {
  entries_.push_back(&entry);
  if (entry.Items().empty()) on(entry.Click, this, &Command::run);
  if (!keys.empty()) entry.Shortcut = keys;
  entry.Enabled = usable();
}

void Command::unlink(MenuItem& entry) {
  if (std::erase(entries_, &entry) == 0) return;
  entry.Click = nullptr;
  entry.Enabled = false;
}

void Command::showOn() {
  const bool on = usable();
  for (Button* button : buttons_) button->Enabled = on;
  for (Tool* tool : tools_) tool->Enabled = on;
  for (MenuItem* entry : entries_) entry->Enabled = on;
}

}  // namespace vantry
