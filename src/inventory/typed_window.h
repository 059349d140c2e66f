#pragma once

#include "inventory/bookings_panel.h"
#include "inventory/inventory_window.h"
#include "inventory/notes_panel.h"
#include "inventory/properties_panel.h"

namespace vantry {

/// What differs between the windows of pieces, groups and rooms before any of their code runs.
struct TypedWindowKind {
  InventoryWindowKind window;
  std::vector<Category> CategoryLists::*categories;
  std::string_view typeIdTag, typeNameTag, numberTag;
  std::string_view newStatus;  ///< that a new record shows
  const BookingsKind& bookings;
  const char* bookingsGrid;  ///< name of the list
  const NotesKind& notes;
};

/// The window of a record that has a type, a number, statuses and notes, and is booked: a piece, a group or a
/// room. The third of its five pages is the deriving window's own.
class TypedWindow : public InventoryWindow {
 public:
  void txtSTS_TYPE_DblClick();

  Frame fraDetails{*this, "fraTab(0)", "", 0};
  Frame fraBookings{*this, "fraTab(1)", "", 0};
  BookingsPanel bookings;
  Frame fraNotes{*this, "fraTab(3)", "", 0};
  NotesPanel notes;
  Frame fraProperties{*this, "fraTab(4)", "", 0};
  PropertiesPanel propertyFields{fraProperties};
  Label lblHIST_BKNGS{fraProperties, "lblHIST_BKNGS", "Historical Bookings:"};
  TextBox txtHIST_BKNGS{fraProperties, "txtHIST_BKNGS"};

 protected:
  static constexpr int kThirdPage = 2;
  static constexpr int kNotesPage = 3;

  /// The controls of type, number and status, which the deriving window has.
  struct Controls {
    ComboBox& type;
    TextBox& number;
    Button& numbers;  ///< shows the numbers in use
    TextBox& status;
  };
  TypedWindow(App& app, const TypedWindowKind& kind, const Controls& controls);

  [[nodiscard]] std::string number() const override { return controls_.number.Text; }
  [[nodiscard]] std::string category() const override { return storedTypeId_; }
  [[nodiscard]] NotesPanel* notesPanel() override { return &notes; }

  void prepare() override;
  void showNew() override;
  void readRecord() override;
  void copyEnds() override;
  void addRecord(bool created) override;
  void takeReply(bool created) override;
  void refreshLists() override;
  void refreshNumbers() override;
  void DisableEditing() override;
  void SetFormSecurity() override;
  void DisableButtons() override { bookings.DisableButtons(); }

  /// Shows what the reply of the record holds beside the number.
  virtual void showRecord() = 0;
  /// The tags of a save behind the number.
  virtual void addOwnTags() = 0;
  /// The status was set, or may have changed.
  virtual void statusIsShown() {}
  /// Gives all pages their frames.
  void placePagesAround(const TabPages::Page& third);
  /// Adds the rows of the page of properties to the table of fields.
  void addPropertyFields(std::vector<RecordField>& rows);
  /// A copy was made by nobody yet, and never booked.
  void clearProperties();
  /// Sets up the controls; called once, by the constructor of the window that has them.
  void connectControls();
  /// The first visit of a page. A copy can only look at what its model has.
  template <class Panel>
  void firstVisit(Panel& panel) {
    panel.load();
    if (isCopy()) panel.lock();
  }
  /// Lets F4 run a handler in a text box, where that is allowed.
  void answerF4(TextBox& box, const std::function<bool()>& isAllowed, const Event& handler);
  [[nodiscard]] bool mayOpenDialogs() const { return isStored() && maySave(); }
  void showNumbers();
  [[nodiscard]] const std::string& typeId() const;
  /// The place of the record's type in the shared slots.
  [[nodiscard]] std::size_t slot() const { return static_cast<std::size_t>(opening().kind); }
  [[nodiscard]] std::string messageValue(std::string_view tag) const { return app_.message.Get(tag); }

 private:
  void fillTypes();
  void selectNewType();
  void showNumber();

  const TypedWindowKind& kind_;
  Controls controls_;
  std::string oldType_;  ///< name of the type at the last save
  std::string storedTypeId_;
};

}  // namespace vantry
