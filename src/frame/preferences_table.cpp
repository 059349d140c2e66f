#include "frame/preferences.h"

namespace vantry {

using P = Preferences;
using Slot = PreferenceRow::Slot;

// In the order in which the main window takes the values. The key for pick-up hours has another spelling
// where it is written; the store takes both for one.
static constexpr PreferenceRow kTable[] = {
    // clang-format off
    {"Position", "0", [](P& p) -> Slot { return &p.Position; }, Applies::Nothing, 0, 2},
    {"ToolTips", "true", [](P& p) -> Slot { return &p.ToolTips; }},
    {"MergeCells", "false", [](P& p) -> Slot { return &p.MergeCells; }},
    {"AutoSizeCells", "true", [](P& p) -> Slot { return &p.AutoSizeCells; }},
    {"BookingCalendars", "false", [](P& p) -> Slot { return &p.BookingCalendars; }},
    {"DisplayCharged", "true", [](P& p) -> Slot { return &p.DisplayCharged; }},
    {"DisplayCompleted", "true", [](P& p) -> Slot { return &p.DisplayCompleted; }},
    {"DisplayCanceled", "true", [](P& p) -> Slot { return &p.DisplayCanceled; }},
    {"DisplayUnclaimed", "true", [](P& p) -> Slot { return &p.DisplayUnclaimed; }},
    {"DisplayOverdue", "true", [](P& p) -> Slot { return &p.DisplayOverdue; }, Applies::Legend},
    {"Barcodes", "true", [](P& p) -> Slot { return &p.Barcodes; }},
    {"SiteNumbers", "false", [](P& p) -> Slot { return &p.SiteNumbers; }},
    {"NewBooking", "0", [](P& p) -> Slot { return &p.NewBooking; }, Applies::Nothing, 0, 3},
    {"ScheduleBar", "true", [](P& p) -> Slot { return &p.ScheduleBar; }},
    {"BookingsRooms", "0", [](P& p) -> Slot { return &p.BookingsRooms; }, Applies::Nothing, 0, 2},
    {"BookRoomType", "0", [](P& p) -> Slot { return &p.BookRoomType; }, Applies::Nothing, 0, 2},
    {"SuggestEquip", "false", [](P& p) -> Slot { return &p.SuggestEquip; }},
    {"AutoCharge", "false", [](P& p) -> Slot { return &p.AutoCharge; }},
    {"AutoPrintConf", "false", [](P& p) -> Slot { return &p.AutoPrintConf; }},
    {"RetainRequester", "false", [](P& p) -> Slot { return &p.RetainRequester; }},
    {"Advanced", "false", [](P& p) -> Slot { return &p.Advanced; }},
    {"Historical", "false", [](P& p) -> Slot { return &p.Historical; }},
    {"AutoTruncate", "false", [](P& p) -> Slot { return &p.AutoTruncate; }},
    {"AutoTruncateBib", "false", [](P& p) -> Slot { return &p.AutoTruncateBib; }},
    {"RetainSearch", "false", [](P& p) -> Slot { return &p.RetainSearch; }},
    {"AutoFindNow", "false", [](P& p) -> Slot { return &p.AutoFindNow; }},
    {"View", "3", [](P& p) -> Slot { return &p.View; }, Applies::Nothing, 0, 10000},
    {"LastView", "0", [](P& p) -> Slot { return &p.LastView; }, Applies::Nothing, 0, 10000},
    {"Background", "", [](P& p) -> Slot { return &p.Background; }, Applies::ListBars},
    {"Color0B", "65535", [](P& p) -> Slot { return &p.backColours[0]; }},
    {"Color0F", "0", [](P& p) -> Slot { return &p.foreColours[0]; }},
    {"Color1B", "16711935", [](P& p) -> Slot { return &p.backColours[1]; }},
    {"Color1F", "0", [](P& p) -> Slot { return &p.foreColours[1]; }},
    {"Color2B", "255", [](P& p) -> Slot { return &p.backColours[2]; }},
    {"Color2F", "0", [](P& p) -> Slot { return &p.foreColours[2]; }},
    {"Color3B", "65280", [](P& p) -> Slot { return &p.backColours[3]; }},
    {"Color3F", "0", [](P& p) -> Slot { return &p.foreColours[3]; }},
    {"Color4B", "16711680", [](P& p) -> Slot { return &p.backColours[4]; }},
    {"Color4F", "0", [](P& p) -> Slot { return &p.foreColours[4]; }},
    {"Color5B", "2147483660", [](P& p) -> Slot { return &p.backColours[5]; }},
    {"Color5F", "0", [](P& p) -> Slot { return &p.foreColours[5]; }},
    {"Color6B", "16776960", [](P& p) -> Slot { return &p.backColours[6]; }},
    {"Color6F", "0", [](P& p) -> Slot { return &p.foreColours[6]; }},
    {"Color7B", "33023", [](P& p) -> Slot { return &p.backColours[7]; }},
    {"Color7F", "0", [](P& p) -> Slot { return &p.foreColours[7]; }},
    {"Color8B", "16777215", [](P& p) -> Slot { return &p.backColours[8]; }},
    {"Color8F", "0", [](P& p) -> Slot { return &p.foreColours[8]; }, Applies::Colours},
    {"UseIntervals", "true", [](P& p) -> Slot { return &p.UseIntervals; }},
    {"Start", "6", [](P& p) -> Slot { return &p.Start; }, Applies::Nothing, 0, 12},
    {"End", "10", [](P& p) -> Slot { return &p.End; }, Applies::Nothing, 1, 12},
    {"Interval", "1", [](P& p) -> Slot { return &p.Interval; }, Applies::Nothing, 0, 5},
    {"AutoPrintDelivery", "false", [](P& p) -> Slot { return &p.AutoPrintDelivery; }},
    {"AutoPrintPickUp", "false", [](P& p) -> Slot { return &p.AutoPrintPickUp; }},
    {"DeliveryHours", "1", [](P& p) -> Slot { return &p.DeliveryHours; }},
    {"PickUpHours", "1", [](P& p) -> Slot { return &p.PickUpHours; }},
    {"RoomHours", "1", [](P& p) -> Slot { return &p.RoomHours; }},
    {"DaemonInterval", "15", [](P& p) -> Slot { return &p.DaemonInterval; }, Applies::Nothing, 0, 35000},
    {"Sound0", "", [](P& p) -> Slot { return &p.sounds[0]; }},
    {"Sound1", "", [](P& p) -> Slot { return &p.sounds[1]; }},
    {"Sound2", "", [](P& p) -> Slot { return &p.sounds[2]; }},
    {"Sound3", "", [](P& p) -> Slot { return &p.sounds[3]; }},
    {"Sound4", "", [](P& p) -> Slot { return &p.sounds[4]; }},
    {"Sound5", "", [](P& p) -> Slot { return &p.sounds[5]; }},
    {"Sound6", "", [](P& p) -> Slot { return &p.sounds[6]; }},
    {"Sound7", "", [](P& p) -> Slot { return &p.sounds[7]; }},
    {"Sound8", "", [](P& p) -> Slot { return &p.sounds[8]; }},
    {"Sound9", "", [](P& p) -> Slot { return &p.sounds[9]; }},
    {"ChargeSearch", "0", [](P& p) -> Slot { return &p.ChargeSearch; }, Applies::Nothing, 0, 3},
    {"ChargeClear", "false", [](P& p) -> Slot { return &p.ChargeClear; }},
    {"PrintOnCharge", "false", [](P& p) -> Slot { return &p.PrintOnCharge; }},
    {"DischargeSearch", "0", [](P& p) -> Slot { return &p.DischargeSearch; }, Applies::Nothing, 0, 13},
    {"DischargeClear", "false", [](P& p) -> Slot { return &p.DischargeClear; }},
    {"DischargeSelect", "true", [](P& p) -> Slot { return &p.DischargeSelect; }, Applies::Searches},
    // clang-format on
};

std::span<const PreferenceRow> preferenceTable() {
  return kTable;
}

}  // namespace vantry
