#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace vantry {

/// The form of a tag's value. Empty text is sound in every form: it reads as empty, or as zero.
///
/// - Id, Count: a whole number of 32 bits, in decimal figures with an optional minus.
/// - Name: any text.
/// - Flag: "Y" or "N".
/// - Date: YYYY-MM-DD, a day that exists; month and day may have one figure, since some are sent so.
/// - Time: YYYY-MM-DD HH:MM:SS, or a date, or a clock time HHMM, whose hour may be 24 or above after
/// midnight.
/// - Money: figures with an optional minus and at most one decimal point.
enum class TagForm { Id, Name, Flag, Count, Date, Time, Money };

/// One tag of the vocabulary.
struct TagRow {
  std::string_view tag;
  TagForm form;
  std::string_view meaning;  ///< what it carries, for people
};

/// The dictionary of the protocol: every tag once, grouped by subject.
[[nodiscard]] std::span<const TagRow> tagTable();

/// The row of a tag, or nullptr for a tag that is not in the dictionary.
[[nodiscard]] const TagRow* findTag(std::string_view tag);

/// Whether the text is a sound value of the form.
[[nodiscard]] bool hasForm(std::string_view text, TagForm form);

/// The name of a form as it is written in patterns and in the documents: "Id", "Name" ...
[[nodiscard]] std::string_view nameOf(TagForm form);
/// The form with that name, or nothing.
[[nodiscard]] std::optional<TagForm> formNamed(std::string_view name);

/// The tags as constants, so that a misspelt tag does not compile. `ETIME_` and `CTIME_` end in an underscore
/// because system headers define macros of the bare names.
namespace tags {

// Equipment and equipment groups; a group is a record of the same kind, with an EID of its own
inline constexpr std::string_view EID = "EID";
inline constexpr std::string_view ENO = "ENO";
inline constexpr std::string_view AENO = "AENO";
inline constexpr std::string_view BNO = "BNO";
inline constexpr std::string_view BARORNO = "BARORNO";
inline constexpr std::string_view EIU = "EIU";
inline constexpr std::string_view ETI = "ETI";
inline constexpr std::string_view ETY = "ETY";
inline constexpr std::string_view EMA = "EMA";
inline constexpr std::string_view EMO = "EMO";
inline constexpr std::string_view ESN = "ESN";
inline constexpr std::string_view EFO = "EFO";
inline constexpr std::string_view EDP = "EDP";
inline constexpr std::string_view ENM = "ENM";
inline constexpr std::string_view EQVP = "EQVP";
inline constexpr std::string_view EQVR = "EQVR";
inline constexpr std::string_view ESU = "ESU";
inline constexpr std::string_view EHB = "EHB";
inline constexpr std::string_view EHM = "EHM";
inline constexpr std::string_view ECNT = "ECNT";
inline constexpr std::string_view MVL = "MVL";
inline constexpr std::string_view ESDS = "ESDS";
inline constexpr std::string_view EPT = "EPT";
inline constexpr std::string_view EQIR = "EQIR";
inline constexpr std::string_view IFL = "IFL";
inline constexpr std::string_view MIC = "MIC";
inline constexpr std::string_view MNC = "MNC";
inline constexpr std::string_view BX = "BX";
inline constexpr std::string_view GRPID = "GRPID";
inline constexpr std::string_view GRPNO = "GRPNO";
inline constexpr std::string_view GRPNA = "GRPNA";

// Notes, barcodes and statuses
inline constexpr std::string_view ENID = "ENID";
inline constexpr std::string_view ENTY = "ENTY";
inline constexpr std::string_view RNID = "RNID";
inline constexpr std::string_view RNTY = "RNTY";
inline constexpr std::string_view NX = "NX";
inline constexpr std::string_view MNO = "MNO";
inline constexpr std::string_view BSI = "BSI";
inline constexpr std::string_view BST = "BST";
inline constexpr std::string_view PPBAR = "PPBAR";
inline constexpr std::string_view MEDBAR = "MEDBAR";
inline constexpr std::string_view EQBAR = "EQBAR";
inline constexpr std::string_view SID = "SID";
inline constexpr std::string_view STY = "STY";
inline constexpr std::string_view SPR = "SPR";
inline constexpr std::string_view SDT = "SDT";
inline constexpr std::string_view SNO = "SNO";
inline constexpr std::string_view SMS = "SMS";

// Rooms
inline constexpr std::string_view RID = "RID";
inline constexpr std::string_view RNO = "RNO";
inline constexpr std::string_view RNM = "RNM";
inline constexpr std::string_view RTI = "RTI";
inline constexpr std::string_view RTY = "RTY";
inline constexpr std::string_view RST = "RST";
inline constexpr std::string_view RCA = "RCA";
inline constexpr std::string_view TRNM = "TRNM";
inline constexpr std::string_view RDI = "RDI";
inline constexpr std::string_view RDTY = "RDTY";
inline constexpr std::string_view RDTL = "RDTL";

// Maintenance
inline constexpr std::string_view MID = "MID";
inline constexpr std::string_view MDI = "MDI";
inline constexpr std::string_view MDO = "MDO";
inline constexpr std::string_view MDYI = "MDYI";
inline constexpr std::string_view MDYO = "MDYO";
inline constexpr std::string_view MDID = "MDID";
inline constexpr std::string_view MTI = "MTI";
inline constexpr std::string_view MTY = "MTY";
inline constexpr std::string_view MCO = "MCO";
inline constexpr std::string_view MNT = "MNT";
inline constexpr std::string_view MSD = "MSD";
inline constexpr std::string_view MYE = "MYE";

// Who and where
inline constexpr std::string_view OI = "OI";
inline constexpr std::string_view ON = "ON";
inline constexpr std::string_view OLN = "OLN";
inline constexpr std::string_view CNM = "CNM";
inline constexpr std::string_view UNM = "UNM";
inline constexpr std::string_view CDT = "CDT";
inline constexpr std::string_view UDT = "UDT";
inline constexpr std::string_view CLI = "CLI";
inline constexpr std::string_view ULI = "ULI";
inline constexpr std::string_view CLN = "CLN";
inline constexpr std::string_view ULN = "ULN";
inline constexpr std::string_view LOC = "LOC";
inline constexpr std::string_view LNA = "LNA";
inline constexpr std::string_view VID = "VID";
inline constexpr std::string_view VTY = "VTY";
inline constexpr std::string_view PW = "PW";

// Rights of an operator
inline constexpr std::string_view EQADD = "EQADD";
inline constexpr std::string_view EQDEL = "EQDEL";
inline constexpr std::string_view EQUPD = "EQUPD";
inline constexpr std::string_view EQV = "EQV";
inline constexpr std::string_view EQMADD = "EQMADD";
inline constexpr std::string_view EQMDEL = "EQMDEL";
inline constexpr std::string_view EQMUPD = "EQMUPD";
inline constexpr std::string_view EQMV = "EQMV";
inline constexpr std::string_view RMADD = "RMADD";
inline constexpr std::string_view RMDEL = "RMDEL";
inline constexpr std::string_view RMUPD = "RMUPD";
inline constexpr std::string_view RMV = "RMV";
inline constexpr std::string_view ITADD = "ITADD";
inline constexpr std::string_view ITDEL = "ITDEL";
inline constexpr std::string_view ITUPD = "ITUPD";
inline constexpr std::string_view ITV = "ITV";
inline constexpr std::string_view PAADD = "PAADD";
inline constexpr std::string_view PADEL = "PADEL";
inline constexpr std::string_view PAUPD = "PAUPD";
inline constexpr std::string_view PAV = "PAV";
inline constexpr std::string_view PACOU = "PACOU";
inline constexpr std::string_view BKADD = "BKADD";
inline constexpr std::string_view BKUPD = "BKUPD";
inline constexpr std::string_view BKCAN = "BKCAN";
inline constexpr std::string_view BKV = "BKV";
inline constexpr std::string_view BKVHI = "BKVHI";
inline constexpr std::string_view BKCHA = "BKCHA";
inline constexpr std::string_view BKDIS = "BKDIS";
inline constexpr std::string_view BKREN = "BKREN";
inline constexpr std::string_view OVPAT = "OVPAT";
inline constexpr std::string_view OVITM = "OVITM";
inline constexpr std::string_view OVOTR = "OVOTR";
inline constexpr std::string_view CHDDA = "CHDDA";
inline constexpr std::string_view FEADD = "FEADD";
inline constexpr std::string_view FEPAY = "FEPAY";
inline constexpr std::string_view FEADJ = "FEADJ";
inline constexpr std::string_view EBM = "EBM";

// Patrons
inline constexpr std::string_view PID = "PID";
inline constexpr std::string_view PFN = "PFN";
inline constexpr std::string_view PMN = "PMN";
inline constexpr std::string_view PLN = "PLN";
inline constexpr std::string_view PSSN = "PSSN";
inline constexpr std::string_view PIID = "PIID";
inline constexpr std::string_view PGID = "PGID";
inline constexpr std::string_view PGNM = "PGNM";
inline constexpr std::string_view PATNM = "PATNM";
inline constexpr std::string_view PPID = "PPID";
inline constexpr std::string_view PPATNM = "PPATNM";
inline constexpr std::string_view PUP = "PUP";
inline constexpr std::string_view PVALD = "PVALD";
inline constexpr std::string_view PSTS = "PSTS";
inline constexpr std::string_view A1 = "A1";
inline constexpr std::string_view A2 = "A2";
inline constexpr std::string_view A3 = "A3";
inline constexpr std::string_view A4 = "A4";
inline constexpr std::string_view A5 = "A5";
inline constexpr std::string_view CY = "CY";
inline constexpr std::string_view SP = "SP";
inline constexpr std::string_view ZP = "ZP";
inline constexpr std::string_view PH = "PH";
inline constexpr std::string_view CURBK = "CURBK";
inline constexpr std::string_view LTRE = "LTRE";
inline constexpr std::string_view HBK = "HBK";
inline constexpr std::string_view CANBK = "CANBK";
inline constexpr std::string_view UNBK = "UNBK";
inline constexpr std::string_view BCNT = "BCNT";
inline constexpr std::string_view BKM = "BKM";

// Bookings
inline constexpr std::string_view BOOKID = "BOOKID";
inline constexpr std::string_view CNUM = "CNUM";
inline constexpr std::string_view DATE = "DATE";
inline constexpr std::string_view DAY = "DAY";
inline constexpr std::string_view MNTHS = "MNTHS";
inline constexpr std::string_view YRS = "YRS";
inline constexpr std::string_view STIME = "STIME";
inline constexpr std::string_view ETIME_ = "ETIME";
inline constexpr std::string_view STIME2 = "STIME2";
inline constexpr std::string_view ETIME2 = "ETIME2";
inline constexpr std::string_view SDOW = "SDOW";
inline constexpr std::string_view EDOW = "EDOW";
inline constexpr std::string_view UTIME = "UTIME";
inline constexpr std::string_view CTIME_ = "CTIME";
inline constexpr std::string_view SCHCOM = "SCHCOM";
inline constexpr std::string_view REQ = "REQ";
inline constexpr std::string_view BTYP = "BTYP";
inline constexpr std::string_view BTID = "BTID";
inline constexpr std::string_view DPL = "DPL";
inline constexpr std::string_view ICNT = "ICNT";
inline constexpr std::string_view ADBK = "ADBK";
inline constexpr std::string_view OPU = "OPU";
inline constexpr std::string_view ODE = "ODE";
inline constexpr std::string_view WIZ = "WIZ";
inline constexpr std::string_view RCOP = "RCOP";
inline constexpr std::string_view BKRES = "BKRES";
inline constexpr std::string_view BKSTS = "BKSTS";
inline constexpr std::string_view BKDUR = "BKDUR";
inline constexpr std::string_view BKMX = "BKMX";
inline constexpr std::string_view BKINT = "BKINT";
inline constexpr std::string_view BKPER = "BKPER";
inline constexpr std::string_view BKERR = "BKERR";
inline constexpr std::string_view DOCL = "DOCL";
inline constexpr std::string_view CHFA = "CHFA";
inline constexpr std::string_view VUF = "VUF";
inline constexpr std::string_view VD1 = "VD1";
inline constexpr std::string_view VD2 = "VD2";
inline constexpr std::string_view VD3 = "VD3";
inline constexpr std::string_view BRTY = "BRTY";
inline constexpr std::string_view SC = "SC";
inline constexpr std::string_view HRS = "HRS";
inline constexpr std::string_view DHRS = "DHRS";
inline constexpr std::string_view RHRS = "RHRS";
inline constexpr std::string_view PHRS = "PHRS";
inline constexpr std::string_view QD = "QD";

// Media items
inline constexpr std::string_view MTID = "MTID";
inline constexpr std::string_view MTYP = "MTYP";
inline constexpr std::string_view MDSC = "MDSC";
inline constexpr std::string_view BI = "BI";
inline constexpr std::string_view MI = "MI";
inline constexpr std::string_view IM = "IM";
inline constexpr std::string_view IB = "IB";
inline constexpr std::string_view TITL = "TITL";
inline constexpr std::string_view NTTL = "NTTL";
inline constexpr std::string_view MBIBT = "MBIBT";
inline constexpr std::string_view LO = "LO";
inline constexpr std::string_view EN = "EN";
inline constexpr std::string_view CH = "CH";
inline constexpr std::string_view YR = "YR";
inline constexpr std::string_view CP = "CP";
inline constexpr std::string_view CN = "CN";
inline constexpr std::string_view NCN = "NCN";
inline constexpr std::string_view CNTY = "CNTY";
inline constexpr std::string_view AUTH = "AUTH";
inline constexpr std::string_view KWHO = "KWHO";
inline constexpr std::string_view FLDT = "FLDT";
inline constexpr std::string_view FLDI = "FLDI";
inline constexpr std::string_view FLDV = "FLDV";

// Popup notes
inline constexpr std::string_view PMSG = "PMSG";
inline constexpr std::string_view PTYP = "PTYP";
inline constexpr std::string_view PWHI = "PWHI";
inline constexpr std::string_view PWID = "PWID";

// Calendars; hours are clock times
inline constexpr std::string_view MCID = "MCID";
inline constexpr std::string_view MCDESC = "MCDESC";
inline constexpr std::string_view MCCAL = "MCCAL";
inline constexpr std::string_view SOP = "SOP";
inline constexpr std::string_view SHBE = "SHBE";
inline constexpr std::string_view SHEE = "SHEE";
inline constexpr std::string_view MOP = "MOP";
inline constexpr std::string_view MHBE = "MHBE";
inline constexpr std::string_view MHEE = "MHEE";
inline constexpr std::string_view TOP = "TOP";
inline constexpr std::string_view THBE = "THBE";
inline constexpr std::string_view THEE = "THEE";
inline constexpr std::string_view WOP = "WOP";
inline constexpr std::string_view WHBE = "WHBE";
inline constexpr std::string_view WHEE = "WHEE";
inline constexpr std::string_view THOP = "THOP";
inline constexpr std::string_view THHBE = "THHBE";
inline constexpr std::string_view THHEE = "THHEE";
inline constexpr std::string_view FOP = "FOP";
inline constexpr std::string_view FHBE = "FHBE";
inline constexpr std::string_view FHEE = "FHEE";
inline constexpr std::string_view SASOP = "SASOP";
inline constexpr std::string_view SAHBE = "SAHBE";
inline constexpr std::string_view SAHEE = "SAHEE";
inline constexpr std::string_view EXDT = "EXDT";
inline constexpr std::string_view EXOP = "EXOP";
inline constexpr std::string_view EXOPH = "EXOPH";
inline constexpr std::string_view EXCLH = "EXCLH";

// Search and faults
inline constexpr std::string_view SRCHFOR = "SRCHFOR";
inline constexpr std::string_view SRCHLOC = "SRCHLOC";
inline constexpr std::string_view SRCHTAG = "SRCHTAG";
inline constexpr std::string_view SRCHVAL = "SRCHVAL";
inline constexpr std::string_view SRCHOP = "SRCHOP";
inline constexpr std::string_view SRCHCNT = "SRCHCNT";
inline constexpr std::string_view CANTREAD = "CANTREAD";

}  // namespace tags

}  // namespace vantry
