#include "words/request_tables.h"

// Equipment, groups, rooms and maintenance: records, lists, notes, statuses and barcodes.

namespace vantry {
namespace {

using namespace rights;

constexpr RequestRow kRequests[] = {
    // Records of equipment and groups
    {"GETEDTL", "EID",
     "ENO BNO EMA EFO EMO ESN STY EQVP EQVR ESU EDP ENM GRPNO GRPID CNM UNM CDT UDT CLN ULN EHB EHM TRNM "
     "LNA LOC RNM RID",
     "", "", kEquipment, kReads, "one piece of equipment"},
    {"NEWEQIPD", "BNO ETI ETY ENO EMA EFO EMO ESN EQVP EQVR ESU EDP ENM LOC RID RNM GRPID?",
     "EID CLN CDT CNM MVL", "", "", "EQADD", kWrites,
     "makes a piece of equipment; MVL is what the group is worth, where one is named"},
    {"UPDEQIPD", "EID ETI ETY ENO EMA EFO EMO ESN EQVP EQVR ESU EDP ENM LOC RID RNM", "UDT ULN UNM MVL", "",
     "", "EQUPD", kWrites, "changes a piece of equipment"},
    {"VERDELE", "VID VTY", "", "", "", "EQDEL RMDEL", kReads,
     "whether a room, piece or group may be deleted"},
    {"REMEQIP", "EID", "", "", "", "EQDEL", kWrites, "deletes a piece of equipment"},
    {"GETGDTL", "EID", "ENO BNO STY EQVR CNM UNM CDT UDT CLN ULN EHB LNA LOC RNM RID TRNM", "", "",
     kEquipment, kReads, "one group"},
    {"NEWGRPD", "BNO ETI ETY ENO LOC RID RNM", "EID CLN CDT CNM", "", "", "EQADD", kWrites, "makes a group"},
    {"UPDGRPD", "EID ETI ETY ENO LOC RID RNM", "UDT ULN UNM", "", "", "EQUPD", kWrites, "changes a group"},
    {"REMGRP", "EID", "", "", "", "EQDEL", kWrites, "deletes a group"},
    {"GETEGTN", "EID", "ETY ETI", "", "", kEquipmentOrRooms, kReads, "type of a piece or a group"},
    {"GETRTN", "RID", "RTY RTI", "", "", kRooms, kReads, "type of a room"},

    // Categories and their members
    {"GETECAT", "", "", "ETI ETY MIC", "ETI", kEveryone, kReads, "equipment types"},
    {"GETGCAT", "RID?", "", "ETI ETY MIC", "ETI", kEveryone, kReads,
     "group types; with a room, of the groups that can be added to it"},
    {"GETRCAT", "", "", "RTI RTY MIC RST", "RTI", kEveryone, kReads, "room types"},
    {"GETMYER", "", "", "MYE", "MYE", kEveryone, kReads, "years that hold maintenance records"},
    {"GETEAVC", "RID?", "", "ETI ETY MIC", "ETI", kEquipmentRoomsOrBookings, kReads,
     "equipment types with pieces that are free to be added"},
    {"GETEASC", "EID", "", "ETI ETY MIC", "ETI", kEquipment, kReads, "types of the pieces of a group"},
    {"GETEITM", "ETI", "", "EID BNO ENO LNA RNM STY EMA EMO ESN GRPNO GRPNA EFO MNC", "EID",
     kEquipmentOrBookings, kReads, "pieces of a type"},
    {"GETGITM", "ETI", "", "EID ECNT ENO BNO LNA RNM STY EIU RID MNC", "EID", kEquipmentRoomsOrBookings,
     kReads, "groups of a type"},
    {"GETRITM", "RTI", "", "RID RNO RNM LNA STY RCA", "RID", kRooms, kReads, "rooms of a type"},
    {"GETGEQ", "EID", "", "EID BNO ENO ETY RNM STY EMA EMO ESN EFO", "EID", kEquipment, kReads,
     "members of a group"},
    {"GETGRPE", "ETI EID", "", "EID BNO ENO LNA RNM STY EMA EMO ESN GRPNO EFO", "EID", kEquipment, kReads,
     "pieces of a type that are in groups"},
    {"GETNGRPE", "ETI (EID | RID)?", "", "EID BNO ENO LNA RNM STY EMA EMO ESN GRPNO EFO EIU RID MNC", "EID",
     kEquipmentRoomsOrBookings, kReads, "pieces of a type that are in no group, for a group or a room"},
    {"GETIBYB", "EPT? BARORNO (BNO | ENO)", "SRCHCNT", "EID ENO BNO STY ETY EIU RID", "EID",
     kInventoryOrBookings, kReads, "looks equipment up by barcode or number"},

    // Membership and place
    {"NEWGITM", "EID GRPID ULI", "MVL EQVR LOC RID RNM", "", "", "EQADD EQUPD", kWrites,
     "puts a piece into a group, and tells where that is kept; 125: the group's status forbids it; 182: "
     "done, and "
     "bookings were adjusted"},
    {"REMGITM", "EID GRPID ULI", "MVL BX", "", "", "EQUPD", kWrites,
     "takes a piece out of a group; 100 with BX: bookings hold it"},
    {"AETGB", "EID GRPID", "", "", "", "EQUPD", kWrites,
     "keeps a piece that left its group in its future bookings"},
    {"ADDREQP", "EID RID ULI?", "", "", "", kEquipmentOrRooms, kWrites,
     "places a piece or group in a room, which needs EQADD, EQUPD or RMUPD; where it is there already, or "
     "is new, only a question; 174: a pending booking holds it, nothing moves; 125: its group holds it"},
    {"DLTEBFR", "EID", "", "", "", "EBM", kWrites,
     "frees a piece from its pending bookings before a move; 100: a delivery or pick-up needs it"},
    {"GETREQP", "RID BRTY?", "", "EID BNO ENO ETY EIU ESDS", "EID", kRoomsOrBookings, kReads,
     "pieces and groups that stand in a room"},
    {"GETARLOC", "LOC", "", "RID RNM RNO", "RID", kEveryone, kReads, "rooms of a location"},

    // Notes
    {"GETEGNS", "EID", "", "ENID NX ENTY", "ENID", kEquipment, kReads,
     "note types of a piece or group, and which of them are filled"},
    {"GETEGN", "EID ENID", "MNO UDT ON", "", "", kEquipment, kReads, "one note of a piece or group"},
    {"AUEGNOTE", "EID ENID MNO", "", "", "", "EQUPD", kWrites, "writes a note of a piece or group"},
    {"REMEGN", "EID ENID", "", "", "", "EQUPD", kWrites, "deletes a note of a piece or group"},
    {"GETRNS", "RID", "", "RNID NX RNTY", "RNID", kRooms, kReads,
     "note types of a room, and which of them are filled"},
    {"GETRN", "RID RNID", "MNO UDT ON", "", "", kRooms, kReads, "one note of a room"},
    {"AURNOTE", "RID RNID MNO", "", "", "", "RMUPD", kWrites, "writes a note of a room"},
    {"REMRN", "RID RNID", "", "", "", "RMUPD", kWrites, "deletes a note of a room"},

    // Statuses and barcodes
    {"GETEGSTY", "", "", "SID SPR STY", "SID", kEveryone, kReads, "status types of equipment and groups"},
    {"GETEGSTS", "(EID | MID)", "", "SID SPR SDT SNO", "SID", kEquipmentOrMaintenance, kReads,
     "statuses on a piece or group, or on the piece of a maintenance record"},
    {"NEWEGSTS", "(EID | MID) SID SNO? ULI", "UDT", "", "", "EQUPD EQMADD EQMUPD", kWrites,
     "applies a status to a piece or group"},
    {"REMEGSTS", "(EID | MID) SID ULI", "", "", "", "EQUPD EQMADD EQMUPD", kWrites,
     "takes a status off a piece or group; good also where it is not applied"},
    {"GETRSTY", "", "", "SID SPR STY", "SID", kEveryone, kReads, "status types of rooms"},
    {"GETRSTS", "RID", "", "SID SPR SDT SNO", "SID", kRooms, kReads, "statuses on a room"},
    {"NEWRMSTS", "RID SID SNO ULI", "UDT", "", "", "RMUPD", kWrites, "applies a status to a room"},
    {"REMRMSTS", "RID SID ULI", "", "", "", "RMUPD", kWrites, "takes a status off a room"},
    {"GETEGBAR", "EID", "", "BNO BSI", "BNO", kEquipmentOrMaintenance, kReads,
     "barcodes of a piece or group"},
    {"GETEGBTY", "", "", "BSI BST", "BSI", kEveryone, kReads, "barcode statuses"},
    {"NEWEGBAR", "EID BNO ULI BSI", "", "", "", "EQUPD EQMUPD", kWrites,
     "adds a barcode to a piece or group; a new active one makes the others inactive"},
    {"REMEGBAR", "EID BNO", "", "", "", "EQUPD EQMUPD", kWrites, "deletes a barcode of a piece or group"},

    // Bookings of a thing
    {"GETHEB", "EID", "", "BOOKID CNUM STIME ETIME PGNM PATNM BTYP", "BOOKID", "BKVHI", kReads,
     "historical bookings of a piece or group"},
    {"GETCEB", "EID", "", "BOOKID CNUM STIME ETIME PGNM PATNM BTYP", "BOOKID", kBookings, kReads,
     "current bookings of a piece or group"},
    {"GETHRB", "RID", "", "BOOKID CNUM STIME ETIME PATNM", "BOOKID", "BKVHI", kReads,
     "historical bookings of a room"},
    {"GETCRB", "RID", "", "BOOKID CNUM STIME ETIME PATNM", "BOOKID", kBookings, kReads,
     "current bookings of a room"},

    // Rooms
    {"GETRDTL", "RID", "RNO LOC RNM RCA STY LNA RST CNM UNM CDT UDT CLN CLI ULN EHB", "RDI RDTY RDTL", "RDI",
     kRooms, kReads, "one room and its details"},
    {"NEWROOMD", "RTI RTY RNO RNM LOC RCA (RDI RDTL)*", "CDT CNM RID CLN", "", "", "RMADD", kWrites,
     "makes a room with its details"},
    {"UPDROOMD", "RID RTI RTY RNO RNM LOC RCA (RDI RDTL)*", "UDT ULN UNM", "", "", "RMUPD", kWrites,
     "changes a room; the details sent replace those stored"},
    {"REMROOM", "RID", "", "", "", "RMDEL", kWrites, "deletes a room"},
    {"GETRDTLTY", "", "", "RDI RDTY", "RDI", kEveryone, kReads, "types of room details"},

    // Maintenance
    {"GETMDTL", "MID", "EID ETY ENO BNO MDI MDO ENM MNO STY CNM UNM CLN ULN CDT UDT MNT", "MDID MTI MTY MCO",
     "MDID", kMaintenance, kReads, "one maintenance record and its detail lines"},
    {"NEWEMAINTD", "EID BNO (MNO MDI MDO ENM (MTI MCO)*)?", "MID CLN CDT CNM ENM UDT ULN UNM", "", "",
     "EQMADD", kWrites,
     "makes a maintenance record; the short form comes from the barcode dialog; without ENM the piece "
     "keeps its date, which the reply tells"},
    {"UPDEMAINTD", "MID EID BNO (MNO MDI MDO ENM (MTI MCO)*)?", "UDT ULN UNM", "", "", "EQMUPD", kWrites,
     "changes a maintenance record; the detail lines sent replace those stored; the short form leaves the "
     "rest as it is"},
    {"REMMAINT", "MID", "", "", "", "EQMDEL", kWrites, "deletes a maintenance record"},
    {"GETMITM", "MSD EID", "", "MID MDYI MDYO ON MTY ETY ENO", "MID", kEquipmentOrMaintenance, kReads,
     "maintenance records of a month, of one piece or, with EID 0, of all"},
    {"GETMDTY", "", "", "MTI MTY", "MTI", kEveryone, kReads, "types of maintenance details"},
};

}  // namespace

std::span<const RequestRow> inventoryRequests() {
  return kRequests;
}

}  // namespace vantry
