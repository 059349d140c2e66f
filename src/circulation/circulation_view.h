#pragma once

#include <memory>
#include <string>
#include <vector>

#include "circulation/circulation_twin.h"
#include "lists/main_view.h"
#include "platform/tree.h"

namespace vantry {

/// What the charge view and the discharge view share: a search, the bookings that it found, the commands on
/// the selected one, and its details. After each step the search text has the focus and is selected, so that
/// the next scan replaces it.
class CirculationView : public MainView {
 public:
  void load() override;
  void open() override;
  ReplyList* list() override { return &list_; }
  void sorted() override;
  void takePreferences(Applies what) override;

 protected:
  CirculationView(const MainParts& parts, Frame& frame, const CirculationTwin& twin);

  Button& rowButton(int index) { return *rowButtons_[static_cast<std::size_t>(index)]; }

  void search();
  void clear();
  void toggleDetails();
  /// Closes the details; an empty list is hidden as well.
  void closeDetailsAndEmptyList();
  /// Copies the selected booking's id to the grid's tag, from which the commands take it; empty without a
  /// selection.
  const std::string& takeSelected();
  /// The booking of the row is dealt with.
  void finish(int row);
  void closeDetails();
  /// As the preferences say: true when the view has been cleared.
  bool clearAfterwards();
  void focusText();

 private:
  Label lblSearch_;

 protected:
  ComboBox cboSearch;

 private:
  Label lblSearchFor_;

 protected:
  TextBox txtSearchFor;
  Button cmdSearch, cmdClear;
  Frame fraBookings;
  Grid faBookings;

 private:
  std::vector<std::unique_ptr<Button>> rowButtons_;

 protected:
  Button cmdDetails;
  Tree tvwDetails;

 private:
  void arrange(Frame& frame);
  void connect();
  void addSearchTags();
  void showFound();
  void sayAndReturn(std::string_view text);
  void hideResults();
  void rowChanged();
  void clicked();
  void rightClicked();
  bool detailsOpen() const { return cmdDetails.Tag == "1"; }
  void openDetails();
  bool readDetails(std::string_view code);
  void addMedia();
  void addEquipment();
  void addLine(std::string_view root, std::string key, std::string text);

  const CirculationTwin& twin_;
  ReplyList list_{parts(), faBookings};
  int rememberedRow_ = 0;
  bool takesPreferences_ =
      false;  ///< the search list takes its first entry, which is no choice of the operator's
};

}  // namespace vantry
