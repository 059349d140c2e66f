// Shows every kind of control in windows like those of the program, and writes their pictures: for whoever
// works on the look. Usage: vantry_gallery FOLDER [dark]

#include <QApplication>
#include <QFontDatabase>
#include <QPixmap>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <iostream>

#include "desktop/chatter.h"
#include "desktop/qt_desktop.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "messaging/frmError.h"
#include "messaging/frmLogon.h"
#include "platform/bars.h"
#include "platform/calendars.h"
#include "platform/controls.h"
#include "platform/fields.h"
#include "platform/form.h"
#include "platform/grid.h"
#include "platform/tabs.h"
#include "platform/tree.h"
#include "platform/windows.h"

using namespace vantry;

struct Status {
  const char* caption;
  Colour back;
  Colour fore;
};
static constexpr Status kStatus[] = {{"Charged", 0xFFFFFF, 0x008000},
                                     {"Complete", 0xFFFFFF, 0x800000},
                                     {"Canceled", 0xFFFFFF, 0x808080},
                                     {"Unclaimed", 0x80000005, 0x0000C0},
                                     {"Overdue", 0xC0E0FF, 0x000080}};

class DayForm : public Form {
 public:
  explicit DayForm(Windows& all) : Form(all, "frmGallery") {
    Caption = "Vantry";
    lblView.Heading = true;
    for (const Status& status : kStatus) {
      Label& label = lblLegend.add(fraLegend, status.caption);
      label.Swatch = true;
      label.BackColor = status.back;
      label.ForeColor = status.fore;
      chkLegend.add(fraLegend, "").Value = true;
    }
    fillBars();
    fillGrid();
    cmdCharge.Enabled = false;
    cmdDischarge.Enabled = false;
    dtDay.Value = Date{2026, 11, 24};
    fraLegend.Layout =
        Row{chkLegend(0), lblLegend(0), Gap{},        chkLegend(1), lblLegend(1), Gap{},        chkLegend(2),
            lblLegend(2), Gap{},        chkLegend(3), lblLegend(3), Gap{},        chkLegend(4), lblLegend(4)};
    fraView.Layout = Column{Row{lblDay, dtDay, cmdToday, Gap{}, lblCount, Stretch{}, fraLegend}, faBookings,
                            Row{cmdNew, cmdEdit, cmdDelete, cmdCancel, Gap{}, cmdCharge, cmdDischarge,
                                Stretch{}, cmdSearch, cmdPrint}};
    Layout = Row{albStandard, Column{lblView, fraView}.share(1)};
  }

  MenuItem mnuFile{*this, "mnuFile", "&File"};
  MenuItem mnuFileNew{mnuFile, "mnuFileNew", "&New"};
  MenuItem mnuFileNewBooking{mnuFileNew, "mnuFileNewBooking", "&Booking"};
  MenuItem mnuFilePrint{mnuFile, "mnuFilePrint", "&Print"};
  MenuItem mnuFileLine{mnuFile, "mnuFileLine", "-"};
  MenuItem mnuFileExit{mnuFile, "mnuFileExit", "E&xit"};
  MenuItem mnuView{*this, "mnuView", "&View"};
  MenuItem mnuViewMerge{mnuView, "mnuViewMerge", "&Merge Cells"};
  MenuItem mnuTools{*this, "mnuTools", "&Tools"};
  MenuItem mnuMode{*this, "mnuMode", "&Mode"};
  MenuItem mnuHelp{*this, "mnuHelp", "&Help"};
  MenuItem mnuPopup{*this, "mnuPopup", ""};
  MenuItem mnuPopupNew{mnuPopup, "mnuPopupNew", "New"};
  MenuItem mnuPopupEdit{mnuPopup, "mnuPopupEdit", "Edit"};
  MenuItem mnuPopupDelete{mnuPopup, "mnuPopupDelete", "Delete"};
  MenuItem mnuPopupLine{mnuPopup, "mnuPopupLine", "-"};
  MenuItem mnuPopupSort{mnuPopup, "mnuPopupSort", "Sort"};
  MenuItem mnuPopupSortUp{mnuPopupSort, "mnuPopupSortUp", "Ascending"};
  MenuItem mnuPopupMerge{mnuPopup, "mnuPopupMerge", "&Merge Cells"};
  ToolBar barMain{*this, "barMain"};
  ComboBox abView{*this, "abView"};
  ListBar albStandard{*this, "albStandard"};
  Label lblView{*this, "lblView", " Booking Schedule - Day View"};
  Frame fraView{*this, "fraView", "", 0};
  Label lblDay{fraView, "lblDay", "Bookings of d&ay:"};
  DateField dtDay{fraView, "dtDay"};
  Button cmdToday{fraView, "cmdToday", "T&oday"};
  Label lblCount{fraView, "lblCount", "38 Bookings"};
  Frame fraLegend{fraView, "fraLegend", "", 0};
  ControlArray<CheckBox> chkLegend{"chkLegend"};
  ControlArray<Label> lblLegend{"lblLegend"};
  Grid faBookings{fraView, "faBookings"};
  Button cmdNew{fraView, "cmdNew", "&New"};
  Button cmdEdit{fraView, "cmdEdit", "&Edit"};
  Button cmdDelete{fraView, "cmdDelete", "&Delete"};
  Button cmdCancel{fraView, "cmdCancel", "Cance&l"};
  Button cmdCharge{fraView, "cmdCharge", "&Charge"};
  Button cmdDischarge{fraView, "cmdDischarge", "D&ischarge..."};
  Button cmdSearch{fraView, "cmdSearch", "&Search..."};
  Button cmdPrint{fraView, "cmdPrint", "&Print"};
  StatusBar StatusBar1{*this, "StatusBar1"};

 private:
  void fillBars() {
    mnuPopup.Visible = false;
    mnuViewMerge.Checked = true;
    mnuPopupMerge.Checked = true;
    mnuFileNewBooking.Shortcut = "Ctrl+N";
    mnuFilePrint.Picture = "print";
    mnuPopupNew.Picture = "booking";
    mnuPopupEdit.Picture = "edit";
    mnuPopupDelete.Picture = "delete";
    mnuPopupDelete.Enabled = false;
    Tool& fresh = barMain.addButton(100, "abNew", "New", "new");
    barMain.addChoice(fresh, 202, "Booking", "booking");
    barMain.addLine();
    barMain.addCombo("abView", "View:", abView);
    abView.AddItem("Schedule - Day View");
    abView.AddItem("Schedule - Month View");
    abView.ListIndex = 0;
    barMain.addLine();
    barMain.addButton(1, "abSearch", "Search", "search");
    barMain.addButton(2, "abOptions", "Options", "options");
    barMain.addButton(3, "abHelp", "Help", "help").Enabled = false;
    albStandard.setGroups({{"Inventory",
                            {{"1", "Rooms", "room"},
                             {"2", "Equipment", "equipment"},
                             {"3", "Equipment Groups", "group"},
                             {"4", "Equipment Maintenance", "maintenance"}}},
                           {"Schedule",
                            {{"5", "Charge", "charge"},
                             {"6", "Discharge", "discharge"},
                             {"7", "Quick Discharge", "quick-discharge"},
                             {"8", "Day View", "day"},
                             {"9", "Month View", "month"},
                             {"10", "Year View", "year"}}},
                           {"Bookings",
                            {{"11", "New Booking", "booking"},
                             {"12", "Booking Wizard", "wizard"},
                             {"13", "New Pick-Up", "pickup"}}},
                           {"Staffing", {{"14", "Staff", "staff"}}}});
    albStandard.CurrentItem = "8";
    StatusBar1.Panels(1).Text = "Main Library - Media Desk";
    StatusBar1.Panels(2).Text = "38 of 38 record(s) processed";
    StatusBar1.Panels(3).style = Panel::Style::Date;
    StatusBar1.Panels(4).style = Panel::Style::Time;
    StatusBar1.Panels(5).style = Panel::Style::Picture;
    StatusBar1.Panels(5).Picture = "lock";
  }

  void fillGrid() {
    static constexpr const char* kNames[] = {"Abernathy, Ruth", "Administrative",     "Okonkwo, Chidi",
                                             "Lindqvist, Maja", "Requester Withheld", "Novák, Jiří"};
    static constexpr const char* kPlaces[] = {"Main Library - Media Desk", "Lecture Hall 2",
                                              "Seminar Room 114"};
    static constexpr int kWidths[] = {900, 900, 900, 2200, 1500, 1400, 2800, 1300, 1000};
    faBookings.Redraw = false;
    faBookings.FormatString =
        "<Start Time|<End Date|<End Time|<Requester|<Confirmation #|<Booking Type|<Delivery Room/Pickup "
        "Location|<Equipment Count|<Item Count";
    faBookings.Rows = 39;
    for (int col = 0; col < 9; ++col) faBookings.ColWidth(col, kWidths[col]);
    for (int row = 1; row < 39; ++row) {
      const int hour = 8 + row / 4;
      const std::string texts[] = {hourMinuteAmPm({hour, row % 4 * 15, 0}),
                                   "11/24/2026",
                                   hourMinuteAmPm({hour + 1 + row % 3, row % 4 * 15, 0}),
                                   kNames[row * 7 % 6],
                                   "B" + std::to_string(100200 + row * 13),
                                   row % 3 == 0   ? "Pick-Up"
                                   : row % 3 == 1 ? "Delivery"
                                                  : "Room Only",
                                   kPlaces[row % 3],
                                   std::to_string(row % 4),
                                   std::to_string(row % 3)};
      for (int col = 0; col < 9; ++col) {
        faBookings.TextMatrix(row, col, texts[col]);
        const Status& status = kStatus[row * 3 % 5];
        if (row % 7 != 0) faBookings.CellColours(row, col, status.back, status.fore);
      }
    }
    faBookings.Row = 5;
    faBookings.Redraw = true;
  }
};

class FieldsForm : public Form {
 public:
  explicit FieldsForm(Windows& all) : Form(all, "frmFields") {
    Caption = "Booking - B100226";
    lblId.ReadOnlyField = true;
    txtNote.MultiLine = true;
    txtNote.Text = "Bring the adapter for the old projector.\nKeys at the porter's.";
    txtName.Text = "Abernathy, Ruth";
    txtCount.MaxLength = 4;
    txtCount.Text = "12";
    txtLocked.Text = "only to be read";
    txtLocked.Locked = true;
    for (const char* text : {"(none)", "Delivery", "Pick-Up", "Room Only"}) cboType.AddItem(text);
    cboType.ListIndex = 1;
    for (const char* text : {"Projector, digital", "Screen, portable", "Microphone, wireless"})
      lstItems.AddItem(text);
    lstItems.ListIndex = 1;
    dtStart.Value = Date{2026, 11, 24};
    tmStart.Value = Time{14, 30, 0};
    optRoom.Value = true;
    chkPrint.Value = true;
    chkOff.Enabled = false;
    cmdOK.Default = true;
    cmdCancel.Cancel = true;
    cmdApply.Enabled = false;
    fillTree();
    fraWhen.Layout = Fields{lblStart, Row{dtStart, tmStart}, lblEnd, Row{dtEnd, tmEnd}};
    fraWhere.Layout = Column{optRoom, optPickup, chkPrint, chkOff};
    fraItems.Layout = Row{tvwItems, lstItems};
    Layout = Column{Fields{lblIdName, lblId, lblName, txtName, lblType, cboType, lblCount, txtCount,
                           lblLockedName, txtLocked, lblNote, txtNote},
                    Row{fraWhen, fraWhere}, fraItems,
                    Row{imgWarn, lblHint, Stretch{}, cmdOK, cmdCancel, cmdApply}};
  }

  Label lblIdName{*this, "lblIdName", "Confirmation #:"};
  Label lblId{*this, "lblId", "B100226"};
  Label lblName{*this, "lblName", "&Requester:"};
  TextBox txtName{*this, "txtName"};
  Label lblType{*this, "lblType", "Booking &type:"};
  ComboBox cboType{*this, "cboType"};
  Label lblCount{*this, "lblCount", "&Attendance:"};
  TextBox txtCount{*this, "txtCount"};
  Label lblLockedName{*this, "lblLockedName", "Locked:"};
  TextBox txtLocked{*this, "txtLocked"};
  Label lblNote{*this, "lblNote", "&Note:"};
  TextBox txtNote{*this, "txtNote"};
  Frame fraWhen{*this, "fraWhen", "When"};
  Label lblStart{fraWhen, "lblStart", "&Start:"};
  DateField dtStart{fraWhen, "dtStart"};
  TimeField tmStart{fraWhen, "tmStart"};
  Label lblEnd{fraWhen, "lblEnd", "E&nd:"};
  DateField dtEnd{fraWhen, "dtEnd"};
  TimeField tmEnd{fraWhen, "tmEnd"};
  Frame fraWhere{*this, "fraWhere", "Where"};
  OptionButton optRoom{fraWhere, "optRoom", "Deliver to a &room"};
  OptionButton optPickup{fraWhere, "optPickup", "&Pick up at the desk"};
  CheckBox chkPrint{fraWhere, "chkPrint", "Print the &confirmation"};
  CheckBox chkOff{fraWhere, "chkOff", "Cannot be changed"};
  Frame fraItems{*this, "fraItems", "Equipment"};
  Tree tvwItems{fraItems, "tvwItems"};
  ListBox lstItems{fraItems, "lstItems"};
  Image imgWarn{*this, "imgWarn", "warning"};
  Label lblHint{*this, "lblHint", "Two pieces are overdue."};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};
  Button cmdApply{*this, "cmdApply", "A&pply"};

 private:
  void fillTree() {
    tvwItems.Pictures = {"folder-closed", "folder-open", "equipment"};
    (void)tvwItems.Add("", "a", "Projectors", 1);
    tvwItems.find("a")->openImage = 2;
    tvwItems.find("a")->expanded = true;
    (void)tvwItems.Add("a", "a1", "Projector, digital", 3);
    (void)tvwItems.Add("a", "a2", "Projector, slides", 3);
    (void)tvwItems.Add("", "b", "Microphones", 1);
    tvwItems.find("b")->openImage = 2;
    (void)tvwItems.Add("b", "b1", "Microphone, wireless", 3);
    tvwItems.SelectedKey = "a1";
  }
};

/// A line to nowhere: the windows of the messaging layer only want to have one.
struct NoServer : Transport {
  bool reach(std::string&) override { return false; }
  LogonAnswer logon(std::string_view, std::string_view) override { return {LogonResult::Refused}; }
  void logoff() override {}
  bool changePassword(std::string_view, std::string_view, std::string&) override { return false; }
  DeliveryResult send(const Request&) override { return {}; }
};

class IconForm : public Form {
 public:
  explicit IconForm(Windows& all) : Form(all, "frmIcons") {
    Caption = "Icons";
    std::vector<BarEntry> entries;
    Column column{};
    static constexpr const char* kNames[] = {
        "new",         "booking",         "wizard",       "pickup",         "equipment",     "group",
        "room",        "maintenance",     "options",      "search",         "help",          "charge",
        "discharge",   "quick-discharge", "day",          "month",          "year",          "staff",
        "conflict",    "delivery",        "pickup-slips", "room-schedules", "library-rooms", "equipment-list",
        "item-list",   "error",           "question",     "warning",        "information",   "vantry",
        "refresh",     "print",           "edit",         "delete",         "cancel",        "today",
        "folder-open", "folder-closed",   "lock",         "calendar"};
    int count = 0;
    Row row{};
    for (const char* name : kNames) {
      pictures.push_back(std::make_unique<Image>(*this, name, name));
      row.children.push_back(*pictures.back());
      if (++count % 10 == 0) {
        column.children.push_back(row);
        row = Row{};
      }
    }
    Layout = column;
  }
  std::vector<std::unique_ptr<Image>> pictures;
};

class CalendarForm : public Form {
 public:
  explicit CalendarForm(Windows& all) : Form(all, "frmCalendars") {
    Caption = "Booking Calendars";
    for (const char* caption : {"Delivery", "Library/Media Center Scheduled", "Pickup"})
      tabSched.addTab(caption);
    tabSched.SelectedTab = 1;
    for (CalendarControl* calendar : std::initializer_list<CalendarControl*>{&calMonth, &calYear}) {
      calendar->Value = Date{2026, 11, 24};
      for (int day = 2; day < 300; day += 3)
        calendar->mark(addDays({2026, 3, 1}, day), {day % 2 == 0 ? 0xC0FFC0U : 0xFFD0B0U, "3 bookings"});
    }
    Layout = Column{tabSched, Row{calMonth, calYear}};
  }
  TabStrip tabSched{*this, "tabSched"};
  MonthCalendar calMonth{*this, "calMonth"};
  YearCalendar calYear{*this, "calYear"};
};

/// Pictures of what is open now beside the form.
static void pictureOf(QWidget* widget, const QString& file) {
  QApplication::processEvents();
  if (widget) widget->grab().save(file);
}

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  quietUnseenScreen();
  if (argc < 2 || QFontDatabase::families().isEmpty()) {
    std::cerr << "vantry_gallery FOLDER [dark]; fonts must be there\n";
    return 2;
  }
  QApplication::setApplicationDisplayName("Vantry");
  const bool dark = argc > 2;
  style::apply(application, dark ? style::Scheme::Dark : style::Scheme::Light);
  const QString folder = QString::fromLocal8Bit(argv[1]) + (dark ? "/dark-" : "/light-");
  QtDesktop desktop;
  Windows all(desktop);
  DayForm day(all);
  FieldsForm fields(all);
  NoServer server;
  ServerSession session(server);
  ServerTools tools(desktop);
  TagMessage message(server);
  modGlobal global(all, message, tools);
  frmLogon logon(all, tools, session, "");
  frmError error(all, tools, global,
                 {"The server could not read the request.", "BOOKDAY", "-98", "frmMain", "DATE"});
  IconForm icons(all);
  CalendarForm calendars(all);

  day.Show();
  desktop.handleEvents();
  if (QWidget* window = QApplication::activeWindow()) window->resize(1366, 740);
  desktop.handleEvents();
  desktop.writePicture(day, utf8(folder + "day.png"));
  day.faBookings.MergeCells = MergeMode::Free;
  for (int col = 0; col < day.faBookings.Cols; ++col) day.faBookings.MergeCol(col, true);
  day.faBookings.SetFocus();
  desktop.handleEvents();
  desktop.writePicture(day, utf8(folder + "day-merged.png"));
  QTimer::singleShot(50, [&] {
    pictureOf(QApplication::activePopupWidget(), folder + "popup.png");
    QApplication::activePopupWidget()->close();
  });
  desktop.popupMenu(day.mnuPopup, nullptr);
  fields.Show();
  desktop.handleEvents();
  desktop.writePicture(fields, utf8(folder + "fields.png"));
  QTest::keyClick(QApplication::activeWindow()->findChild<QWidget*>("dtEnd"), Qt::Key_F4);
  pictureOf(QApplication::activePopupWidget(), folder + "date.png");
  QApplication::activePopupWidget()->close();
  calendars.Show();
  desktop.handleEvents();
  desktop.writePicture(calendars, utf8(folder + "calendars.png"));
  desktop.showHelp("");
  desktop.handleEvents();
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->objectName() == "help") pictureOf(window, folder + "help.png");
  }
  error.Show();
  error.cmdDetailsExpand.press();
  desktop.handleEvents();
  desktop.writePicture(error, utf8(folder + "error.png"));
  logon.Show();
  logon.txtOperator.type("admin");
  logon.txtPassword.type("wrong");
  logon.cmdOK.press();
  desktop.handleEvents();
  desktop.writePicture(logon, utf8(folder + "logon.png"));
  icons.Show();
  desktop.handleEvents();
  desktop.writePicture(icons, utf8(folder + "icons.png"));
  int kind = 0;
  for (const char* text :
       {"Are you sure you wish to delete the selected booking?", "38 bookings are listed.",
        "Booking in progress.  Cannot delete!",
        "No authorized locations found for Media. Please consult your system administrator."}) {
    QTimer::singleShot(50, [&] {
      QWidget* box = QApplication::activeModalWidget();
      pictureOf(box, folder + QStringLiteral("box%1.png").arg(kind));
      box->findChild<QPushButton*>()->click();
    });
    desktop.messageBox(
        {static_cast<Box::Kind>(kind), text, "",
         kind == 0 ? std::vector<std::string>{"&Yes", "&No"} : std::vector<std::string>{"&OK"}});
    ++kind;
  }
  return 0;
}
