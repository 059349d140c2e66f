#include "words/request_tables.h"

// The schedule and its calendars, the monitor, pick-up lists, circulation and search.

namespace vantry {
namespace {

using namespace rights;

constexpr RequestRow kRequests[] = {
    // Schedule and calendars. Historical bookings come only to operators with BKVHI, whatever HBK says.
    {"BOOKDAY", "DATE HBK:Flag", "", "BOOKID BKRES STIME ETIME REQ CNUM BTYP DPL ECNT ICNT", "BOOKID",
     kBookings, kReads, "bookings of a day"},
    {"BOOKMTH", "DATE HBK:Flag (MNTHS:Flag | YRS:Flag)", "", "DAY MNTHS BCNT", "DAY MNTHS", kBookings, kReads,
     "how many bookings each day of a month or of a year has; of a year, with the month"},
    {"GDELCA", "", "", "MCID MCDESC MCCAL", "MCID", kEveryone, kReads, "calendars of deliveries"},
    {"GROMCA", "", "", "MCID MCDESC MCCAL", "MCID", kEveryone, kReads, "calendars of rooms"},
    {"GPICCA", "", "", "MCID MCDESC MCCAL", "MCID", kEveryone, kReads, "calendars of pick-ups"},
    {"GCDTL", "MCID",
     "MCID STIME ETIME SOP SHBE SHEE MOP MHBE MHEE TOP THBE THEE WOP WHBE WHEE THOP THHBE THHEE FOP FHBE "
     "FHEE SASOP SAHBE SAHEE",
     "", "", kEveryone, kReads, "a calendar: its span and its week"},
    {"GCALEX", "MCID", "", "EXDT EXOP EXOPH EXCLH", "EXDT", kEveryone, kReads,
     "exception days of a calendar"},

    // Monitor and pick-up lists
    {"DELD", "LOC+ HRS", "", "BOOKID BKRES DOCL PATNM RNM CNUM SCHCOM ODE:Time OPU:Time ON STIME ETIME",
     "BOOKID", kBookings, kReads,
     "deliveries (DOCL 1) and clean-ups (2) that come due at the locations, with the staff member"},
    {"PICKD", "LOC+ HRS", "", "BOOKID STIME ETIME PATNM RNM CNUM SCHCOM", "BOOKID", kBookings, kReads,
     "pick-ups that come due"},
    {"LIBSD", "LOC+ HRS", "", "BOOKID ICNT ECNT STIME ETIME PATNM RNM CNUM SCHCOM", "BOOKID", kBookings,
     kReads, "bookings of rooms that the library schedules"},
    {"GRS", "RID HRS", "", "BOOKID STIME ETIME PATNM PPATNM CNUM SCHCOM", "BOOKID", kBookings, kReads,
     "schedule of one room"},
    {"GECN", "LOC+ DHRS RHRS PHRS", "", "BKERR BOOKID STIME ETIME ODE PATNM PPATNM CNUM RNM ETY ENO STY TITL",
     "BKERR", kBookings, kWrites,
     "conflicts and warnings of what comes due; assigns the generic lines of that period"},
    {"GSC", "BOOKID", "", "EID ETY ENO", "EID", kBookings, kReads, "equipment of a booking in the monitor"},
    {"GEPL", "CLI LOC+ STIME ETIME OI", "", "BOOKID CNUM PFN PLN ENO EQBAR LNA EQIR:Name UTIME:Time ETY BTYP",
     "CNUM", kBookings, kReads, "equipment to be fetched in a period"},
    {"GIPL", "CLI LOC+ STIME ETIME OI", "",
     "BOOKID CNUM PFN PLN UTIME:Time NTTL MBIBT NCN CN EN CH LNA BNO MDSC ETY BTYP BI MI IM", "CNUM",
     kBookings, kReads, "media items to be fetched in a period"},

    // Circulation. Search text may end in "?" for a value that only begins so, an item id too.
    {"SSC", "(BNO | PPBAR | CNUM | PLN)", "", "BOOKID BKRES STIME ETIME REQ CNUM BTYP DPL ECNT ICNT",
     "BOOKID", "BKCHA", kReads, "bookings that are ready to be charged; 123: it is charged already"},
    {"SSD", "(BNO | PPBAR | CNUM | PLN | CN CNTY | (MEDBAR | IM:Name | EQBAR | ENO) QD?)",
     "BOOKID IM EID RID", "BOOKID BKRES STIME ETIME REQ CNUM BTYP DPL ECNT ICNT", "BOOKID", "BKDIS", kReads,
     "bookings that have something out; with QD no list, but in the head the one line that holds the thing"},
    {"CBK", "BOOKID", "", "EID ETY AENO EIU RNM IM TITL MDSC LO CP EN CH YR RID RNO ENO PMSG CHFA STIME STY",
     "EID IM RID RNO ENO CHFA", "BKCHA", kWrites,
     "charges a booking: records of what was assigned, by EID, IM and RID, and of popup notes, by RNO and "
     "ENO; 128: nothing is charged, CHFA tells why"},
    {"BND", "BOOKID", "", "TITL IM MEDBAR ETY BNO ENO EID", "IM EID", "BKDIS", kReads,
     "media and equipment of a booking that are still out, with the barcodes that a reader can read"},
    {"GIREFD", "BOOKID", "", "EID", "EID", "BKDIS", kReads,
     "equipment of a booking that stands in its room and goes back with it"},
    {"DBK", "BOOKID IM* EID* ETIME?", "", "RNO ENO PMSG", "RNO ENO", "BKDIS", kWrites,
     "discharges the lines sent, now or at ETIME; records of popup notes, by RNO and ENO"},
    {"VERCAN", "BOOKID", "", "", "", "BKCAN", kReads,
     "whether a booking may be cancelled; 114: equipment is charged; 115: an item is"},
    {"CANBK", "BOOKID", "", "", "", "BKCAN", kWrites, "cancels a booking"},
    {"VALDELBK", "BOOKID", "", "", "", "BKCAN", kReads,
     "whether a booking may be deleted; 106: it is in progress"},
    {"DELBK", "BOOKID", "", "", "", "BKCAN", kWrites, "deletes a booking"},

    // Search and the confirmation. What a category of a search shows depends on the rights to that subject.
    {"FIND", "(SRCHTAG SRCHVAL?)* SRCHFOR SRCHLOC SRCHOP?", "SRCHCNT SRCHTAG",
     "BOOKID STIME ETIME REQ CNUM BTYP DPL ECNT ICNT ETI EID ENO LNA RNM STY EMA EMO ESN GRPNO GRPNA EFO "
     "MNC RTI RID RNO RCA MSD MID MDYI ETY ON PID PFN PMN PLN PSSN PIID PGNM PGID BNO BST BSI",
     "BOOKID ETI RTI MSD PID", kEveryone, kReads,
     "the search: bookings walked by BOOKID, equipment and groups by ETI, rooms by RTI, maintenance by MSD, "
     "patrons by PID; -98 with SRCHTAG: the criterion whose value cannot be searched for; -94: it took too "
     "long"},
    {"PRDTLS", "BOOKID PID", "A1 A2 A3 A4 A5 CY SP ZP PH UDT", "", "", kBookings, kReads,
     "address of a patron of the booking for a confirmation; empty for anybody else"},
};

}  // namespace

std::span<const RequestRow> scheduleRequests() {
  return kRequests;
}

}  // namespace vantry
