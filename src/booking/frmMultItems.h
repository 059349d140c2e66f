#pragma once

#include <map>
#include <string>
#include <vector>

#include "booking/modBooking_media.h"
#include "platform/controls.h"
#include "platform/tree.h"

namespace vantry {

/// Lets the operator choose what to book of the titles that a search found. The level of a chosen node tells
/// how wide the wish is: any item of a title, any item of its holdings, or one item.
class frmMultItems : public Form {
 public:
  /// `matches` are records of titles with their holdings and items, in the order of the reply; a record
  /// without an item is one of holdings that have none.
  frmMultItems(App& app, const ItemMatches& matches);
  void Form_Load() override;
  void cmdSelect_Click();
  void cmdView_Click();
  void cmdCancel_Click();

  /// What was chosen, in the order of choosing; empty unless the tag is "1".
  ItemMatches chosen;

  Label lblInstruct{*this, "lblInstruct"};
  Tree tvwMediaItems{*this, "tvwMediaItems"};
  Button cmdSelect{*this, "cmdSelect", "&Select"};
  Button cmdView{*this, "cmdView", "&View"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void addMatch(const MediaThing& match);
  void addNode(std::string_view parent, const MediaThing& thing, std::string text,
               std::vector<std::string> columns);
  void takeCommonType(MediaThing& wish) const;
  void enableCommands();

  App& app_;
  const ItemMatches& matches_;
  std::map<std::string, MediaThing, std::less<>> things_;  ///< by the key of their node
};

}  // namespace vantry
