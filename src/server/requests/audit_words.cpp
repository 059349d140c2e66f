#include "server/requests/audit_words.h"

#include <algorithm>
#include <array>

#include "server/base/return_codes.h"
#include "words/tags.h"

namespace vantry::server {

namespace {

using enum Audited;

// ADDREQP is a question as often as a move. GECN gives wishes their things each time the monitor looks.
constexpr std::array words{
    AuditWord{"NEWBK", "booking made", Booking, {}, rc::satisfiedByRoom},
    AuditWord{"UPDBK", "booking changed", Booking, tags::BOOKID, rc::satisfiedByRoom},
    AuditWord{"CBK", "booking charged", Booking, tags::BOOKID},
    AuditWord{"DBK", "booking discharged", Booking, tags::BOOKID},
    AuditWord{"CANBK", "booking canceled", Booking, tags::BOOKID},
    AuditWord{"DELBK", "booking deleted", Booking, tags::BOOKID},
    AuditWord{"NEWEQIPD", "equipment made", Equipment},
    AuditWord{"UPDEQIPD", "equipment changed", Equipment, tags::EID},
    AuditWord{"REMEQIP", "equipment deleted", Equipment, tags::EID},
    AuditWord{"NEWGRPD", "group made", Equipment},
    AuditWord{"UPDGRPD", "group changed", Equipment, tags::EID},
    AuditWord{"REMGRP", "group deleted", Equipment, tags::EID},
    AuditWord{"NEWGITM", "member added", Equipment, tags::EID, rc::bookingsFollow},
    AuditWord{"REMGITM", "member removed", Equipment, tags::EID, rc::bookingsExist},
    AuditWord{"AETGB", "kept in bookings", Equipment, tags::EID},
    AuditWord{"DLTEBFR", "freed from bookings", Equipment, tags::EID},
    AuditWord{"AUEGNOTE", "note written", Equipment, tags::EID},
    AuditWord{"REMEGN", "note deleted", Equipment, tags::EID},
    AuditWord{"NEWEGBAR", "barcode written", Equipment, tags::EID},
    AuditWord{"REMEGBAR", "barcode deleted", Equipment, tags::EID},
    AuditWord{"NEWEGSTS", "status applied", Equipment, tags::EID},
    AuditWord{"REMEGSTS", "status removed", Equipment, tags::EID},
    AuditWord{"NEWROOMD", "room made", Room},
    AuditWord{"UPDROOMD", "room changed", Room, tags::RID},
    AuditWord{"REMROOM", "room deleted", Room, tags::RID},
    AuditWord{"AURNOTE", "note written", Room, tags::RID},
    AuditWord{"REMRN", "note deleted", Room, tags::RID},
    AuditWord{"NEWRMSTS", "status applied", Room, tags::RID},
    AuditWord{"REMRMSTS", "status removed", Room, tags::RID},
    AuditWord{"NEWEMAINTD", "maintenance made", Maintenance},
    AuditWord{"UPDEMAINTD", "maintenance changed", Maintenance, tags::MID},
    AuditWord{"REMMAINT", "maintenance deleted", Maintenance, tags::MID},
    AuditWord{"ADDOP", "staff added", Patron, tags::PID},
    AuditWord{"UPDOPS", "staff changed", Patron, tags::PID},
    AuditWord{"DELOPS", "staff deleted", Patron, tags::PID},
    AuditWord{"UPAI", "counters set", Patron, tags::PID},
};

}  // namespace

const AuditWord* findAuditWord(std::string_view code) {
  const auto found = std::ranges::find(words, code, &AuditWord::code);
  return found == words.end() ? nullptr : &*found;
}

}  // namespace vantry::server
