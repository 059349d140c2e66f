#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/record_opening.h"
#include "lists/reply_list.h"
#include "messaging/ask.h"
#include "platform/command.h"
#include "platform/controls.h"
#include "platform/tree.h"

namespace vantry {

class MembersPage;

/// One root of the tree: a sort of things that can be added, by type.
struct MemberSource {
  const char* name;  ///< of the root; its children's keys begin with it
  const char* key;
  int kind;                              ///< of the records, for the opener
  std::string_view types;                ///< request for the types
  bool typesOfRecord;                    ///< it carries the id of the record
  std::string_view things;               ///< request for what can be added of a type
  bool thingsOfRecord;                   ///< likewise
  std::span<const ReplyColumn> columns;  ///< of the candidates
};

/// An entry of the popup menu.
struct MembersEntry {
  const char* name;
  const char* caption;  ///< "-": a line
  Command MembersPage::*command;
};

/// The names and requests of the members of one kind of record.
struct MembersKind {
  const char* caption;  ///< above the members
  const char* tree;
  const char* add;
  const char* remove;
  RecordSource source;  ///< of the windows that are opened from here
  std::string_view recordTag;
  std::array<MemberSource, 2> sources;
  std::string_view members;  ///< request for what the record has
  std::span<const ReplyColumn> columns;
  const char* purpose;  ///< of the look-up by barcode or number
  std::span<const MembersEntry> entries;
};

/// A piece or group that is a member, or can become one.
struct MemberThing {
  std::string id;
  std::string status;
  std::string roomId;  ///< where it is kept, as far as the list tells
  bool isGroup = false;
};

/// The page of what belongs to a group or stays in a room: a tree of types, the list of what can be added of
/// a type, and the list of the members. A deriving page knows what an addition and a removal are.
class MembersPage {
 public:
  virtual ~MembersPage() = default;
  MembersPage(const MembersPage&) = delete;

  Command add, remove, addByBarcode, addByNumber, undo;
  Command editPiece, editGroup, newPiece, newGroup, sortAscending, sortDescending;

  Tree tree;
  Grid faCandidates;
  Button cmdAdd, cmdRemove;
  TextBox txtBarOrNumber;
  Button cmdAddByBarcode, cmdAddByNumber, cmdUndo;
  Label lblMembers;
  Grid faMembers;
  MenuItem mnuPopup;
  std::vector<std::unique_ptr<MenuItem>> mnuEntries;

  /// The first visit of the page.
  void load();
  /// A copy can only look at the members of its model.
  void lock();
  /// The copy is a record of its own now, without members.
  void unlock();
  virtual void secure(const Rights& rights) = 0;

  void tree_NodeClick();
  void addSelected();
  void cmdAddByBarcode_Click();
  void cmdAddByNumber_Click();
  void removeSelected();
  virtual void cmdUndo_Click() = 0;
  /// Nothing is selected any more.
  void DisableButtons();

 protected:
  /// `recordId` gives the id of the record that has the members.
  MembersPage(App& app, const Ask& ask, Frame& frame, const MembersKind& kind,
              std::function<std::string()> recordId);

  /// Asks the server to add the thing, which was looked up or chosen in the list; false when it did not.
  [[nodiscard]] virtual bool put(const MemberThing& thing, bool lookedUp) = 0;
  /// Takes the member out, and shows what has changed.
  virtual void take(const MemberThing& thing) = 0;
  /// Members were added or taken out.
  virtual void membersChanged() {}
  /// Tells a window that is opened from here where it was opened.
  virtual void fillSlots() = 0;

  /// Reads the members anew.
  void readMembers();
  /// Reads the types anew; the selected one stays selected, without another reading of its things.
  void buildTree();
  /// Selects a type, if the tree has it, and reads the things of the selected one.
  void showType(const std::string& key);
  [[nodiscard]] static std::string keyOf(const MemberSource& source, std::string_view typeId);
  /// Takes a thing out of a list, if it is there.
  static void dropRow(const ReplyList& list, std::string_view id);
  /// The member with this id, as far as it is listed.
  [[nodiscard]] std::optional<MemberThing> memberOf(std::string_view id) const;
  [[nodiscard]] std::string recordId() const { return recordId_(); }
  const MembersKind& kind() const { return kind_; }

  App& app_;
  const Ask& ask_;
  ReplyList candidates_;
  ReplyList members_;

 private:
  void connect();
  void makePopup();
  void connectList(Grid& grid);
  void fa_Click(Grid& grid);
  void addTypes(const MemberSource& source);
  void buildCandidates(const MemberSource& source);
  void addFound(void (*find)(App&));
  void wasAdded(const std::string& id);
  void edit();
  void openNew(int kind);
  void sort(SortOrder order);
  [[nodiscard]] const MemberSource* sourceOf(std::string_view key) const;
  [[nodiscard]] const ReplyList& activeList() const;
  [[nodiscard]] static MemberThing thingOf(const ReplyList& list, int row);

  const MembersKind& kind_;
  std::function<std::string()> recordId_;
  Grid* active_ = nullptr;  ///< the list in which a row was selected last
  bool locked_ = false;
  bool loaded_ = false;
};

}  // namespace vantry
