#include "words/request_tables.h"

// Log-on, overrides, staff and the counters of patrons.

namespace vantry {
namespace {

using namespace rights;

constexpr RequestRow kRequests[] = {
    {"RLL", "OI", "", "LNA LOC OLN", "LNA", kEveryone, kReads,
     "booking desk locations at which the operator may work"},
    {"SLL", "LOC",
     "EQADD EQDEL EQUPD EQV EQMADD EQMDEL EQMUPD EQMV RMADD RMDEL RMUPD RMV ITADD ITDEL ITUPD ITV PAADD "
     "PADEL PAUPD PAV PACOU BKADD BKUPD BKCAN BKV BKVHI BKCHA BKDIS BKREN OVPAT OVITM OVOTR CHDDA FEADD "
     "FEPAY FEADJ EBM",
     "", "", kEveryone, kReads, "rights of the operator at a location"},
    {"GETLOCS", "", "", "LNA LOC", "LOC", kEveryone, kReads, "all locations"},
    {"OPOV", "(OVPAT | OVITM | OVOTR) OI PW", "", "", "", kEveryone, kWrites,
     "lets a supervisor's login stand in for a right; 120: the login is good, but has not that right; -95: "
     "it is not good, or was tried too often"},

    {"GETOPS", "", "", "PID PATNM PSTS BCNT", "PID", kEveryone, kReads,
     "staff to whom bookings can be assigned"},
    {"ADDOP", "PID PSTS", "", "", "", kStaff, kWrites, "takes a patron onto the staff list"},
    {"UPDOPS", "PID+ PSTS", "", "", "", kStaff, kWrites, "makes staff members active or inactive"},
    {"DELOPS", "PID+", "", "", "", kStaff, kWrites, "takes patrons off the staff list"},

    {"GPAI", "PID", "CURBK LTRE HBK CANBK UNBK OI UDT", "", "", kCounters, kReads, "counters of a patron"},
    {"UPAI", "PID LTRE HBK CANBK UNBK", "", "", "", "PACOU", kWrites, "sets the counters of a patron"},
};

}  // namespace

std::span<const RequestRow> operatorRequests() {
  return kRequests;
}

}  // namespace vantry
