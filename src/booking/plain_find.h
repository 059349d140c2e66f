#pragma once

#include "frame/app.h"
#include "platform/controls.h"
#include "platform/grid.h"
#include "records/search_window.h"

namespace vantry {

/// A plain picker that answers for the search window: patrons by barcode, and rooms out of the lists that the
/// server gives for bookings. Its `Tag` is that of the search window.
class PlainFind : public Form {
 public:
  explicit PlainFind(App& app);
  void Form_Load() override;
  void Form_Activate() override;
  bool Form_Unload() override;
  void cmdFindNow_Click();
  void cmdOK_Click();
  void cmdClose_Click();

  Label lblSearchFor{*this, "lblSearchFor", "&Barcode, or its beginning:"};
  TextBox txtSearchFor{*this, "txtSearchFor"};
  Button cmdFindNow{*this, "cmdFindNow", "&Find Now"};
  Grid fa{*this, "fa"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdClose{*this, "cmdClose", "&Cancel"};

 private:
  enum class Mode { Patron, Room };
  void showMode();
  void buildGrid(std::string_view format);
  void addRow(std::string id, std::initializer_list<std::string> cells);
  void findPatrons();
  void listRooms(std::string_view code, std::string_view kind);
  void close(std::string answer);

  App& app_;
  Mode mode_ = Mode::Patron;
};

}  // namespace vantry
