// What an operator waits for at the desk: opening a booking with 50 media and 50 pieces of equipment, adding
// a piece, saving, printing; a booking by the wizard, page by page; searching, charging and quick discharge;
// the options. Medians in milliseconds, from the command to the painted window or to the box that tells the
// end; of them, what server and wire took, in how many requests.
//
//   desk_work FOLDER          a library, made in FOLDER anew
//
// Ends with 1 when a command did not do what is measured.
#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>

#include "bench_desk.h"
#include "booking/frmBookWiz.h"
#include "booking/frmBooking.h"
#include "booking/modBooking_equipment.h"
#include "booking/modBooking_rooms.h"
#include "circulation/charge_view.h"
#include "circulation/discharge_view.h"
#include "circulation/quick_discharge_view.h"
#include "frame/app.h"
#include "options/frmOptions.h"
#include "records/records.h"
#include "words/tags.h"

namespace vantry::bench {
namespace {

constexpr int kThings = 50;
constexpr const char* kStart = "2027-12-06 10:00:00";  // later than any booking of the library
constexpr const char* kEnd = "2027-12-06 12:00:00";
constexpr int kSome = 5;
constexpr const char* kWizardStart = "2027-12-07 10:00:00";
constexpr const char* kWizardEnd = "2027-12-07 12:00:00";

/// Closes every box and dialog at once and remembers when the first one stood there.
class BoxCloser {
 public:
  BoxCloser() {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      QWidget* box = QApplication::activeModalWidget();
      if (!box) return;
      if (telling) {
        for (const QLabel* label : box->findChildren<QLabel*>())
          std::printf("  %s\n", label->text().toStdString().c_str());
      }
      if (!seen_) firstSeen_ = Stopwatch::now();
      seen_ = true;
      box->close();
    });
    timer_.start(0);
  }
  void forget() { seen_ = false; }
  bool telling = false;  ///< prints what boxes say
  /// The end of a command: its first box, else now.
  Stopwatch::time_point end() const { return seen_ ? firstSeen_ : Stopwatch::now(); }

 private:
  QTimer timer_;
  bool seen_ = false;
  Stopwatch::time_point firstSeen_;
};

class DeskWork {
 public:
  explicit DeskWork(Bench& bench) : bench_(bench) {}

  /// The number of commands that did not do what was measured.
  int run() {
    makeBooking();
    if (bookingId_.empty()) return failures_;
    openings();
    boxes_.telling = true;  // none is expected here
    addings();
    savings();
    wizard();
    boxes_.telling = false;
    searches();
    charges();
    quickDischarges();
    options();
    return failures_;
  }

 private:
  void failed(const std::string& what) {
    std::printf("failed: %s\n", what.c_str());
    ++failures_;
  }

  App& app() { return bench_.program.app; }
  frmMain& main() { return bench_.program.main; }

  template <class Command>
  void time(Costs& costs, Command command) {
    bench_.line.milliseconds = 0;
    bench_.line.requests = 0;
    boxes_.forget();
    const auto start = Stopwatch::now();
    command();
    bench_.desktop.handleEvents();
    costs.whole.push_back(std::chrono::duration<double, std::milli>(boxes_.end() - start).count());
    costs.line.push_back(bench_.line.milliseconds);
    costs.requests = bench_.line.requests;
  }
  void tell(const char* what, const Costs& costs) {
    if (costs.whole.empty()) failed(std::string("nothing was measured: ") + what);
    tellCosts("desk", what, costs);
  }

  /// Whether the desk's policy allows an item, and the item is free; what a save asks about its media.
  bool mayBook(const std::vector<TagValue>& item) {
    TagMessage& m = app().message;
    const std::pair<std::string_view, std::string> limits[] = {{tags::BOOKID, "0"},
                                                               {tags::PGID, "0"},
                                                               {tags::BTID, "1"},
                                                               {tags::STIME, kStart},
                                                               {tags::ETIME_, kEnd}};
    for (const auto& [tag, value] : limits) m.Add(tag, value);
    for (const TagValue& tag : item) m.Add(tag.tag, tag.value);
    if (m.Send("VIUL") != 0) return false;
    const std::pair<std::string_view, std::string> place[] = {{tags::BOOKID, "0"},
                                                              {tags::RID, "1"},
                                                              {tags::PGID, "0"},
                                                              {tags::STIME, kStart},
                                                              {tags::ETIME_, kEnd}};
    for (const auto& [tag, value] : place) m.Add(tag, value);
    for (const TagValue& tag : item) m.Add(tag.tag, tag.value);
    return m.Send("VALIAVL") == 0;
  }

  /// The ids of one item each of the first titles that the desk may book, as a booking names them.
  std::vector<TagValue> items() {
    std::vector<TagValue> tags;
    int found = 0;
    for (int title = 1; title <= 200 && found < kThings; ++title) {
      app().message.Add(tags::BI, std::to_string(title));
      app().message.Add(tags::MI, "0");
      if (app().message.Send("GBHI") != 0 || app().message.Get(tags::IM).empty()) continue;
      std::vector<TagValue> item;
      for (const std::string_view tag : {tags::MTID, tags::BI, tags::MI, tags::IM})
        item.push_back({std::string(tag), app().message.Get(tag)});
      if (!mayBook(item)) continue;
      tags.insert(tags.end(), item.begin(), item.end());
      ++found;
    }
    return tags;
  }

  /// Pieces that the desk may book for that time.
  std::vector<std::string> freePieces() {
    std::vector<std::string> ids;
    for (int piece = 1; piece <= 400 && ids.size() < kThings; ++piece) {
      TagMessage& m = app().message;
      const std::string id = std::to_string(piece);
      const std::pair<std::string_view, std::string> check[] = {{tags::BOOKID, "0"},  {tags::RID, "1"},
                                                                {tags::PGID, "0"},    {tags::STIME, kStart},
                                                                {tags::ETIME_, kEnd}, {tags::EID, id}};
      for (const auto& [tag, value] : check) m.Add(tag, value);
      if (m.Send("VALEAVL") == 0) ids.push_back(id);
    }
    return ids;
  }

  void makeBooking() {
    const std::vector<TagValue> media = items();
    const std::vector<std::string> pieces = freePieces();
    TagMessage& m = app().message;
    const std::pair<std::string_view, const char*> head[] = {
        {tags::STIME, kStart}, {tags::ETIME_, kEnd}, {tags::PID, "0"}, {tags::PGID, "0"},
        {tags::PPID, "0"},     {tags::ADBK, "Y"},    {tags::RID, "1"}, {tags::BTID, "1"}};
    for (const auto& [tag, value] : head) m.Add(tag, value);
    for (const std::string& piece : pieces) m.Add(tags::EID, piece);
    for (const TagValue& tag : media) m.Add(tag.tag, tag.value);
    const std::pair<std::string_view, const char*> tail[] = {{tags::SCHCOM, ""}, {tags::ODE, "0"},
                                                             {tags::OPU, "0"},   {tags::WIZ, "N"},
                                                             {tags::UTIME, "0"}, {tags::CTIME_, "0"}};
    for (const auto& [tag, value] : tail) m.Add(tag, value);
    const int rc = m.Send("NEWBK");
    if (rc != 0) failed("the booking was not made: " + std::to_string(rc));
    bookingId_ = rc == 0 ? m.Get(tags::BOOKID) : std::string();
    somePieces_.assign(pieces.begin(), pieces.begin() + std::min<std::ptrdiff_t>(std::ssize(pieces), kSome));
  }

  frmBooking& editor() {
    for (int i = app().windows.Count() - 1; i >= 0; --i) {
      if (auto* found = dynamic_cast<frmBooking*>(&app().windows[i]); found && found->isShown())
        return *found;
    }
    throw std::runtime_error("no editor stands");
  }
  void close(frmBooking& window) {
    window.Closing = true;
    window.Unload();
    bench_.desktop.handleEvents();
  }

  void openings() {
    Costs costs, prints;
    for (int round = 0; round < kRounds; ++round) {
      time(costs, [this] { OpenRecordWindow(app(), {kBooking, bookingId_, kSourceMainWindow}); });
      main().StatusBar1.Panels(6).Text = "";
      time(prints, [this] { editor().mnuFilePrint_Click(); });
      if (main().StatusBar1.Panels(6).Text.get().empty()) failed("the confirmation was not printed");
      close(editor());
    }
    tell("opening a booking with 50 media, 50 pieces", costs);
    tell("its confirmation as PDF", prints);
  }

  void addings() {
    OpenRecordWindow(app(), {kBooking, bookingId_, kSourceMainWindow});
    frmBooking& window = editor();
    window.tabBooking.SelectedTab = 3;
    EquipmentPanel& panel = window.equipment;
    Costs costs;
    for (int round = 0; round < kRounds; ++round) {
      const TreeNode* root = panel.tvwOtherEquipment.find("ThirdRoot");
      const TreeNode& piece = *root->children.back();
      const std::string number = piece.text;
      panel.tvwOtherEquipment.SelectedKey = piece.key;
      panel.cmdRemoveEquipment_Click();
      panel.txtEquipBarcode.type(number);
      time(costs, [&] { panel.cmdAddEquipViaBarcode_Click(); });
    }
    std::printf("%d pieces in the booking\n", countEquipment(window.parts));
    tell("adding a piece", costs);
    close(window);
  }

  void savings() {
    Costs costs;
    for (int round = 0; round < kRounds; ++round) {
      OpenRecordWindow(app(), {kBooking, bookingId_, kSourceMainWindow});
      frmBooking& window = editor();
      window.txtBookingNote.type("Round " + std::to_string(round));
      time(costs, [&] { window.mnuFileSave_Click(); });
      if (!window.SaveOk) failed("the booking was not saved");
      if (window.isShown()) close(window);
    }
    tell("saving it", costs);
  }

  /// Bookings of some pieces by the wizard, each removed again. The last page ends with the editor.
  void wizard() {
    std::array<Costs, frmBookWiz::kPages> pages;
    std::string captions[frmBookWiz::kPages];
    for (int round = 0; round < kRounds; ++round) {
      auto& wizard = dynamic_cast<frmBookWiz&>(*OpenRecordWindow(app(), {kWizard, "", kSourceMainWindow}));
      wizard.requester.chkAdminBooking.toggle();
      for (int page = 0; page < frmBookWiz::kPages; ++page) {
        fillPage(wizard);
        captions[page] = wizard.pages.at(static_cast<std::size_t>(page)).frame.Caption;
        time(pages.at(static_cast<std::size_t>(page)), [&] { wizard.cmdNext_Click(); });
        if (wizard.isLoaded() && wizard.page() == page) {
          wizard.Hide();
          return failed("the wizard stays on the page " + captions[page]);
        }
      }
      frmBooking& made = editor();
      app().message.Add(tags::BOOKID, std::to_string(made.record.BookingId));
      close(made);
      if (app().message.Send("DELBK") != 0) failed("the wizard's booking was not removed");
    }
    for (std::size_t page = 0; page < pages.size(); ++page)
      tell(("wizard: Next on the page " + captions[page]).c_str(), pages[page]);
  }
  void fillPage(frmBookWiz& wizard) {
    if (wizard.page() == frmBookWiz::kSchedulePage) wizard.times.showTimes(kWizardStart, kWizardEnd);
    if (wizard.page() == frmBookWiz::kRoomPage) wizard.place.choose(kScheduledOption);
    if (wizard.page() != frmBookWiz::kEquipmentPage) return;
    for (const std::string& piece : somePieces_)
      AddPieceNode(wizard.parts, {piece, "Piece " + piece, "", "N", ""}, kPieceAddedTwice);
  }

  void searches() {
    main().showView(ViewId::Charge);
    ChargeView& view = viewAs<ChargeView>(main(), ViewId::Charge);
    view.cboChargeSearch.ListIndex = 3;
    Costs costs;
    for (int round = 0; round < kRounds; ++round) {
      view.txtChargeSearchFor.type(round % 2 ? "S?" : "B?");
      time(costs, [&] { view.cmdCSearch_Click(); });
    }
    tell("searching by a name's first letter", costs);
    std::printf("%d bookings found\n", view.faChargeBookings.Rows - 1);
  }

  /// Charges what of today's bookings may go out already.
  void charges() {
    ChargeView& view = viewAs<ChargeView>(main(), ViewId::Charge);
    const Grid& grid = view.faChargeBookings;
    Costs costs;
    for (char letter = 'A'; letter <= 'Z' && costs.whole.size() < kRounds; ++letter) {
      view.txtChargeSearchFor.type(std::string(1, letter) + "?");
      view.cmdCSearch_Click();
      for (int row = 1; row < grid.Rows && grid.TextMatrix(row, 2) == grid.TextMatrix(1, 2); ++row) {
        const int before = grid.Rows;
        view.faChargeBookings.selectRow(row);
        Costs one;
        time(one, [&] { view.cmdCCharge_Click(); });
        if (grid.Rows == before) break;  // too early, and so are the later ones
        costs.whole.push_back(one.whole.front());
        costs.line.push_back(one.line.front());
        costs.requests = one.requests;
        --row;
      }
    }
    tell("charging, to the first box", costs);
  }

  /// The numbers of pieces that are out.
  std::vector<std::string> piecesOut() {
    std::vector<std::string> numbers;
    main().showView(ViewId::Discharge);
    DischargeView& out = viewAs<DischargeView>(main(), ViewId::Discharge);
    out.cboDischargeSearch.ListIndex = 5;
    for (char letter = 'A'; letter <= 'Z' && numbers.size() < kRounds; ++letter) {
      out.txtDischargeSearchFor.type(std::string(1, letter) + "?");
      out.cmdDSearch_Click();
      for (int row = 1; row < out.faDischargeBookings.Rows && out.fraDBookings.Visible; ++row) {
        out.faDischargeBookings.selectRow(row);
        if (out.cmdDDetails.Tag != "1") out.cmdDDetails_Click();
        const TreeNode* pieces = out.tvwDDetails.find("Equipment");
        for (const TreeNode* piece : pieces ? pieces->children : std::vector<TreeNode*>())
          numbers.push_back(piece->text.substr(0, piece->text.find(" -- ")));
        if (out.cmdDDetails.Tag == "1") out.cmdDDetails_Click();
      }
    }
    return numbers;
  }

  void quickDischarges() {
    const std::vector<std::string> barcodes = piecesOut();
    main().showView(ViewId::QuickDischarge);
    QuickDischargeView& view = viewAs<QuickDischargeView>(main(), ViewId::QuickDischarge);
    view.cboQuickDischargeType.ListIndex = 2;
    Costs costs;
    for (const std::string& barcode : barcodes) {
      view.txtQuickDischargeItem.type(barcode);
      time(costs, [&] { view.cmdQuickDischarge_Click(); });
      if (!view.txtQuickDischargeItem.Text.get().empty()) failed(barcode + " was not discharged");
    }
    tell("quick discharge of a piece", costs);
  }

  void options() {
    Costs opens, applies;
    for (int round = 0; round < kRounds; ++round) {
      frmOptions window(app());
      time(opens, [&] { window.Show(); });
      for (const OptionField& field : window.pages.fields()) {
        if (field.key == "SuggestEquip") field.show(round % 2 ? "true" : "false");
      }
      time(applies, [&] { window.cmdApply_Click(); });
      window.Unload();
    }
    tell("opening the options", opens);
    tell("applying them", applies);
  }

  Bench& bench_;
  BoxCloser boxes_;
  std::string bookingId_;
  std::vector<std::string> somePieces_;
  int failures_ = 0;
};

}  // namespace
}  // namespace vantry::bench

int main(int argc, char** argv) {
  using namespace vantry;
  if (argc != 2) {
    std::fprintf(stderr, "usage: desk_work FOLDER\n");
    return 2;
  }
  // The day is today's: what may be charged depends on the clock. The work changes the library.
  const std::string file = std::string(argv[1]) + "/desk-work.sqlite";
  std::filesystem::remove(file);
  int failures = 0;
  const int rc =
      bench::measureAtTheDesk(file, {}, {{"View", "0"}, {"Barcodes", "true"}},
                              [&](bench::Bench& bench) { failures = bench::DeskWork(bench).run(); });
  return failures == 0 ? rc : 1;
}
