#include "messaging/dialogs.h"
#include "messaging/frmBibSearch.h"

namespace vantry {

std::vector<BibSelection> BibSearchDialog::Search() {
  const TagMessage::Inner inner(*message_);
  const frmBibSearch::Services services{tools_, global_, *message_};
  frmBibSearch window(windows_, services,
                      {allowHoldingsKeyword_, AutoTruncate, RetainSearch ? last_ : BibCriteria{}});
  window.ShowModal();
  last_ = window.criteria();
  return window.result();
}

}  // namespace vantry
