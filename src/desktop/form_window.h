#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "desktop/binder.h"
#include "platform/form.h"

class QBoxLayout;
class QPushButton;

namespace vantry {

class Button;
class Menus;
class QtDesktop;

/// The window of one form: menu bar, tool bar, side bars, the form's controls and the status bar.
///
/// It exists from the form's first showing until the form has unloaded or is destroyed; the event loop frees
/// it some time after that.
class FormWindow : public QWidget, public Host {
 public:
  FormWindow(Form& form, QtDesktop& desktop);
  ~FormWindow() override;

  /// Cuts all ties to the form. The controls of a form that is being destroyed no longer exist.
  void release(bool controlsLive);

  void present(bool modal);
  void bringToFront();
  /// Shows what is marked, then paints it.
  void paintNow(bool atOnce);
  void flush();

  /// Whether the operator's input is dropped now.
  bool isBlocked() const { return !form_.Enabled || settling_; }
  Binder* binderOf(const Control& control) const override;
  /// The control that the widget belongs to, or nullptr.
  Control* controlOf(QWidget* widget) const;
  Form& form() const { return form_; }
  /// The button that has the focus is the one that Enter presses, else the form's default button.
  void markDefault(const QWidget& focused);
  Menus* menus() const { return menus_.get(); }
  /// Where a popup menu without a control opens.
  QPoint takePopupPosition();

  void flushLater() override;
  void holdSize() override;
  void fill(Frame& frame) override;
  void act(const std::function<void()>& event) override;
  void popupAt(const QPoint& position) override { popupPosition_ = position; }
  int paintInterval() const override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void build();
  void buildControls(const Container& container, QWidget* parent);
  QWidget* makeWidget(Control& control, QWidget* parent);
  /// Whether what stands in the frame is made only when the frame is first shown.
  bool waits(const Frame& frame) const;
  /// Binds the binders from that place on.
  void bindFrom(std::size_t first);
  void arrange();
  void arrangeFrame(const Frame& frame);
  void arrangeFrames(const Container& container);
  void nameControls();
  void showCaption();
  void update(Aspect aspect);
  void showState();
  void enabledChanged();
  void place(bool modal);
  void keepOnScreen();
  QMargins frameMargins() const;
  /// The part of the screen under the window that windows can take.
  QRect screenRoom() const;
  /// Moves the window to a place on the screen that no other window takes exactly.
  void findPlace();
  QWidget* widgetOf(Control& control) const;
  QWidget* firstFocus() const;
  /// The button that the form marks so and that can be used now, or nullptr.
  QPushButton* buttonOf(bool Button::*which) const;
  bool pressButton(bool Button::*which);

  Form& form_;
  QtDesktop& desktop_;
  QWidget* body_ = nullptr;
  QBoxLayout* middle_ = nullptr;
  std::unique_ptr<Menus> menus_;
  std::vector<std::unique_ptr<Binder>> binders_;
  std::unordered_map<const Control*, Binder*> byControl_;
  std::unordered_map<const QWidget*, Control*> byWidget_;
  std::unordered_set<const Frame*> filled_;  ///< frames whose controls have their widgets
  QPoint popupPosition_;
  QElapsedTimer busy_;
  QElapsedTimer lastPaint_;
  bool flushComing_ = false;
  bool settling_ = false;
  bool released_ = false;
  bool placed_ = false;
};

}  // namespace vantry
