#include "booking/modBooking_policy.h"

#include "booking/booking_fixture.h"
#include "booking/frmErrorReport.h"
#include "booking/frmOverride.h"
#include "booking/frmOverrideLibSched.h"

namespace vantry::test {
namespace {

/// What the operator sees, and what they answer.
struct Seen {
  enum class Kind { Override, Critical, Question, Report, Warning, SystemError } kind;
  std::string text;
  bool yes = false;
};
Seen overridden(std::string text) {
  return {Seen::Kind::Override, std::move(text), true};
}
Seen refused(std::string text) {
  return {Seen::Kind::Override, std::move(text), false};
}
Seen critical(std::string text) {
  return {Seen::Kind::Critical, std::move(text)};
}
Seen report(std::string caption) {
  return {Seen::Kind::Report, std::move(caption)};
}
/// The window of a system error, which names what was asked.
Seen failed(std::string request) {
  return {Seen::Kind::SystemError, std::move(request)};
}
Seen asked(std::string text, bool yes) {
  return {Seen::Kind::Question, std::move(text), yes};
}

struct Policy : BookingTest {
  Policy() { grant({Right::OVOTR}); }

  void expectToSee(const Seen& seen) {
    switch (seen.kind) {
      case Seen::Kind::Override:
        desktop.expectModalWindow<frmOverride>("frmOverride", [seen](frmOverride& window) {
          EXPECT_EQ(window.lblMessage.Caption, seen.text);
          (seen.yes ? window.cmdOverride : window.cmdCancel).press();
        });
        break;
      case Seen::Kind::Critical:
        desktop.expectCritical(seen.text);
        break;
      case Seen::Kind::Warning:
        desktop.expectWarning(seen.text);
        break;
      case Seen::Kind::SystemError:
        desktop.expectModal("frmError", [seen](Form& form) {
          EXPECT_EQ(dynamic_cast<Label&>(*form.findControl("lblModuleText")).Caption, seen.text);
          form.Unload();
        });
        break;
      case Seen::Kind::Question:
        desktop.expectQuestion(seen.text, seen.yes);
        break;
      case Seen::Kind::Report:
        desktop.expectModalWindow<frmErrorReport>("frmErrorReport", [seen](frmErrorReport& window) {
          EXPECT_EQ(window.Caption, seen.text);
          window.cmdOK.press();
        });
        break;
    }
  }
};

struct Case {
  const char* rule;
  int rc;
  const char* reply;
  std::vector<Seen> seen;
  bool goesOn;
};

using Walk = std::function<bool(App&, int)>;

struct Walks : Policy {
  void check(std::string_view code, std::string_view tags, const Walk& validate,
             const std::vector<Case>& cases) {
    for (const Case& c : cases) {
      SCOPED_TRACE(std::string(code) + ": " + c.rule);
      for (const Seen& seen : c.seen) expectToSee(seen);
      EXPECT_EQ(validate(app, receive(code, tags, c.rc, c.reply)), c.goesOn);
      desktop.checkAllCame();
    }
  }
};

constexpr const char* kMediaReport = "Media Items Unavailable for Booking";
constexpr const char* kEquipmentReport = "Equipment Unavailable for Booking";
constexpr const char* kNoItems = "No media items available in requester's policy";
constexpr const char* kNoEquipment = "No equipment of the selected type available in requester's policy";

TEST_F(Walks, ItemUsage) {
  const std::vector<Case> cases = {
      {"success says nothing", 0, "", {}, true},
      {"another code is reported", -97, "", {failed("VITMUSG")}, false},
      {"each failure asks, in its order",
       150,
       "head: MTY=DVD | VUF=156 BKPER=1 BKINT=H | VUF=138 | VUF=119",
       {overridden("Requester is not authorized to book items of media type DVD."),
        overridden("Location of media item not in booking desk's policy."),
        overridden("Media item count has exceeded requester's authorized limit of DVD.")},
       true},
      {"a refusal stops the walk",
       150,
       "head: MTY=DVD | VUF=156 | VUF=138",
       {refused("Requester is not authorized to book items of media type DVD.")},
       false},
      {"the security location passes without a word",
       150,
       "head: MTY=DVD | VUF=184 | VUF=156",
       {overridden("Requester is not authorized to book items of media type DVD.")},
       true},
      {"code 154 has no sentence", 150, "VUF=154 BKPER=2 BKINT=D", {overridden("")}, true},
      {"158 reports", 150, "VUF=158", {report(kMediaReport)}, false},
      {"161 reports", 150, "VUF=161", {report(kMediaReport)}, false},
      {"186 reports", 150, "VUF=186", {report(kMediaReport)}, false},
      {"no item in the policy", 150, "VUF=162 | VUF=156", {critical(kNoItems)}, false},
      {"what is the equipment's asks here", 150, "VUF=159 | VUF=163", {overridden(""), overridden("")}, true},
      {"a warning asks",
       150,
       "VUF=187 IM=5",
       {overridden("Within the warning limit of another booking.")},
       true},
  };
  check("VALIAVL", "BOOKID=0 PGID=2 STIME=2026-11-24 ETIME=2026-11-24", ValidateItemUsage, cases);
}

TEST_F(Walks, ItemLimit) {
  check("VIUL", "BOOKID=0 PGID=2 BTID=2 STIME=2026-11-24 ETIME=2026-11-24", ValidateItemLimit,
        {{"another code is reported", -97, "", {failed("VIUL")}, false},
         {"the security location is shown",
          150,
          "VUF=184",
          {overridden("Security location of media item not in booking desk's policy.")},
          true},
         {"161 reports", 150, "VUF=161", {report(kMediaReport)}, false},
         {"186 asks", 150, "VUF=186", {refused("")}, false},
         {"no item in the policy", 150, "VUF=162", {critical(kNoItems)}, false}});
}

TEST_F(Walks, EquipmentUsage) {
  const Walk validate = [](App& a, int rc) { return ValidateEquipmentUsage(a, rc, a.message.Get("ETY")); };
  check("VALEAVL", "BOOKID=0 PGID=2 STIME=2026-11-24 ETIME=2026-11-24", validate,
        {{"another code is reported", -97, "", {failed("VEQUSG")}, false},
         {"not in a storage room",
          179,
          "",
          {critical("Equipment not in a storage room.  Cannot be booked.")},
          false},
         {"too long",
          149,
          "head: ETY=Projector | VUF=153 BKPER=1 BKINT=H | VUF=153 BKPER=30 BKINT=M | VUF=153 BKPER=0 "
          "BKINT=D | VUF=153 BKPER=2 BKINT=T",
          {overridden("Equipment type Projector cannot be booked longer than 1 hour."),
           overridden("Equipment type Projector cannot be booked longer than 30 minutes."),
           overridden("Equipment type Projector cannot be booked longer than 0 day."),
           overridden("Equipment type Projector cannot be booked longer than 2.")},
          true},
         {"not authorized",
          149,
          "head: ETY=Projector | VUF=184 | VUF=155",
          {refused("Requester is not authorized to book equipment of type Projector.")},
          false},
         {"159 reports", 149, "VUF=159", {report(kEquipmentReport)}, false},
         {"160 reports", 149, "VUF=160", {report(kEquipmentReport)}, false},
         {"186 reports", 149, "VUF=186", {report(kEquipmentReport)}, false},
         {"158 is the items'", 149, "VUF=158", {overridden("")}, true},
         {"no equipment in the policy", 149, "VUF=163", {critical(kNoEquipment)}, false}});
}

TEST_F(Walks, EquipmentLimit) {
  const Walk validate = [](App& a, int rc) { return ValidateEquipmentLimit(a, rc, a.message.Get("ETY")); };
  check("VEUL", "BOOKID=0 PGID=2 BTID=2 STIME=2026-11-24 ETIME=2026-11-24", validate,
        {{"another code is reported", -97, "", {failed("VEUL")}, false},
         {"locations are the equipment's",
          149,
          "VUF=138 | VUF=184",
          {overridden("Location of equipment not in booking desk's policy."),
           overridden("Security location of equipment not in booking desk's policy.")},
          true},
         {"160 reports", 149, "VUF=160", {report(kEquipmentReport)}, false},
         {"186 asks", 149, "VUF=186", {overridden("")}, true},
         {"no equipment in the policy", 149, "VUF=163", {critical(kNoEquipment)}, false}});
}

TEST_F(Walks, RoomUsage) {
  check("VALRMAVL", "BOOKID=0 STIME=2026-11-24 ETIME=2026-11-24 RID=40 PGID=2", ValidateRoomUsage,
        {{"another code is reported", -97, "", {failed("VITMUSG")}, false},
         {"locations are the room's",
          185,
          "VUF=184 | VUF=138",
          {overridden("Location of room not in booking desk's policy.")},
          true},
         {"161 reports as media", 185, "VUF=161", {report(kMediaReport)}, false},
         {"186 asks", 185, "VUF=186", {overridden("")}, true},
         {"room conflicts that are told as the items'", 185, "VUF=162", {critical(kNoItems)}, false},
         {"a taken room is reported in the deleter's words",
          107,
          "VUF=187",
          {{Seen::Kind::Warning, "Unable To Delete!\n\nRoom Is Booked!"}},
          false}});
}

TEST_F(Walks, RoomTime) {
  check(
      "CRMTM", "PGID=2 ADBK=N STIME=2026-11-24 SDOW=3 ETIME=2026-11-24 EDOW=3 RID=40", ValidateRoomTime,
      {{"another code is reported", -97, "", {failed("CRMTM")}, false},
       {"every record asks, those that report elsewhere too",
        185,
        "VUF=188 BKPER=2 BKINT=D | VUF=184 | VUF=158 | VUF=162",
        {overridden("Room cannot be booked longer than 2 days."),
         overridden("Security location of room not in booking desk's policy."), overridden(""), refused("")},
        false}});
}

TEST_F(Walks, EquipmentStatus) {
  check("VES", "EID=11", ValidateEquipmentStatus,
        {{"kind 1 asks",
          151,
          "VD1=1 VD2=Status is Cleaning. | VD1=2 VD2=Passes",
          {asked("Status is Cleaning.  Book anyway?", true)},
          true},
         {"a no stops",
          151,
          "VD1=1 VD2=Dusty. | VD1=3 VD2=x VD3=y",
          {asked("Dusty.  Book anyway?", false)},
          false},
         {"any other needs an override",
          151,
          "VD1=3 VD2=Projector VD3=Broken",
          {refused("Cannot book equipment.  Projector\n\rEquipment Status:  Broken")},
          false},
         {"other codes are reported", 108, "", {{Seen::Kind::Warning, "Barcode is not active!"}}, false}});
}

TEST_F(Policy, AWarningThatWasAgreedToIsNotAskedAgainUntilATimeChanges) {
  TestWindow window(app);
  app.booking.warnings.AddWarningKey("5I");
  app.booking.warnings.MarkWarningShown("5I");
  const char* tags = "BOOKID=0 PGID=2 STIME=2026-11-24 ETIME=2026-11-24";
  EXPECT_TRUE(ValidateItemUsage(app, receive("VALIAVL", tags, 150, "VUF=187 IM=5")));
  expectToSee(overridden("Within the warning limit of another booking."));
  EXPECT_TRUE(ValidateItemUsage(app, receive("VALIAVL", tags, 150, "VUF=187 IM=5 | VUF=187 IM=6")));
  desktop.checkAllCame();
  window.times.fpdNeedDate.enter(Date{2026, 11, 25});
  expectToSee(refused("Within the warning limit of another booking."));
  EXPECT_FALSE(ValidateItemUsage(app, receive("VALIAVL", tags, 150, "VUF=187 IM=5")));
  EXPECT_FALSE(app.booking.warnings.IsWarningMarked("5E"));
}

TEST(Warnings, LiveFromOneBookingWindowToTheNext) {
  WarningList list;
  list.InitWarningList();
  list.MarkWarningShown("5I");
  EXPECT_FALSE(list.IsWarningMarked("5I")) << "a key that was never added stays unknown";
  list.AddWarningKey("5I");
  list.AddWarningKey("7E");
  list.MarkWarningShown("5I");
  list.AddWarningKey("7E");
  EXPECT_TRUE(list.IsWarningMarked("5I"));
  EXPECT_FALSE(list.IsWarningMarked("7E"));
  list.AddWarningKey("5I");
  EXPECT_FALSE(list.IsWarningMarked("5I")) << "added anew, it has to be agreed to anew";
  list.MarkWarningShown("7E");
  list.InitWarningList();
  EXPECT_FALSE(list.IsWarningMarked("7E"));
}

TEST_F(Policy, EachFailureNamesItsOwnThing) {
  const int rc = receive("VALEAVL", "BOOKID=0 PGID=2 STIME=2026-11-24 ETIME=2026-11-24", 149,
                         "head: ETY=TV | VUF=155 ETY=Camera | VUF=155 ETY=Screen | VUF=155");
  for (const char* name : {"Camera", "Screen", "TV"})
    expectToSee(
        overridden("Requester is not authorized to book equipment of type " + std::string(name) + "."));
  EXPECT_TRUE(ValidateEquipmentUsage(app, rc, "TV"));
}

struct Places : Policy {
  TestWindow window{app};
  BookingParts& form = window.parts;
  BookingRecord& record = window.record;

  Places() {
    window.times.showTimes("2026-11-24 09:00:00", "2026-11-24 10:30:00");
    record.PatronGroupId = 2;
    record.RoomId = 40;
    record.PickupLocationId = 3;
  }
};

TEST_F(Places, PickUpAndDeliveryAskForEachTypeThatCannotBeHadThere) {
  window.addMedia("100", "200", "300", "5");
  server.expect("VALPLO", "LOC=3 PGID=2 MTID=5 BI=100 MI=200 IM=300").fails(145, R"(
    VD1=MTID VD2=DVD
    VD1=ETI VD2=Projector
    VD1=RID VD2=Hall)");
  expectToSee(overridden("Media of type DVD cannot be picked up."));
  expectToSee(overridden("Equipment of type Projector cannot be picked up."));
  expectToSee(overridden(""));
  EXPECT_TRUE(ValidatePickupLocation(form));
  server.expect("VALDLO", "RID=40 PGID=2 MTID=5 BI=100 MI=200 IM=300").fails(146, "VD1=ETI VD2=Projector");
  expectToSee(refused("Equipment of type Projector cannot be delivered."));
  EXPECT_FALSE(ValidateDeliveryLocation(form));
  server.expect("VALDLO", "RID=40 PGID=2 MTID=5 BI=100 MI=200 IM=300").fails(108);
  desktop.expectWarning("Barcode is not active!");
  EXPECT_FALSE(ValidateDeliveryLocation(form));
}

TEST_F(Places, ALibraryRoomTellsItsStatusAndItsLongestTime) {
  const auto expectRoom = [&](const char* block) {
    server.expect("VALLSL", "RID=40 PGID=2").fails(157, block);
  };
  const auto expectStatus = [&](int mode, bool yes) {
    desktop.expectModalWindow<frmOverrideLibSched>("frmOverrideLibSched", [=](frmOverrideLibSched& w) {
      EXPECT_EQ(w.Caption, mode == 1 ? "Room Status Warning" : "Room Status Override");
      EXPECT_EQ(w.txtMessage.Text, "Painting");
      EXPECT_EQ(w.dtDate.shortDate(), "01/12/2026");
      EXPECT_EQ(w.txtStatusNote.Text, "Wet walls");
      EXPECT_EQ(w.cmdOK.Visible, mode == 1);
      EXPECT_EQ(w.cmdCancel.Visible, mode != 1);
      if (mode == 1 && !yes) return w.closeByOperator();
      if (mode == 1) return w.cmdOK.press();
      (yes ? w.cmdOverride : w.cmdCancel).press();
    });
  };
  const auto duration = [](const char* text) {
    return "Room may be scheduled for " + std::string(text) + "  Continue with booking?  ";
  };
  expectRoom(R"(
    VUF=147 BKSTS=1 SMS=Painting SDT=2026-12-01 SNO=Wet walls
    VUF=150
    VUF=148 BKDUR=H BKMX=1
    VUF=148 BKDUR=T BKMX=2
    VUF=148 BKDUR=U)");
  expectStatus(1, true);
  expectToSee(asked(duration("1 hour."), true));
  expectToSee(asked(duration("2 terms."), false));
  expectToSee(asked(duration(" an unlimited time period."), true));
  EXPECT_FALSE(ValidateLibSchedRoom(form)) << "a no counts, and the walk goes on";

  expectRoom("VUF=147 BKSTS=1 SMS=Painting SDT=2026-12-01 SNO=Wet walls");
  expectStatus(1, false);
  EXPECT_TRUE(ValidateLibSchedRoom(form)) << "a warning stops nothing, however it is closed";

  expectRoom("VUF=147 BKSTS=2 SMS=Painting SDT=2026-12-01 SNO=Wet walls | VUF=148 BKDUR=D BKMX=3");
  expectStatus(2, false);
  EXPECT_FALSE(ValidateLibSchedRoom(form)) << "a status that is not overridden ends the walk";

  expectRoom("VUF=147 BKSTS=2 SMS=Painting SDT=2026-12-01 SNO=Wet walls | VUF=148 BKDUR=D BKMX=3");
  expectStatus(2, true);
  expectToSee(asked(duration("3 days."), true));
  EXPECT_TRUE(ValidateLibSchedRoom(form));
}

TEST_F(Places, ARoomIsAskedForOncePerTimeUntilOneFails) {
  const auto request = [&](const char* start, const char* end) {
    return "BOOKID=0 STIME=" + std::string(start) + " ETIME=" + end + " RID=40 PGID=2";
  };
  server.expect("VALRMAVL", request("2026-11-24 09:00:00", "2026-11-24 10:30:00")).fails(107, "VUF=158");
  desktop.expectInformation(
      "The selected room is not available for the following booking:  24/11/2026 @ 09:00 AM");
  EXPECT_FALSE(ValidateRoomAvailability(form));

  TimesPanel& times = window.times;
  times.cmdMultipleBookings_Click();
  times.cmdAddDate_Click();
  for (const int day : {25, 26}) {
    times.fpdNeedDate.enter(Date{2026, 11, day});
    times.fpdFinishDate.enter(Date{2026, 11, day});
    times.cmdAddDate_Click();
  }
  server.expect("VALRMAVL", request("2026-11-24 09:00:00", "2026-11-24 10:30:00")).fails(185, "VUF=187");
  expectToSee(overridden("Within the warning limit of another booking."));
  server.expect("VALRMAVL", request("2026-11-25 09:00:00", "2026-11-25 10:30:00")).fails(185, "VUF=138");
  desktop.expectInformation(
      "The selected room is not available for the following booking:  25/11/2026@09:00 AM");
  EXPECT_FALSE(ValidateRoomAvailability(form));

  record.RoomId = 0;
  EXPECT_TRUE(ValidateRoomAvailability(form)) << "without a room nothing is asked";
}

TEST_F(Policy, AThingMoreThanTheLimitNeedsAnOverride) {
  BookingRecord record;
  EXPECT_FALSE(ConfirmItemLimit(app, record) || ConfirmEquipmentLimit(app, record))
      << "without a requester there is no limit yet";
  record.ItemLimit = record.ItemCount = 3;
  record.EquipmentLimit = 2;
  record.EquipmentCount = 1;
  expectToSee(refused("Media item count has exceeded requester's authorized limit of 3."));
  EXPECT_TRUE(ConfirmItemLimit(app, record));
  expectToSee(overridden("Media item count has exceeded requester's authorized limit of 3."));
  EXPECT_FALSE(ConfirmItemLimit(app, record));
  EXPECT_FALSE(ConfirmEquipmentLimit(app, record));
  record.EquipmentCount = 2;
  expectToSee(refused("Media equipment count has exceeded requester's authorized limit of 2."));
  EXPECT_TRUE(ConfirmEquipmentLimit(app, record));
  record.AdminBooking = "Y";
  EXPECT_FALSE(ConfirmItemLimit(app, record));
}

}  // namespace
}  // namespace vantry::test
