#include "words/request_tables.h"

// Bookings: reading and writing them, the checks of policy, and what the editor and the wizard look up.
//
// Parts that return in many patterns:
//   the place      (RID | LOC)?                     the room, or the location of a pick-up or a generic room
//   the times      (STIME ETIME)+                   a pair per booking; calendars also take days of the week
//   the media      (MTID BI MI IM)*                 a group per row
//   the equipment  (EID EQIR?)* (ETI IFL)*          pieces and groups, then generic types
//                  EID* (ETI IFL)*                  the same without what stands in the room
// Refusals that conflict with other bookings add records to be walked by CNUM.

namespace vantry {
namespace {

using namespace rights;

constexpr RequestRow kRequests[] = {
    // Reading
    {"GETMSD", "BOOKID",
     "BTID ADBK PATNM PGNM PPATNM PID PPID PGID WIZ UTIME CTIME CNUM BKRES SCHCOM CNM UNM CLN ULN CDT UDT "
     "STIME ETIME ODE OPU",
     "", "", kBookings, kReads, "head of a booking"},
    {"GETSRM", "BOOKID", "RID LOC RCOP RCA RTI RNM RTY", "", "", kBookings, kReads,
     "place of a booking: its room, pick-up location or generic room"},
    {"GETSITM", "BOOKID SC?", "", "MTID BI MI IM TITL MTY", "MTID", kBookings, kReads, "media of a booking"},
    {"GETSEQ", "BOOKID SC?", "", "EID ETI ETY EIU BNO ENO ESDS", "EID", kBookings, kReads,
     "equipment of a booking; EID 0 is a generic type"},
    {"GSCIT", "BOOKID", "", "MTID ETI", "MTID", kBookings, kReads,
     "equipment types of a booking that its media types brought"},
    {"ASKT", "", "STIME", "", "", kEveryone, kReads, "date and time of the server"},
    {"CHKUPD", "BOOKID UDT", "", "", "", "BKADD BKUPD BKCAN", kReads,
     "whether a booking is as it was read; 180: someone has changed it"},

    // Writing
    {"NEWBK",
     "(STIME ETIME)+ PID PGID PPID ADBK (RID | LOC | RCOP RCA LOC RTI) BTID (EID EQIR?)* (ETI IFL)* "
     "(MTID BI MI IM)* SCHCOM ODE OPU WIZ UTIME CTIME",
     "ETY MTY", "BOOKID CNM LNA CDT CNUM VUF ETY ENO BNO TITL IM STIME ETIME VD1 VD2 VD3",
     "BOOKID VUF CNUM VD1", "BKADD", kWrites,
     "makes one booking per pair of times; 137: done, equipment of the room satisfies a generic type; 181: "
     "the times overlap; 107, 149, 150: something was taken meanwhile, as VALRMAVL, VALEAVL, VALIAVL tell "
     "it; 151: a status forbids a piece, as VES tells it, and nobody has overridden it"},
    {"UPDBK",
     "BOOKID (STIME ETIME)+ PID PGID PPID ADBK (RID | LOC | RCOP RCA LOC RTI) BTID (EID EQIR?)* (ETI IFL)* "
     "(MTID BI MI IM)* SCHCOM ODE OPU WIZ UTIME CTIME",
     "UNM LNA UDT ETY MTY", "VUF CNUM ETY ENO BNO TITL LNA IM STIME ETIME VD1 VD2 VD3", "VUF CNUM VD1",
     "BKUPD", kWrites, "changes a booking; return codes as for NEWBK; 106: it is out; 7: it is over"},

    // Checks of times and places
    {"CDELTM", "PGID ADBK (STIME SDOW ETIME EDOW)+", "", "VUF STIME ETIME DATE:Time", "VUF", kMakeBookings,
     kReads, "whether deliveries can be made at the times; 167: against the calendar"},
    {"CRMTM", "PGID ADBK (STIME SDOW ETIME EDOW)+ RID", "", "VUF STIME ETIME DATE:Time BKINT BKPER", "VUF",
     kMakeBookings, kReads,
     "whether a room that the library schedules can be had at the times; 167: against the calendar; 185: "
     "against its policy"},
    {"CPUPTM", "PGID ADBK (STIME SDOW ETIME EDOW)+", "", "VUF STIME ETIME DATE:Time", "VUF", kMakeBookings,
     kReads, "whether pick-ups can be made at the times; 167: against the calendar"},
    {"VALDLO", "RID PGID (MTID BI MI IM)* (EID EQIR?)* (ETI IFL)*", "", "VD1 VD2", "VD1", kMakeBookings,
     kReads, "whether the things can be delivered; 146: not those of the types told, VD1 being MTID or ETI"},
    {"VALPLO", "LOC PGID (MTID BI MI IM)* (EID EQIR?)* (ETI IFL)*", "", "VD1 VD2", "VD1", kMakeBookings,
     kReads, "whether the things can be picked up; 145: not those of the types told, VD1 being MTID or ETI"},
    {"VALLSL", "RID PGID (MTID BI MI IM)* (EID EQIR?)* (ETI IFL)*", "", "VUF BKSTS SMS SDT SNO BKDUR BKMX",
     "VUF", kMakeBookings, kReads,
     "whether the library may schedule the room; 157: its status or its longest time objects"},
    {"VALRMAVL", "BOOKID STIME ETIME RID PGID", "", "VUF BKINT BKPER CNUM TITL LNA IM STIME ETIME VD1 VD2",
     "VUF CNUM", kMakeBookings, kReads,
     "whether a room is free at one time; 107: it is not; 185: against policy"},

    // Checks of limits and availability
    {"VIUL", "BOOKID PGID BTID (STIME ETIME)+ (MTID BI MI IM)*", "MTY",
     "VUF MTY BKINT BKPER IM CNUM TITL LNA STIME ETIME VD1 VD2", "VUF CNUM", kMakeBookings, kReads,
     "whether the media are within the requester's limits; 150: not so"},
    {"VEUL", "BOOKID PGID BTID (STIME ETIME)+ EID* (ETI IFL)*", "ETY",
     "VUF BKINT BKPER EID CNUM ETY ENO BNO STIME ETIME VD1 VD2", "VUF CNUM", kMakeBookings, kReads,
     "whether the equipment is within the requester's limits; 149: not so"},
    {"VALIAVL", "BOOKID (RID | LOC)? PGID (STIME ETIME)+ (MTID BI MI IM)*", "MTY",
     "VUF MTY BKINT BKPER IM CNUM TITL LNA STIME ETIME VD1 VD2", "VUF CNUM", kMakeBookings, kReads,
     "whether the media are free; 150: not so"},
    {"VALEAVL", "BOOKID (RID | LOC)? PGID (STIME ETIME)+ EID* (ETI IFL)*", "ETY",
     "VUF BKINT BKPER EID CNUM ETY ENO BNO STIME ETIME VD1 VD2", "VUF CNUM", kMakeBookings, kReads,
     "whether the equipment is free; 149: not so; 179: it is not in a storage room"},
    {"VITMUSG", "BOOKID MTID PGID (RID | LOC)? MI IM (STIME ETIME)+", "MTY",
     "VUF MTY BKINT BKPER IM CNUM TITL LNA STIME ETIME VD1 VD2", "VUF CNUM", kMakeBookings, kReads,
     "whether an item may be added; 150: not so"},
    {"VEQUSG", "BOOKID (EID | ETI) PGID (RID | LOC)? (STIME ETIME)+", "ETY",
     "VUF BKINT BKPER EID CNUM ETY ENO BNO STIME ETIME VD1 VD2", "VUF CNUM", kMakeBookings, kReads,
     "whether a piece, group or generic type may be added; 149: not so; 179: it is not in a storage room"},
    {"VES", "EID", "", "VD1 VD2 VD3", "VD1", kMakeBookings, kReads,
     "whether the status of a piece or group allows a booking; 151: VD1 1 asks, 2 passes, else it needs an "
     "override"},

    // Patrons
    {"PATPRIV", "PGID PID", "ICNT ECNT PVALD BKM BCNT", "", "", kBookings, kReads,
     "privileges of a requester; 144: expired"},
    {"VALRP", "PID PGID? PUP", "VUF VD1 VD2", "", "", kMakeBookings, kReads,
     "whether a patron may book or pick up; 108: barcode not active; 109: held mail; 110: over a limit, "
     "told by VUF and VD1, VD2; 118, 119: too much equipment, too many items; 144: expired"},
    {"GPBAR", "PID", "", "BNO BST PGNM PGID", "BNO", kBookings, kReads,
     "barcodes of a patron with their groups"},

    // Rooms, notes and equipment that goes with them
    {"GDRM", "ADBK PGID", "", "RNM RID", "RID", kBookings, kReads,
     "rooms to which a patron group has deliveries"},
    {"GLSRM", "WIZ? ADBK PGID?", "", "RNM RID", "RID", kBookings, kReads,
     "rooms that the library schedules for a patron group"},
    {"GETPMSG", "PWHI PTYP PWID", "PMSG", "", "", kBookings, kReads,
     "popup note of a room or a piece for an occasion"},
    {"SUG", "RID (EID EQIR?)* (ETI IFL)*", "UTIME CTIME", "", "", kMakeBookings, kReads,
     "minutes of set-up and clean-up that a room and equipment suggest"},
    {"ITMEQS", "MTID PGID ADBK", "MTY", "ETI ETY", "ETI", kBookings, kReads,
     "equipment types that a media type needs"},

    // Media
    {"GBBIB", "IB", "", "BI MI IM TITL MTID MTY", "BI", kMakeBookings, kReads,
     "titles and item of a barcode; 2: none"},
    {"GMIID", "IM:Name", "MI MTID MTY", "", "", kMakeBookings, kReads,
     "holdings of an item id, as it was typed"},
    {"GBBMID", "MI", "", "BI TITL", "BI", kMakeBookings, kReads, "titles of a holdings record"},
    {"GID", "MI IM", "LO EN CH YR CP MTYP MDSC MTID MTY", "", "", kBookings, kReads, "details of an item"},
    {"GMD", "MI BI", "", "MI CN LO", "MI", kBookings, kReads, "call number and location of holdings"},
    {"GBHI", "(BI MI)+", "", "BI MI IM TITL MTID MTY LO CN EN CH YR CP", "BI", kEveryone, kReads,
     "holdings and items of titles; MI 0 asks for all holdings of one; a record without IM has no item"},
    {"CATFIND", "SRCHTAG SRCHVAL KWHO?", "SRCHCNT", "BI TITL AUTH YR", "BI", kEveryone, kReads,
     "the catalogue search, by 1 title, 2 author, 3 subject, 4 call number, 5 keywords; a text that ends in "
     "? "
     "stands for all that begin so; at most 500 titles, SRCHCNT 501 when there are more"},
    {"CATREC", "(BI | MI)", "", "FLDT FLDI FLDV", "FLDT", kEveryone, kReads,
     "the MARC record of a title or of its holdings; 2: no such record"},
    {"GMTYP", "", "", "MTID MTY", "MTID", kMakeBookings, kReads, "media types"},
};

}  // namespace

std::span<const RequestRow> bookingRequests() {
  return kRequests;
}

}  // namespace vantry
