#include "messaging/modGlobal.h"

#include <algorithm>

#include "messaging/frmError.h"
#include "messaging/return_codes.h"
#include "platform/desktop.h"

namespace vantry {
namespace {

enum class ErrorKind { Abort, System, Warning, Silent };

struct ErrorRow {
  int rc;
  ErrorKind kind;
  std::string_view text = {};
};

/// Codes without a row are silent too. The silent ones here are known failures for which no words exist.
/// "Unable To Delete!" is part of all texts from 100 to 107 on purpose, also where nothing is deleted.
constexpr ErrorRow kErrors[] = {
    {codes::Lost, ErrorKind::Abort},
    {-100, ErrorKind::Silent},
    {codes::Busy, ErrorKind::Silent},
    {codes::TagMissing, ErrorKind::System,
     "Required tag missing!\nContact Brindlex support with this information."},
    {-97, ErrorKind::System, "Database Operation Failed!\nContact Brindlex support with this information."},
    {-96, ErrorKind::Silent},
    {-95, ErrorKind::Silent},
    {-94, ErrorKind::Silent},
    {codes::NotJudged, ErrorKind::Silent},
    {-92, ErrorKind::Silent},
    {-82, ErrorKind::Silent},
    {1, ErrorKind::System, "Database Media Error!"},
    {2, ErrorKind::Silent},
    {7, ErrorKind::Silent},
    {100, ErrorKind::Warning, "Unable To Delete!\n\nBookings Exist!"},
    {101, ErrorKind::Warning, "Unable To Delete!\n\nMedia Change Status Exists!"},
    {102, ErrorKind::Warning, "Unable To Delete!\n\nExceptions Exist!"},
    {103, ErrorKind::Warning, "Unable To Delete!\n\nRoom Is Currently In Use!"},
    {104, ErrorKind::Warning, "Unable To Delete!\n\nRoom Is NOT Available!"},
    {105, ErrorKind::Warning, "Unable To Delete!\n\nPatron Date Expired!"},
    {106, ErrorKind::Warning, "Unable To Delete!\n\nBooking Is Occurring!"},
    {107, ErrorKind::Warning, "Unable To Delete!\n\nRoom Is Booked!"},
    {108, ErrorKind::Warning, "Barcode is not active!"},
    {109, ErrorKind::Warning, "Patron address marked for hold mail!"},
    {110, ErrorKind::Warning, "Patron has exceeded limits!"},
    {125, ErrorKind::Warning, "Unable to perform the function due to the status of this group."},
    {174, ErrorKind::Warning,
     "Unable to change location/room of this group as it is currently scheduled in other bookings."},
    {183, ErrorKind::Warning,
     "Unable to add equipment to the group.  The equipment and group are currently scheduled in other "
     "bookings."},
};

}  // namespace

modGlobal::modGlobal(Windows& windows, TagMessage& message, ServerTools& tools)
    : windows_(windows), message_(message), tools_(tools) {}

void modGlobal::BusyForm(Form& form) {
  windows_.desktop().setPointer(Pointer::Hourglass);
  form.Enabled = false;
}

void modGlobal::ReadyForm(Form& form) {
  windows_.desktop().setPointer(Pointer::Default);
  form.Enabled = true;
}

void modGlobal::pointerAndForms(Pointer pointer, bool enabled) {
  windows_.desktop().setPointer(pointer);
  for (int i = 0; i < windows_.Count(); ++i) windows_[i].Enabled = enabled;
}

void modGlobal::BusyAllForms() {
  pointerAndForms(Pointer::Hourglass, false);
}

void modGlobal::ReadyAllForms() {
  pointerAndForms(Pointer::Default, true);
}

void modGlobal::ReportRequestError(int rc, std::string_view module, std::string_view formName) {
  // The server's program and this one do not fit together: its own sentence says more than any code.
  if (rc == codes::NotTaken) return warningBox(windows_.desktop(), message_.Refusal());
  const auto* row = std::find_if(std::begin(kErrors), std::end(kErrors),
                                 [rc](const ErrorRow& candidate) { return candidate.rc == rc; });
  if (row == std::end(kErrors)) return;
  switch (row->kind) {
    case ErrorKind::Abort:
      if (Abort) Abort();
      break;
    case ErrorKind::System: {
      const std::string missing = rc == codes::TagMissing ? message_.Get("CANTREAD") : std::string();
      const ErrorReport report{std::string(row->text), std::string(module), std::to_string(rc),
                               std::string(formName), missing};
      frmError(windows_, tools_, *this, report).ShowModal();
      break;
    }
    case ErrorKind::Warning:
      warningBox(windows_.desktop(), std::string(row->text));
      break;
    case ErrorKind::Silent:
      break;
  }
}

std::string modGlobal::ReadHelpSection(IniFile& helpMap, std::string_view sectionName) {
  helpMap.SelectSection(sectionName);
  const std::string text = helpMap.ReadSection();
  std::string result;
  for (int position = 1; position != 0;) {
    std::string token = ServerTools::NextToken(position, text, std::string_view("\0", 1));
    std::replace(token.begin(), token.end(), '~', '\t');
    if (!result.empty()) result += '\n';
    result += ' ' + token;
  }
  return result;
}

}  // namespace vantry
