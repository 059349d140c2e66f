#pragma once

#include <array>
#include <string>
#include <string_view>

namespace vantry {

/// The operator's rights, in the order in which they are read; each is the tag of the same name.
enum class Right {
  EQADD,
  EQDEL,
  EQUPD,
  EQV,  // equipment
  EQMADD,
  EQMDEL,
  EQMUPD,
  EQMV,  // maintenance
  RMADD,
  RMDEL,
  RMUPD,
  RMV,  // rooms
  ITADD,
  ITDEL,
  ITUPD,
  ITV,  // items
  PAADD,
  PADEL,
  PAUPD,
  PAV,
  PACOU,  // patrons and their counters
  BKADD,
  BKUPD,
  BKCAN,
  BKV,
  BKVHI,  // bookings
  BKCHA,
  BKDIS,
  BKREN,  // circulation
  OVPAT,
  OVITM,
  OVOTR,  // overrides
  CHDDA,  // charge with a changed due date
  FEADD,
  FEPAY,
  FEADJ,  // fees
  EBM,
  EBM2  // one tag, read twice
};

inline constexpr int kRights = 38;

/// The tag of each right, by its place. The last one is listed twice on purpose: both places read the same
/// tag.
inline constexpr std::array<std::string_view, kRights> kRightCodes = {
    "EQADD", "EQDEL", "EQUPD", "EQV",   "EQMADD", "EQMDEL", "EQMUPD", "EQMV",  "RMADD", "RMDEL",
    "RMUPD", "RMV",   "ITADD", "ITDEL", "ITUPD",  "ITV",    "PAADD",  "PADEL", "PAUPD", "PAV",
    "PACOU", "BKADD", "BKUPD", "BKCAN", "BKV",    "BKVHI",  "BKCHA",  "BKDIS", "BKREN", "OVPAT",
    "OVITM", "OVOTR", "CHDDA", "FEADD", "FEPAY",  "FEADJ",  "EBM",    "EBM"};

/// What the operator may do at their location.
class Rights {
 public:
  /// Takes the values by place; a right is on when its value is exactly "Y".
  void set(const std::array<std::string, kRights>& values);
  [[nodiscard]] bool has(Right right) const { return flags_[static_cast<std::size_t>(right)]; }

 private:
  std::array<bool, kRights> flags_{};
};

/// A subject is view-only when its view right is on and its add, update and delete rights are all off.
[[nodiscard]] constexpr bool ViewOnly(bool view, bool add, bool update, bool remove) {
  return view && !add && !update && !remove;
}

/// The subjects for which the windows ask whether the operator may only view.
enum class Subject { Equipment, Maintenance, Rooms, Bookings };

/// The four rights of a subject: view, add, update and delete (for bookings: cancel).
struct SubjectRights {
  Right view, add, update, remove;
};
[[nodiscard]] SubjectRights rightsOf(Subject subject);
[[nodiscard]] bool viewOnly(const Rights& rights, Subject subject);
/// Whether any of the subject's four rights is on.
[[nodiscard]] bool mayReach(const Rights& rights, Subject subject);

}  // namespace vantry
