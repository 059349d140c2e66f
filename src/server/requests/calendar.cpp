// The calendars that govern bookings.

#include <array>

#include "server/desk/calendar_store.h"
#include "server/requests/handlers.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

struct DayTags {
  std::string_view open;
  std::string_view opensAt;
  std::string_view closesAt;
};

/// From Sunday, as the weekdays of a calendar are counted.
constexpr std::array<DayTags, 7> dayTags{{
    {tags::SOP, tags::SHBE, tags::SHEE},
    {tags::MOP, tags::MHBE, tags::MHEE},
    {tags::TOP, tags::THBE, tags::THEE},
    {tags::WOP, tags::WHBE, tags::WHEE},
    {tags::THOP, tags::THHBE, tags::THHEE},
    {tags::FOP, tags::FHBE, tags::FHEE},
    {tags::SASOP, tags::SAHBE, tags::SAHEE},
}};

Reply calendarList(Context& context, CalendarKind kind) {
  Reply reply;
  const Moment today = startOfDay(context.now);
  for (const CalendarRow& row : calendarsOf(context.db, context.session.locationId, kind)) {
    const bool current = row.startsOn <= today && today <= row.endsOn;
    reply.record()
        .set(tags::MCID, row.id)
        .set(tags::MCDESC, row.description)
        .set(tags::MCCAL, current ? "Y" : "N");
  }
  return reply;
}

Reply deliveryCalendars(Context& context, const Message&) {
  return calendarList(context, CalendarKind::Delivery);
}
Reply roomCalendars(Context& context, const Message&) {
  return calendarList(context, CalendarKind::Room);
}
Reply pickupCalendars(Context& context, const Message&) {
  return calendarList(context, CalendarKind::Pickup);
}

Reply calendarDetail(Context& context, const Message& message) {
  const std::optional<CalendarRow> calendar = findCalendar(context.db, message.number(tags::MCID));
  if (!calendar) return Reply(rc::notFound);
  Reply reply;
  reply.head(tags::MCID, calendar->id)
      .head(tags::STIME, momentText(calendar->startsOn))
      .head(tags::ETIME_, momentText(calendar->endsOn));
  const std::array<OpenHours, 7> week = weekOf(context.db, calendar->id);
  for (std::size_t weekday = 0; weekday < week.size(); ++weekday) {
    const OpenHours& hours = week[weekday];
    reply.head(dayTags[weekday].open, hours.open ? "Y" : "N");
    if (!hours.open) continue;
    reply.head(dayTags[weekday].opensAt, clockText(hours.opensAt));
    reply.head(dayTags[weekday].closesAt, clockText(hours.closesAt));
  }
  return reply;
}

Reply calendarExceptions(Context& context, const Message& message) {
  Reply reply;
  for (const OpenException& row : exceptionsOf(context.db, message.number(tags::MCID))) {
    reply.record().set(tags::EXDT, dateText(row.date)).set(tags::EXOP, row.hours.open ? "Y" : "N");
    if (!row.hours.open) continue;
    reply.set(tags::EXOPH, clockText(row.hours.opensAt)).set(tags::EXCLH, clockText(row.hours.closesAt));
  }
  return reply;
}

constexpr std::array rows{
    HandlerRow{"GDELCA", deliveryCalendars},  HandlerRow{"GROMCA", roomCalendars},
    HandlerRow{"GPICCA", pickupCalendars},    HandlerRow{"GCDTL", calendarDetail},
    HandlerRow{"GCALEX", calendarExceptions},
};

}  // namespace

std::span<const HandlerRow> calendarHandlers() {
  return rows;
}

}  // namespace vantry::server
