#pragma once

#include <array>
#include <memory>
#include <optional>

#include "frame/app.h"
#include "messaging/ask.h"
#include "platform/controls.h"
#include "platform/fields.h"
#include "platform/tab_pages.h"

namespace vantry {

/// The opening hours that govern bookings: one tab each for deliveries, for the rooms that the library
/// schedules and for pick-ups. It is only read.
class frmSched : public Form {
 public:
  static constexpr int kTabs = 3;
  static constexpr int kWeekdays = 7;

  explicit frmSched(App& app);
  ~frmSched() override;
  void Form_Load() override;
  void cboCalendar_Click(int index);
  void cmdClose_Click();

  /// The controls of one tab. Their names carry its index.
  struct Pane;

  TabStrip tabSched{*this, "tabSched"};
  ControlArray<Frame> fraSched{"fraSched"};
  Button cmdClose{*this, "cmdClose", "&Close"};
  // They turn the server's texts into what is shown.
  TimeField txtSTime{*this, "txtSTime"};
  TimeField txtETime{*this, "txtETime"};
  DateField dtDate{*this, "dtDate"};

 private:
  void listCalendars(int index);
  void selectCurrent(int index);
  void showSpan(Pane& pane);
  void showHours(Pane& pane);
  void showExceptions(Pane& pane, std::string_view id);
  /// " to " between two hours as the server writes them, or the word for a day without any.
  std::string hoursText(std::string_view open, std::string_view opens, std::string_view closes);

  App& app_;
  Ask ask_;
  std::optional<TabPages> pages_;
  std::array<std::unique_ptr<Pane>, kTabs> panes_;
  std::array<int, kTabs> current_{};  ///< place of the calendar in force; -1 for none
};

/// Shows the window, or brings it to the front.
void ShowBookingCalendars(App& app);

}  // namespace vantry
