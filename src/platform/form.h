#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/control.h"
#include "platform/menu.h"

namespace vantry {

class TextBox;
class Timer;
class Windows;

enum class FormState { Normal, Minimized, Maximized };

/// A window. Deriving classes declare controls as members and answer the `Form_` events.
///
/// A form is loaded by `Load` or by its first showing (`Form_Load` runs once), and stands among the loaded
/// windows until `Unload`, which `Form_Unload` may refuse. Loaded anew, it runs `Form_Load` again.
class Form : public Element, public Container {
 public:
  Form(Windows& windows, std::string name);
  ~Form() override;

  const std::string& Name() const { return name_; }
  Windows& windows() const { return windows_; }

  Property<std::string> Caption{*this, Aspect::Caption};
  Property<std::string> Tag{*this, Aspect::State};
  Property<bool> Enabled{*this, Aspect::Enabled, true};
  Property<FormState> WindowState{*this, Aspect::State, FormState::Normal};
  bool Resizable = true;
  std::string Icon;  ///< name of an icon of the program's set

  virtual void Form_Load() {}
  virtual void Form_Activate() {}
  /// False refuses to close.
  virtual bool Form_Unload() { return true; }
  /// The system ends the operator's session, and the program with it.
  virtual void Form_Terminate() {}

  void Load();
  void Show();
  /// Returns when the window is hidden or unloaded.
  void ShowModal();
  void Hide();
  /// Whether the window is gone; false when it refused.
  bool Unload();
  /// Brings the window to the front and gives it the focus.
  void SetFocus();
  void Refresh();

  bool isLoaded() const { return loaded_; }
  bool isShown() const { return shown_; }

  const std::vector<MenuItem*>& Menus() const { return menus_; }
  /// The control of this name, within frames as well, or nullptr.
  Control* findControl(std::string_view name) const;
  /// The control that has the focus, or nullptr.
  Control* ActiveControl() const { return active_; }

  /// Takes what a barcode reader has read, wherever the focus is. Empty in windows that take scans in a
  /// field (`TextBox::TakesScans`) or in whatever field has the focus.
  std::function<void(std::string_view)> ScanReceived;

  /// The barcode reader has read a text: it goes to `ScanReceived`; without that to the field that takes
  /// scans, else to the focused text box that answers Enter. False when nothing in the window takes it.
  bool scan(std::string_view text);
  /// Whether a scan has a place here that does not depend on the focus.
  bool takesScans() const { return ScanReceived || scanField(); }
  /// The field that takes scans now, or nullptr.
  TextBox* scanField() const;

  // What the controls and the front end need of their window.
  bool reachable() const override { return Enabled; }
  void focusOn(Control& control);
  /// Leaves the control with the focus as the operator would, so that its check runs; the focus stays there.
  /// False when the check has put the focus somewhere, because something is wrong.
  [[nodiscard]] bool leaveField();
  /// The operator moved the focus, or the front end did.
  void focusMoved(Control* control);
  void timerChanged(Timer& timer);
  /// The operator closes the window by the system's command; a disabled window stays.
  void closeByOperator();

 private:
  friend class MenuItem;
  /// Moves the active control; the one before may take the focus back.
  void leaveFor(Control* next);
  Windows& windows_;
  std::string name_;
  std::vector<MenuItem*> menus_;
  Control* active_ = nullptr;
  bool loaded_ = false;
  bool shown_ = false;
};

}  // namespace vantry
