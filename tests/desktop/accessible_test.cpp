// What a screen reader finds, by the tree that it reads.
#include <QAccessible>
#include <QAccessibleTableInterface>

#include "booking/frmAddEquipType.h"
#include "booking/frmBookWiz.h"
#include "booking/frmBooking.h"
#include "booking/frmErrorReport.h"
#include "booking/frmGenAssign.h"
#include "booking/frmMPBarcode.h"
#include "booking/frmMultBibs.h"
#include "booking/frmMultItems.h"
#include "booking/frmOverride.h"
#include "booking/frmOverrideLibSched.h"
#include "booking/frmPickEquip.h"
#include "booking/frmRequester.h"
#include "booking/frmRoomInfo.h"
#include "booking/frmSelectMediaType.h"
#include "booking/frmSupervisor.h"
#include "booking/frmTimeLine.h"
#include "circulation/frmDischarge.h"
#include "circulation/frmPopupNote.h"
#include "desktop/desk_story.h"
#include "frame/frmLocation.h"
#include "frame/frmVersionInfo.h"
#include "inventory/frmBarcodes.h"
#include "inventory/frmMaintDetails.h"
#include "inventory/frmMultBarOrNo.h"
#include "inventory/frmNotes.h"
#include "inventory/frmNumbers.h"
#include "inventory/frmRoomEquip.h"
#include "inventory/frmStatus.h"
#include "inventory/inventory_view.h"
#include "inventory/inventory_window.h"
#include "lists/legend.h"
#include "messaging/dialogs.h"
#include "messaging/frmAbout.h"
#include "messaging/frmBibSearch.h"
#include "messaging/frmError.h"
#include "messaging/frmLogon.h"
#include "messaging/frmMarcRecord.h"
#include "messaging/frmPassword.h"
#include "messaging/return_codes.h"
#include "options/frmOptions.h"
#include "platform/calendars.h"
#include "platform/schedule_bar.h"
#include "records/frmMultPatron.h"
#include "records/frmPatronCounter.h"
#include "records/records.h"
#include "records/search_window.h"
#include "schedule/frmDaemonUpdate.h"
#include "schedule/frmSched.h"
#include "schedule/main_views.h"
#include "search/frmFind.h"

namespace vantry::test {
namespace {

QAccessibleInterface& interfaceOf(QObject& object) {
  return *QAccessible::queryAccessibleInterface(&object);
}

/// Grounds and lines, which have nothing to say.
bool isControl(const QAccessibleInterface& item) {
  switch (item.role()) {
    case QAccessible::Client:
    case QAccessible::Grouping:
    case QAccessible::Pane:
    case QAccessible::Separator:
    case QAccessible::ScrollBar:
    case QAccessible::StaticText:
    case QAccessible::AlertMessage:
    case QAccessible::Graphic:
    case QAccessible::Cell:
    case QAccessible::ListItem:
    case QAccessible::TreeItem:
    case QAccessible::NoRole:
      return item.state().focusable && item.role() == QAccessible::Client;
    default:
      return true;
  }
}

/// The roles and places of all controls without a name.
void collectUnnamed(QAccessibleInterface& item, const std::string& path, std::string& unnamed) {
  if (item.state().invisible) return;
  const std::string name = item.text(QAccessible::Name).toStdString();
  const std::string widget = item.object() ? item.object()->objectName().toStdString() : "";
  const std::string here = path + '/' + (widget.empty() ? name : widget);
  if (isControl(item) && name.empty()) unnamed += here + " (role " + std::to_string(item.role()) + ")\n";
  const int children = std::min(item.childCount(), 60);  // a long list repeats itself
  for (int i = 0; i < children; ++i) {
    if (QAccessibleInterface* child = item.child(i)) collectUnnamed(*child, here, unnamed);
  }
}

class AccessibleStory : public DeskStory {
 protected:
  void expectNamed(Form& form) {
    desktop.handleEvents();
    std::string unnamed;
    QAccessibleInterface& top = interfaceOf(window(form));
    EXPECT_TRUE(top.role() == QAccessible::Window || top.role() == QAccessible::Dialog) << form.Name();
    collectUnnamed(top, "", unnamed);
    EXPECT_EQ(unnamed, "") << form.Name();
  }
  /// The window as it is once it has loaded.
  template <class Window, class... Arguments>
  void expectNamedWindow(Arguments&&... arguments) {
    Window form(std::forward<Arguments>(arguments)...);
    expectNamedOnceShown(form);
  }
  /// The window of the first record that a list of the inventory shows.
  InventoryWindow& openFirst(int kind) {
    InventoryView& view = viewAs<InventoryView>(mainWindow(), inventoryViewOf(kind).id);
    InventoryWindow* window = nullptr;
    desktop.dispatch([&] {
      mainWindow().showView(inventoryViewOf(kind).id);
      for (const TreeNode* root : view.tvwDB.Roots()) {
        std::vector<const TreeNode*> nodes{root};
        nodes.insert(nodes.end(), root->children.begin(), root->children.end());
        for (const TreeNode* node : nodes)
          if (!view.fa.hasData()) view.tvwDB.click(node->key);
      }
      window = dynamic_cast<InventoryWindow*>(
          OpenRecordWindow(app(), {kind, view.fa.TextMatrix(1, 0), kSourceMainWindow}));
    });
    return *window;
  }
  void expectNamedOnceShown(Form& form) {
    desktop.dispatch([&] { form.Show(); });
    ASSERT_TRUE(form.isShown()) << form.Name();
    expectNamed(form);
  }
};

TEST_F(AccessibleStory, EveryControlOfEveryWindowHasAName) {
  startAs("admin", 3);
  const std::string out = cell(rowOf("99"), 0);
  for (const ViewRow& view : viewTable()) {
    SCOPED_TRACE(view.picture);
    mainWindow().showView(view.id);
    expectNamed(mainWindow());
  }
  mainWindow().showView(ViewId::Staff);
  button("cmdStaffAdd").click();
  expectNamed(mainWindow());
  App& app = this->app();
  Windows& all = app.windows;
  {
    frmBooking editor(app);
    expectNamedOnceShown(editor);
    for (int page = 0; page < 7; ++page) {
      SCOPED_TRACE(page);
      editor.tabBooking.SelectedTab = page;
      expectNamed(editor);
    }
  }
  {
    frmBookWiz wizard(app);
    expectNamedOnceShown(wizard);
    for (std::size_t page = 1; page < frmBookWiz::kPages; ++page) {
      SCOPED_TRACE(page);
      wizard.pages[page - 1].frame.Visible = false;
      wizard.pages[page].frame.Visible = true;
      expectNamed(wizard);
    }
    answerBox("Booking Wizard in progress!  Cancel this booking?", "Yes");
    desktop.dispatch([&] { wizard.Unload(); });
  }
  for (const int kind : {kEquipment, kGroup, kRoom, kMaintenance}) {
    SCOPED_TRACE(kind);
    InventoryWindow& window = openFirst(kind);
    for (int page = 0; page < static_cast<int>(window.mnuViewPages.size()); ++page) {
      SCOPED_TRACE(page);
      desktop.dispatch([&] { window.mnuViewPage_Click(page); });
      expectNamed(window);
    }
    window.Unload();
  }
  const BookingRecord record;
  expectNamedWindow<frmSched>(app);
  {
    frmOptions options(app);
    expectNamedOnceShown(options);
    for (int page = 0; page <= kSoundPage; ++page) {
      SCOPED_TRACE(page);
      options.pages.tabOptions.choose(page);
      expectNamed(options);
    }
  }
  expectNamedWindow<frmAddEquipType>(app, record);
  for (const int report :
       {codes::NotCharged, codes::MediaConflict, codes::EquipmentConflict, codes::CalendarConflict})
    expectNamedWindow<frmErrorReport>(app, report);
  expectNamedWindow<frmGenAssign>(app, frmGenAssign::Counts{1, 1, 1});
  expectNamedWindow<frmMPBarcode>(app, "Ito, Beata");
  expectNamedWindow<frmMultBibs>(app, ItemMatches{});
  expectNamedWindow<frmMultItems>(app, ItemMatches{});
  {
    frmMultPatron patrons(app,
                          PatronUse::Booking);  // as it is drawn: it loads only with patrons in the reply
    desktop.show(patrons);
    expectNamed(patrons);
  }
  expectNamedWindow<frmOverride>(app, OverrideFacts{});
  expectNamedWindow<frmOverrideLibSched>(app, frmOverrideLibSched::Status{});
  expectNamedWindow<frmPickEquip>(app, record);
  expectNamedWindow<frmRequester>(app, record);
  expectNamedWindow<frmRoomInfo>(app, record);
  expectNamedWindow<frmSelectMediaType>(app, std::vector<MediaType>{});
  expectNamedWindow<frmSupervisor>(app, "OVOTR");
  expectNamedWindow<frmTimeLine>(app);
  {
    frmDischarge discharge(app);
    discharge.BookingId = std::stoi(out);
    expectNamedOnceShown(discharge);
  }
  for (const std::string_view sought : {std::string_view("0"), kFindPatronTag, kFindRoomTag}) {
    frmFind find(app);
    find.Tag = std::string(sought);
    expectNamedOnceShown(find);
    for (int category = 0; category < find.cboSearchFor.ListCount(); ++category) {
      find.cboSearchFor.select(category);
      TabStrip& pages = find.criteria(find.cboSearchFor.ListIndex).tabSearch;
      for (int page = 0; page < static_cast<int>(pages.Tabs().size()); ++page) {
        pages.choose(page);
        expectNamed(find);
      }
    }
  }
  expectNamedWindow<frmPopupNote>(app);
  expectNamedWindow<frmMultBarOrNo>(app);
  expectNamedWindow<frmStatus>(app, kEquipment, "1");
  expectNamedWindow<frmNotes>(app, "Status Note", "Enter a note for this status.");
  expectNamedWindow<frmBarcodes>(app, "1");
  expectNamedWindow<frmMaintDetails>(app, kSourceRoom, DetailLine{});
  expectNamedWindow<frmRoomEquip>(app, "1");
  ShowAssignedNumbers(app, kEquipment, "1");
  expectNamed(all[all.Count() - 1]);
  expectNamedWindow<frmPatronCounter>(app, 1);
  expectNamedWindow<frmLocation>(app);
  expectNamedWindow<frmAbout>(all, app.session);
  expectNamedWindow<frmDaemonUpdate>(app);
  expectNamedWindow<frmVersionInfo>(all, desktop, clock_, std::vector<ComponentFailure>(1));
  expectNamedWindow<frmError>(all, app.tools, app.global,
                              ErrorReport{"Failed", "CBK", "7", "frmMain", "LOC"});
  expectNamedWindow<frmLoginInfo>(all, app.session, "Main Library");
  ConnectDialog connecting(all);
  connecting.open();
  expectNamed(all[all.Count() - 1]);
  connecting.Close();
  expectNamedWindow<frmPassword>(all, app.session);
  expectNamedWindow<frmLogon>(all, app.tools, app.session, "");
  expectNamedWindow<frmMarcRecord>(all, app.message, MarcKind::Bib);
  expectNamedWindow<frmBibSearch>(all, frmBibSearch::Services{app.tools, app.global, app.message},
                                  frmBibSearch::Manner{});
}

TEST_F(AccessibleStory, TheDayListTellsItsStatusAndHidesWhatIsHidden) {
  startAs("admin", 3);
  const int charged = rowOf("99");
  ASSERT_GT(charged, 0);
  QAccessibleTableInterface* table = interfaceOf(list()).tableInterface();
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->cellAt(charged - 1, 0)->text(QAccessible::Description), "Charged");
  int visible = 0;
  for (int col = 0; col < grid().Cols; ++col) visible += grid().ColWidth(col) > 0 ? 1 : 0;
  EXPECT_EQ(table->columnCount(), visible);
}

class Accessible : public DesktopTest {};

TEST_F(Accessible, SummariesKeepTheirValueAndFaultsAreAlerts) {
  struct Facts : Form {
    explicit Facts(Windows& all) : Form(all, "frmFacts") {
      lblValue.ReadOnlyField = true;
      lblValue.Caption = "Lecture Hall 121";
      lblFault.Alert = true;
      Layout = Column{Fields{lblPlace, lblValue}, lblFault};
    }
    Label lblPlace{*this, "lblPlace", "&Place:"};
    Label lblValue{*this, "lblValue"};
    Label lblFault{*this, "lblFault"};
  } facts(windows);
  show(facts);
  EXPECT_EQ(interfaceOf(find<QWidget>(facts, "lblValue")).text(QAccessible::Name), "Place: Lecture Hall 121");
  facts.lblFault.Caption = "Wrong password.";
  QAccessibleInterface& fault = interfaceOf(find<QWidget>(facts, "lblFault"));
  EXPECT_EQ(fault.role(), QAccessible::AlertMessage);
  EXPECT_EQ(fault.text(QAccessible::Name), "Wrong password.");
}

TEST_F(Accessible, DaysAndTimesHaveARoleAndAValue) {
  struct Times : Form {
    explicit Times(Windows& all) : Form(all, "frmTimes") {
      calMonth.Value = Date{2026, 11, 24};
      calMonth.mark({2026, 11, 3}, {0x00FF00, "2 bookings"});
      for (TimeScale* scale : {static_cast<TimeScale*>(&rulTime), static_cast<TimeScale*>(&schTime)}) {
        scale->Slots = 32;
        scale->PerHour = 2;
        scale->FirstHour = 6;
      }
      schTime.Start = 6;
      schTime.Finish = 9;
      Layout = Column{calMonth, rulTime, schTime};
    }
    MonthCalendar calMonth{*this, "calMonth"};
    Ruler rulTime{*this, "rulTime"};
    ScheduleBar schTime{*this, "schTime"};
  } times(windows);
  show(times);
  QAccessibleInterface& month = interfaceOf(find<QWidget>(times, "calMonth"));
  ASSERT_EQ(month.childCount(), 30);
  EXPECT_EQ(month.text(QAccessible::Value), "24 November 2026");
  EXPECT_EQ(month.child(2)->text(QAccessible::Name), "Tuesday, 3 November 2026");
  EXPECT_EQ(month.child(2)->text(QAccessible::Description), "2 bookings");
  EXPECT_TRUE(month.child(23)->state().selected);
  EXPECT_EQ(month.indexOfChild(month.child(23)), 23);
  const QPoint middle = month.child(9)->rect().center();
  EXPECT_EQ(month.childAt(middle.x(), middle.y()), month.child(9));

  QAccessibleInterface& bar = interfaceOf(find<QWidget>(times, "schTime"));
  EXPECT_EQ(bar.role(), QAccessible::Slider);
  EXPECT_EQ(bar.text(QAccessible::Value), "09:00 AM to 10:30 AM");
  times.schTime.moveBy(2);
  EXPECT_EQ(bar.text(QAccessible::Value), "10:00 AM to 11:30 AM");
  EXPECT_EQ(interfaceOf(find<QWidget>(times, "rulTime")).text(QAccessible::Value), "06:00 AM to 10:00 PM");
}

}  // namespace
}  // namespace vantry::test
