// Walks through the program on a small library as an operator would and writes a picture of every window that
// it meets: for whoever works on the look. Usage: vantry_tour FOLDER [small] [dark]

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <deque>
#include <iostream>

#include "booking/frmBookWiz.h"
#include "booking/frmBooking.h"
#include "booking/frmSupervisor.h"
#include "booking/modBooking_policy.h"
#include "booking/modBooking_rooms.h"
#include "circulation/charge_view.h"
#include "circulation/discharge_view.h"
#include "circulation/quick_discharge_view.h"
#include "desktop/chatter.h"
#include "desktop/demo_operator.h"
#include "desktop/form_window.h"
#include "desktop/installed_components.h"
#include "desktop/qt_desktop.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "frame/app.h"
#include "inventory/frmBarcodes.h"
#include "inventory/frmMaintDetails.h"
#include "inventory/frmNumbers.h"
#include "inventory/frmRoomEquip.h"
#include "inventory/frmStatus.h"
#include "inventory/group_view.h"
#include "inventory/inventory_view.h"
#include "inventory/inventory_window.h"
#include "inventory/staff_view.h"
#include "options/frmOptions.h"
#include "platform/clock.h"
#include "platform/settings.h"
#include "platform/text.h"
#include "records/records.h"
#include "records/search_window.h"
#include "schedule/day_view.h"
#include "schedule/frmSched.h"
#include "schedule/monitor_view.h"
#include "schedule/pick_list_view.h"
#include "schedule/program.h"
#include "search/frmFind.h"
#include "transport/embedded_server.h"
#include "transport/http_transport.h"
#include "transport/sealed_box.h"

namespace vantry {
namespace {

class Tour {
 public:
  Tour(QtDesktop& desktop, Program& program, QString folder, QSize size)
      : desktop_(desktop), program_(program), folder_(std::move(folder)), size_(size) {
    QObject::connect(&watch_, &QTimer::timeout, [this] { answerModal(); });
  }

  void run() {
    watch_.start(60);
    const std::vector<std::function<void()>> stops = {
        [this] { views(); },  [this] { staff(); },  [this] { inventory(); },    [this] { newBooking(); },
        [this] { wizard(); }, [this] { pickUp(); }, [this] { savedBooking(); }, [this] { circulation(); },
        [this] { policy(); }, [this] { search(); }, [this] { session(); },      [this] { options(); },
        [this] { monitor(); }};
    for (const auto& stop : stops) stop();
  }
  [[nodiscard]] bool isWritten() const { return written_; }

 private:
  App& app() { return program_.app; }
  frmMain& main() { return program_.main; }
  template <class View>
  View& view(ViewId id) {
    return dynamic_cast<View&>(main().view(id));
  }

  void picture(Form& form, const QString& name) {
    desktop_.handleEvents();
    FormWindow* window = desktop_.windowOf(form);
    if (!window) return;
    window->resize(window->size().boundedTo(size_));
    save(*window, name);
  }
  void save(QWidget& window, const QString& name) {
    const QString file = QString("%1/%2-%3.png").arg(folder_).arg(++number_, 2, 10, QChar('0')).arg(name);
    if (window.grab().save(file)) {
      std::cout << file.toStdString() << '\n';
      return;
    }
    std::cerr << "cannot write " << file.toStdString() << '\n';
    written_ = false;
  }

  /// Takes what stands in front and answers it: with the widget that the walk has named, else by closing it.
  void answerModal() {
    QWidget* window = QApplication::activeModalWidget();
    if (!window || !window->isVisible()) return;
    if (window != seen_) {  // the next round finds it fully drawn
      seen_ = window;
      return;
    }
    const QString name = window->objectName().isEmpty() ? "box" : window->objectName();
    save(*window, name);
    seen_ = nullptr;
    if (!answers_.empty()) {
      const auto answer = answers_.front();
      answers_.pop_front();
      return answer(*window);
    }
    window->close();
    const auto buttons = window->findChildren<QPushButton*>();
    if (window->isVisible() && !buttons.empty()) buttons.back()->click();  // a box that only a button answers
  }
  /// The next window in front is left by this button.
  void press(const QString& button) {
    answers_.push_back([button](QWidget& window) {
      auto* found = window.findChild<QPushButton*>(button);
      if (!found || !found->isEnabled()) {
        std::cout << "no button " << button.toStdString() << '\n';
        window.close();
        return;
      }
      found->click();
    });
  }
  /// The next box is left by its first button.
  void accept() {
    answers_.push_back([](QWidget& window) {
      const auto buttons = window.findChildren<QPushButton*>();
      buttons.empty() ? static_cast<void>(window.close()) : buttons.front()->click();
    });
  }

  template <class Window>
  Window* last() {
    for (int i = app().windows.Count() - 1; i >= 0; --i) {
      if (auto* found = dynamic_cast<Window*>(&app().windows[i]); found && found->isShown()) return found;
    }
    return nullptr;
  }

  void views() {
    if (FormWindow* window = desktop_.windowOf(main())) window->resize(size_);
    for (const ViewRow& view : viewTable()) {
      if (view.mode != Mode::Standard) continue;
      main().showView(view.id);
      picture(main(), qt(view.picture));
    }
  }

  /// Several members selected, one who is added, and their counters.
  void staff() {
    main().showView(ViewId::Staff);
    StaffView& staff = view<StaffView>(ViewId::Staff);
    staff.faStaff.selectRows({2, 3}, 3);
    picture(main(), "staff-selected");
    staff.cmdStaffAdd.press();
    picture(main(), "staff-add");
    staff.txtStaff.type("2100001501");
    staff.cmdStaffCheck.press();
    picture(main(), "staff-found");
    press("cmdClose");
    staff.txtStaff.doubleClick();
    staff.cmdCancel.press();
  }

  /// The first list of each view of the inventory that has rows, with a row selected, and the members of a
  /// group.
  void inventory() {
    for (const int kind : {kEquipment, kGroup, kRoom, kMaintenance}) {
      const ViewRow& row = inventoryViewOf(kind);
      main().showView(row.id);
      InventoryView& list = view<InventoryView>(row.id);
      listFirst(list, list.tvwDB.Roots());
      if (list.fa.hasData()) list.fa.click(1, 1);
      picture(main(), qt(row.picture) + "-list");
      recordPages(kind, qt(row.picture), list);
    }
    main().showView(ViewId::Groups);
    view<GroupView>(ViewId::Groups).fa.click(2, 1);
    view<GroupView>(ViewId::Groups).cmdMembers.press();
    view<GroupView>(ViewId::Groups).members.fa.click(1, 1);
    picture(main(), "group-members");
    inventoryDialogs();
  }
  /// Every page of the record that is selected, and a new record.
  void recordPages(int kind, const QString& name, InventoryView& view) {
    view.cmdEditInv.press();
    if (auto* record = last<InventoryWindow>()) {
      for (std::size_t page = 0; page < record->mnuViewPages.size(); ++page) {
        record->mnuViewPage_Click(static_cast<int>(page));
        for (const char* tree : {"tvwGroup", "tvwRoom"}) clickFirstType(*record, tree);
        picture(*record, name + "-record-" + QString::number(page + 1));
      }
      record->Unload();
    }
    if (kind == kMaintenance) return;
    OpenRecordWindow(app(), {kind, "", kSourceMainWindow});
    if (auto* record = last<InventoryWindow>()) {
      picture(*record, name + "-new");
      record->Unload();
    }
  }
  static void clickFirstType(InventoryWindow& record, std::string_view name) {
    auto* tree = dynamic_cast<Tree*>(record.findControl(name));
    if (!tree || !tree->usable() || tree->Roots().empty()) return;
    const auto& types = tree->Roots().back()->children;
    if (!types.empty()) tree->click(types.front()->key);
  }
  /// The small windows on the first piece of the list, with a status applied and a barcode added.
  void inventoryDialogs() {
    main().showView(ViewId::Equipment);
    const std::string piece = view<InventoryView>(ViewId::Equipment).fa.TextMatrix(1, 0);
    frmStatus status(app(), kEquipment, piece);
    status.Show();
    status.fa(0).click(1, 1);
    picture(status, "status");
    press("cmdCancel");
    status.cmdAddStatus.press();
    picture(status, "status-applied");
    status.cmdRemoveStatus.press();
    status.Unload();
    frmBarcodes barcodes(app(), piece);
    barcodes.Show();
    barcodes.fa.click(1, 0);
    picture(barcodes, "barcodes");
    barcodes.Unload();
    ShowAssignedNumbers(app(), kEquipment, app().context.categories.equipment.front().id);
    if (auto* numbers = last<frmNumbers>()) {
      picture(*numbers, "numbers");
      numbers->Unload();
    }
    frmMaintDetails details(app(), kSourceRoom, {});
    details.Show();
    details.fa.click(1, 1);
    picture(details, "details");
    frmRoomEquip move(app(), piece);
    move.Show();
    picture(move, "move");
  }
  static void listFirst(InventoryView& view, const std::vector<TreeNode*>& nodes) {
    for (const TreeNode* node : nodes) {
      view.tvwDB.click(node->key);
      if (view.fa.hasData()) return;
      listFirst(view, node->children);
      if (view.fa.hasData()) return;
    }
  }

  void tabs(frmBooking& editor, const QString& name) {
    if (FormWindow* window = desktop_.windowOf(editor); window && window->width() > 1366)
      std::cout << "wider than a small screen\n";
    for (int tab = 0; tab < 7; ++tab) {
      editor.tabBooking.SelectedTab = tab;
      picture(editor, QString("%1-%2").arg(name).arg(tab));
    }
  }

  void newBooking() {
    OpenRecordWindow(app(), {kBooking, "", kSourceMainWindow});
    auto* editor = last<frmBooking>();
    if (!editor) return;
    tabs(*editor, "new");
    editor->tabBooking.SelectedTab = 0;
    editor->requester.requester.text.type("");
    press("cmdCancel");
    editor->requester.cmdRequester_Click();
    accept();
    editor->mnuFileSave_Click();
    editor->tabBooking.SelectedTab = 1;
    editor->media.cmdSearchMedia_Click();
    editor->tabBooking.SelectedTab = 2;
    editor->place.cmdGenericRoom_Click(0);
    editor->tabBooking.SelectedTab = 3;
    editor->equipment.cmdAddType_Click();
    editor->equipment.cmdSpecific_Click();
    editor->tabBooking.SelectedTab = 0;
    editor->times.txtNeedTimeEllipses_Click();
    editor->Closing = true;
    editor->Unload();
  }

  /// An administrative booking of today, page by page; as a pick-up where its room cannot be had.
  void wizard() {
    OpenRecordWindow(app(), {kWizard, "", kSourceMainWindow});
    auto* wizard = last<frmBookWiz>();
    if (!wizard) return;
    picture(*wizard, "wizard-0");
    wizard->requester.chkAdminBooking.toggle();
    const std::string day = serverDate(app().clock.now().date);
    wizard->times.showTimes(day + " 10:00:00", day + " 11:30:00");
    for (int page = 1; page < frmBookWiz::kPages; ++page) {
      wizard->cmdNext.press();
      if (wizard->page() == frmBookWiz::kRoomPage && page > frmBookWiz::kRoomPage) {
        wizard->place.choose(kPickUpOption);
        wizard->cmdNext.press();
      }
      picture(*wizard, QString("wizard-%1").arg(wizard->page()));
      if (page != frmBookWiz::kSchedulePage) continue;
      wizard->times.cmdMultipleBookings.press();
      picture(*wizard, "wizard-times");
      wizard->times.cmdMultipleBookings.press();
    }
    accept();
    wizard->cmdCancel.press();
  }

  void pickUp() {
    RecordOpening opening(kBooking, "", kSourceMainWindow);
    opening.pickUp = true;
    OpenRecordWindow(app(), opening);
    if (auto* editor = last<frmBooking>()) {
      tabs(*editor, "pickup");
      editor->Closing = true;
      editor->Unload();
    }
  }

  /// The day's last live booking with media.
  void savedBooking() {
    main().showView(ViewId::Day);
    Grid& grid = view<DayView>(ViewId::Day).faDayBookings;
    const int id = grid.columnOfData(0);
    const int status = grid.columnOfData(1);
    const int items = grid.columnOfData(12);
    for (int row = grid.Rows - 1; row > 0; --row) {
      if (grid.TextMatrix(row, status) != "0" || grid.TextMatrix(row, items) == "0") continue;
      OpenRecordWindow(app(), {kBooking, grid.TextMatrix(row, id), kSourceMainWindow});
      if (auto* editor = last<frmBooking>()) {
        tabs(*editor, "saved");
        accept();
        editor->mnuBookingCharge_Click();
        picture(*editor, "charged");
        editor->Closing = true;
        editor->Unload();
      }
      return;
    }
  }

  void circulation() {
    main().showView(ViewId::Charge);
    ChargeView& charge = view<ChargeView>(ViewId::Charge);
    charge.cboChargeSearch.ListIndex = 3;
    charge.txtChargeSearchFor.type("S?");
    charge.cmdCSearch_Click();
    charge.cmdCDetails_Click();
    picture(main(), "charge-found");
    charge.cmdCCharge_Click();
    main().showView(ViewId::Discharge);
    DischargeView& discharge = view<DischargeView>(ViewId::Discharge);
    discharge.cboDischargeSearch.ListIndex = 5;
    for (char letter = 'A'; letter <= 'Z' && !discharge.fraDBookings.Visible; ++letter) {
      discharge.txtDischargeSearchFor.type(std::string(1, letter) + "?");
      discharge.cmdDSearch_Click();
    }
    picture(main(), "discharge-found");
    discharge.cmdDDischarge_Click();
    app().circulation().showNote("Schedule Popup Note:  Lecture Hall 121 - The key is with the porter.");
    main().showView(ViewId::QuickDischarge);
    view<QuickDischargeView>(ViewId::QuickDischarge).cmdBackDate_Click();
    picture(main(), "quick-back-date");
  }

  /// The pages of each category with what they find, and the pickers.
  void search() {
    ShowSearch(app(), kFindBookings);
    auto* find = last<frmFind>();
    if (!find) return;
    for (int category = kFindBookings; category <= kFindPatrons; ++category) {
      find->cboSearchFor.select(category);
      const QString name = "find-" + qt(find->cboSearchFor.Text()).toLower().replace(' ', '-');
      TabStrip& pages = find->criteria(category).tabSearch;
      const int count = static_cast<int>(pages.Tabs().size());
      for (int page = 0; page < count; ++page) {
        pages.choose(page);
        picture(*find, QString("%1-%2").arg(name).arg(page));
      }
      pages.choose(std::min(1, count - 1));  // which is empty
      find->cmdFindNow.press();
      picture(*find, name + "-found");
      find->cmdNewSearch.press();
    }
    find->cmdAdvancedSearch.press();
    picture(*find, "find-advanced");
    find->Unload();
    for (const std::string_view picker : {kFindPatronTag, kFindStaffTag, kSuggestRoomTag}) {
      press("cmdClose");
      static_cast<void>(pickBySearch(app(), picker));
    }
  }

  /// What tells of the session and of the program.
  void session() {
    ShowBookingCalendars(app());
    if (auto* calendars = last<frmSched>()) {
      picture(*calendars, "calendars");
      calendars->Unload();
    }
    main().mnuFileLoginInfo_Click();
    main().mnuFileChangePassword_Click();
    main().mnuHelpAbout_Click();
    app().lookUp.LookupRows = {{"1", "TV1", "5500", "Not Charged", "Television", "N", "4"},
                               {"2", "SET1", "5500", "Charged", "TV and VCR", "Y", "4"}};
    app().makers.run("frmMultBarOrNo", app());
    desktop_.showHelp("booking");
    desktop_.handleEvents();
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "help") save(*window, "help");
    }
  }

  /// Each page, with a sound selected on the last one.
  void options() {
    answers_.push_back([this](QWidget&) {
      auto* options = last<frmOptions>();
      if (!options) return;
      for (int page = 1; page <= kSoundPage; ++page) {
        options->pages.tabOptions.choose(page);
        options->sounds.gtvEvents.click("Sound4");
        picture(*options, "options-" + QString::number(page));
      }
      options->Unload();
    });
    main().mnuToolsOptions_Click();
  }
  void monitor() {
    app().preferences.DeliveryHours = app().preferences.PickUpHours = app().preferences.RoomHours = "24";
    main().mnuModeDaemon_Click();
    for (const ViewRow& row : viewTable()) {
      if (row.mode != Mode::Monitor) continue;
      main().showView(row.id);
      if (auto* rooms = dynamic_cast<RoomScheduleView*>(&main().view(row.id)))
        rooms->cboMediaSchedRooms.select(1);
      if (auto* list = dynamic_cast<PickListView*>(&main().view(row.id))) {
        list->cmdToday.press();
        list->cmdGetLists.press();
      }
      if (auto* library = dynamic_cast<LibRoomsView*>(&main().view(row.id));
          library && library->faDaemon.hasData()) {
        library->faDaemon.click(1, 9);
        library->cmdDaemonItems.press();
      }
      picture(main(), "monitor-" + QString::fromStdString(std::string(row.picture)));
    }
  }

  int ask(std::string_view code, const std::vector<TagValue>& tags) {
    for (const auto& [tag, value] : tags) app().message.Add(tag, value);
    return app().message.Send(code);
  }
  /// A check of equipment or media for a group that is trusted with little, at that time.
  int check(std::string_view code, std::vector<TagValue> head, const std::string& start,
            const std::string& end, std::initializer_list<TagValue> thing) {
    head.insert(head.begin(), {"BOOKID", "0"});
    head.push_back({"STIME", start});
    head.push_back({"ETIME", end});
    head.insert(head.end(), thing);
    return ask(code, head);
  }

  /// What the server refuses, as the operator meets it.
  void policy() {
    const std::string day = serverDate(app().clock.now().date);
    const int limit = check("VEUL", {{"PGID", "7"}, {"BTID", "2"}}, day + " 09:00:00", day + " 20:00:00",
                            {{"ETI", "8"}, {"IFL", "N"}});
    (void)ValidateEquipmentLimit(app(), limit, app().message.Get("ETY"));
    frmSupervisor(app(), "OVOTR").ShowModal();
    OpenRecordWindow(app(), {kBooking, "", kSourceMainWindow});
    if (auto* editor = last<frmBooking>()) {
      editor->record.PatronGroupId = 1;
      editor->record.RoomId = 3;  // under renovation in the small library
      (void)ValidateLibSchedRoom(editor->parts);
      editor->Closing = true;
      editor->Unload();
    }
    takenThings(day);
    if (ask("CDELTM", {{"PGID", "1"},
                       {"ADBK", "N"},
                       {"STIME", day + " 02:00:00"},
                       {"SDOW", "1"},
                       {"ETIME", day + " 03:00:00"},
                       {"EDOW", "1"}}) == 167)
      ShowCalendarConflict(app());
  }

  /// A piece and an item that a booking of the day has.
  void takenThings(const std::string& day) {
    (void)ask("BOOKDAY", {{"DATE", day}, {"HBK", "N"}});
    std::vector<std::pair<std::string, std::string>> bookings;
    while (app().message.NextRecord("BOOKID"))
      if (app().message.Get("BKRES") == "0")
        bookings.emplace_back(app().message.Get("BOOKID"), app().message.Get("STIME"));
    bool piece = false, item = false;
    for (const auto& [id, start] : bookings) {
      const std::string end = start.substr(0, 14) + "59:00";
      if (!piece && ask("GETSEQ", {{"BOOKID", id}}) == 0 && val(app().message.Get("EID")) != 0) {
        const int rc =
            check("VALEAVL", {{"LOC", "1"}, {"PGID", "3"}}, start, end, {{"EID", app().message.Get("EID")}});
        piece = rc == 149;
        if (piece) (void)ValidateEquipmentUsage(app(), rc, app().message.Get("ETY"));
      }
      if (!item && ask("GETSITM", {{"BOOKID", id}}) == 0 && val(app().message.Get("IM")) != 0) {
        TagMessage& m = app().message;
        const std::vector<TagValue> thing = {
            {"MTID", m.Get("MTID")}, {"BI", m.Get("BI")}, {"MI", m.Get("MI")}, {"IM", m.Get("IM")}};
        std::vector<TagValue> tags = {
            {"BOOKID", "0"}, {"LOC", "1"}, {"PGID", "3"}, {"STIME", start}, {"ETIME", end}};
        tags.insert(tags.end(), thing.begin(), thing.end());
        const int rc = ask("VALIAVL", tags);
        item = rc == 150;
        if (item) (void)ValidateItemUsage(app(), rc);
      }
    }
  }

  QtDesktop& desktop_;
  Program& program_;
  QString folder_;
  QSize size_;  ///< of the main window; no other is larger
  QTimer watch_;
  QWidget* seen_ = nullptr;
  std::deque<std::function<void(QWidget&)>> answers_;
  int number_ = 0;
  bool written_ = true;  ///< all pictures until now
};

/// Noon of today, for which the small library is made, so that its bookings look the same at any hour.
struct Noon : SystemClock {
  const DateTime moment{SystemClock::now().date, {12, 0, 0}};
  [[nodiscard]] DateTime now() const override { return moment; }
  [[nodiscard]] std::int64_t seconds() const {
    return (std::int64_t{dayNumber(moment.date)} * 24 + moment.time.hour) * 3600;
  }
};

int walk(const QString& folder, QSize size) {
  const QTemporaryDir scratch;
  const std::filesystem::path user = scratch.path().toStdString();
  std::filesystem::create_directories(user / "misc");
  std::filesystem::copy_file(VANTRY_HELP_MAP, user / "misc" / "vantryhelp.ini");
  const Noon clock;
  EmbeddedServer server({user / "library.sqlite", {}, false, [&] { return clock.seconds(); }});
  HttpTransport transport({.address = server.address()});
  FileSettings settings(user / "settings.ini");
  settings.SaveSetting(kSettingsApplication, kSettingsSection, "View", "0");
  QtDesktop desktop;
  InstalledComponents components(desktop);
  SealedBox sealer(transport);
  Program program({desktop, transport, clock, settings, components, user, user}, "");
  program.app.session.setSealer(sealer);
  Tour tour(desktop, program, folder, size);
  DemoOperator demo(desktop, program.app, [&] { tour.run(); });
  const int code = desktop.run([&] { return demo.start(); });
  return tour.isWritten() ? code : 1;
}

}  // namespace
}  // namespace vantry

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  vantry::quietUnseenScreen();
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() < 2) {
    std::cout << "vantry_tour FOLDER [small] [dark]\n";
    return 2;
  }
  if (!QDir().mkpath(arguments[1])) {
    std::cerr << "cannot make the folder " << arguments[1].toStdString() << '\n';
    return 1;
  }
  using vantry::style::Scheme;
  vantry::style::apply(application, arguments.contains("dark") ? Scheme::Dark : Scheme::Light);
  return vantry::walk(arguments[1], arguments.contains("small") ? QSize(1024, 768) : QSize(1366, 768));
}
