#pragma once

// What the stories of the inventory's lists and record windows share.
#include <QAbstractItemView>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QPlainTextEdit>
#include <QTreeWidget>

#include "desktop/desk_story.h"
#include "inventory/inventory_window.h"

namespace vantry::test {

struct InventoryDesk : DeskStory {
  using DeskStory::DeskStory;

  void open(ViewId view) {
    run([&] { mainWindow().showView(view); });
  }
  /// Clicks the node whose text begins so.
  void clickNode(const char* tree, const QString& text) {
    auto& widget = find<QTreeWidget>(mainWindow(), tree);
    for (QTreeWidgetItemIterator item(&widget); *item; ++item) {
      if (!(*item)->text(0).startsWith(text)) continue;
      widget.scrollToItem(*item);
      QTest::mouseClick(widget.viewport(), Qt::LeftButton, {}, widget.visualItemRect(*item).center());
      desktop.handleEvents();
      return;
    }
    FAIL() << tree << " has no node " << text.toStdString();
  }
  QString node(const char* tree, const QString& text) {
    const auto found =
        find<QTreeWidget>(mainWindow(), tree).findItems(text, Qt::MatchStartsWith | Qt::MatchRecursive);
    return found.isEmpty() ? QString() : found.front()->text(0);
  }
  GridView& grid(const char* name) { return find<GridView>(mainWindow(), name); }
  int rowsOf(const char* name) { return grid(name).model()->rowCount(); }
  /// Clicks the row with this text in one of its columns.
  void clickText(const char* name, const QString& text) {
    GridView& list = grid(name);
    for (int row = 0; row < list.model()->rowCount(); ++row) {
      for (int column = 0; column < list.model()->columnCount(); ++column) {
        if (list.model()->index(row, column).data().toString() != text) continue;
        clickRow(list, row + 1, 0);
        desktop.handleEvents();
        return;
      }
    }
    FAIL() << name << " has no row with " << text.toStdString();
  }
  std::string typeId(std::string_view name) {
    for (const Category& type : app().context.categories.equipment) {
      if (type.name == name) return type.id;
    }
    throw std::runtime_error("no such type");
  }
  /// Buys a television into a storage room, with its number as barcode; gives its id.
  std::string buy(const std::string& number) {
    const int rc = ask("NEWEQIPD", televisionTags({{"BNO", number}}, number));
    EXPECT_EQ(rc, 0) << get("CANTREAD");
    const std::string id = get("EID");
    run([&] { LoadCategoryLists(app()); });
    return id;
  }
  /// What a save of a television carries behind `first`.
  std::vector<TagValue> televisionTags(std::vector<TagValue> first, const std::string& number,
                                       const std::string& maker = {}) {
    EXPECT_EQ(ask("GETARLOC", {{"LOC", app().context.locationId}}), 0);
    std::string room;
    while (app().message.NextRecord("RID")) {
      if (get("RNM").starts_with("Equipment Storage")) room = get("RID");
    }
    first.push_back({"ETI", typeId("Television")});
    first.insert(first.end(), {{"ETY", "Television"}, {"ENO", number}, {"EMA", maker}});
    for (const char* tag : {"EFO", "EMO", "ESN", "EQVP", "EQVR", "ESU", "EDP", "ENM"})
      first.push_back({tag, std::string_view(tag).starts_with("EQ") ? "0" : ""});
    first.insert(first.end(), {{"LOC", app().context.locationId}, {"RID", room}, {"RNM", ""}});
    return first;
  }

  // Record windows

  /// The window of this class that was opened last.
  template <class Window>
  Window& last() {
    for (int i = app().windows.Count() - 1; i >= 0; --i) {
      if (auto* found = dynamic_cast<Window*>(&app().windows[i]); found && found->isShown()) return *found;
    }
    throw std::runtime_error("no such window");
  }
  /// Presses the button for a new record in the view of this kind.
  template <class Window>
  Window& openNew(int kind) {
    press(mainWindow(), "cmdNewInv", kind);
    return last<Window>();
  }
  /// Opens the record with this text in the list of this kind that shows.
  template <class Window>
  Window& openRecord(int kind, const QString& text) {
    clickText(indexed("fa", kind).c_str(), text);
    press(mainWindow(), "cmdEditInv", kind);
    return last<Window>();
  }
  using DeskStory::press;
  void press(const Form& form, const char* name, int index) { click(form, indexed(name, index).c_str()); }
  static std::string indexed(const char* name, int index) {
    return name + ("(" + std::to_string(index) + ")");
  }
  /// Writes as an input method does, which knows all letters.
  void compose(const Form& form, const char* name, const QString& text) {
    auto& field = find<QWidget>(form, name);
    activate(window(form));
    field.setFocus();
    QInputMethodEvent input;
    input.setCommitString(text);
    QApplication::sendEvent(&field, &input);
    desktop.handleEvents();
  }
  /// Chooses from a list that opens.
  void choose(const Form& form, const char* name, const QString& entry) { choose(window(form), name, entry); }
  void choose(QWidget& window, const char* name, const QString& entry) {
    auto* combo = window.findChild<QComboBox*>(name);
    ASSERT_NE(combo, nullptr) << name;
    const int at = combo->findText(entry, Qt::MatchStartsWith);
    ASSERT_GE(at, 0) << name << " has no entry " << entry.toStdString();
    activate(window);
    combo->showPopup();
    combo->view()->setCurrentIndex(combo->model()->index(at, 0));
    QTest::keyClick(combo->view(), Qt::Key_Return);
    desktop.handleEvents();
  }
  void doubleClick(const Form& form, const char* name) {
    activate(window(form));
    QTest::mouseDClick(&find<QWidget>(form, name), Qt::LeftButton);
    desktop.handleEvents();
  }
  void openList(ViewId view, int kind, const char* category) {
    open(view);
    clickNode(indexed("tvwDB", kind).c_str(), category);
  }
  GridView& list(const Form& form, const char* name) { return find<GridView>(form, name); }
  int rowsIn(const Form& form, const char* name) { return list(form, name).model()->rowCount(); }
  void select(const Form& form, const char* name, int row) {
    clickRow(list(form, name), row, 0);
    desktop.handleEvents();
  }
  /// Adds a detail of the first type, in the window that opens.
  void addDetail(const Form& form, const char* text) {
    whenShown("txtDetails", [text](QWidget& window) {
      clickRow(*window.findChild<GridView*>("fa"), 1, 0);
      QTest::keyClicks(window.findChild<QPlainTextEdit*>("txtDetails"), text);
      window.findChild<QPushButton*>("cmdOK")->click();
    });
    click(form, "cmdAddDetail");
  }
  /// Applies a status in the window that a double click on the status opens.
  void applyStatus(const Form& form, const char* status, const char* note, const char* refusal = nullptr) {
    whenShown("cmdAddStatus", [status](QWidget& window) {
      auto& types = *window.findChild<GridView*>("fa(0)");
      const auto found = types.model()->match(types.model()->index(0, 1), Qt::DisplayRole, status);
      ASSERT_FALSE(found.isEmpty());
      clickRow(types, found.front().row() + 1, 0);
      window.findChild<QPushButton*>("cmdAddStatus")->click();
      window.findChild<QPushButton*>("cmdOK")->click();
    });
    whenShown("txtNotes", [note](QWidget& window) {
      QTest::keyClicks(window.findChild<QPlainTextEdit*>("txtNotes"), note);
      window.findChild<QPushButton*>("cmdOK")->click();
    });
    if (refusal) answerBox(refusal, "OK");
    doubleClick(form, "txtSTS_TYPE");
  }
  /// Gives the piece or group this active barcode by a scan, in the window that a double click opens.
  void giveBarcode(const Form& form, const char* barcode) {
    whenShown("cboBARCODE_STS", [this, barcode](QWidget& window) {
      wand(barcode);
      const auto* field = window.findChild<QLineEdit*>("txtBARCODE_NO");
      EXPECT_TRUE(waitUntil([&] { return field->text() == barcode; }));
      choose(window, "cboBARCODE_STS", "Active");
      window.findChild<QPushButton*>("cmdSave")->click();
      window.findChild<QPushButton*>("cmdClose")->click();
    });
    doubleClick(form, "txtBARCODE_NO");
  }
  std::string ofPiece(const std::string& id, std::string_view tag) {
    EXPECT_EQ(ask("GETEDTL", {{"EID", id}}), 0);
    return get(tag);
  }
  std::set<std::string> bookedIn(const std::string& booking) {
    EXPECT_EQ(ask("GETSEQ", {{"BOOKID", booking}}), 0);
    std::set<std::string> ids;
    while (app().message.NextRecord("EID")) ids.insert(get("EID"));
    return ids;
  }
  std::string caption(const Form& form) { return window(form).windowTitle().toStdString(); }
  /// The id of the piece or group that has this number; empty for none.
  std::string idOf(const char* number) {
    if (ask("GETIBYB", {{"BARORNO", "1"}, {"ENO", number}}) != 0) return {};
    return get("EID");
  }
};

}  // namespace vantry::test
