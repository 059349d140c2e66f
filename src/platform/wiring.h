#pragma once

#include "platform/element.h"

namespace vantry {

/// Lets a member function answer an event: `on(cmdOK.Click, this, &frmX::cmdOK_Click)`. Arguments behind the
/// function are handed to it each time.
template <class Owner, class Method, class... Args>
void on(Event& event, Owner* owner, Method method, Args... args) {
  event = [owner, method, args...] { (owner->*method)(args...); };
}

/// Switches several controls, menu entries, tools or commands at once.
template <class... Elements>
void setEnabled(bool on, Elements&... elements) {
  ((elements.Enabled = on), ...);
}
template <class... Elements>
void disable(Elements&... elements) {
  setEnabled(false, elements...);
}

/// Shows or hides several controls or menu entries at once.
template <class... Elements>
void setVisible(bool on, Elements&... elements) {
  ((elements.Visible = on), ...);
}

}  // namespace vantry
