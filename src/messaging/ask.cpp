#include "messaging/ask.h"

#include <algorithm>

#include "messaging/modGlobal.h"
#include "messaging/return_codes.h"
#include "platform/desktop.h"
#include "platform/form.h"

namespace vantry {

std::string_view wordsOf(std::span<const RefusalWords> refusals, int rc, std::string_view code,
                         const TagMessage& message) {
  const std::string tag = rc == codes::TagMissing ? message.Get("CANTREAD") : std::string();
  const auto found = std::find_if(refusals.begin(), refusals.end(), [&](const RefusalWords& each) {
    return each.rc == rc && each.tag == tag && (each.code.empty() || each.code == code);
  });
  return found == refusals.end() ? std::string_view() : found->words;
}

Ask::Ask(modGlobal& global, Form& onlyBusy) : global_(global), name_(onlyBusy.Name()), onlyBusy_(&onlyBusy) {}

int Ask::send(std::string_view code, Tags tags) const {
  onlyBusy_ ? global_.BusyForm(*onlyBusy_) : global_.BusyAllForms();
  TagMessage& message = global_.message();
  for (const AskTag& tag : tags) message.Add(tag.tag, tag.value);
  return message.Send(code);
}

void Ask::ready() const {
  onlyBusy_ ? global_.ReadyForm(*onlyBusy_) : global_.ReadyAllForms();
}

int Ask::codeOf(std::string_view code, Tags tags) const {
  const int rc = send(code, tags);
  ready();
  return rc;
}

int Ask::codeOf(std::string_view code, Tags tags, const std::function<void()>& read) const {
  const int rc = send(code, tags);
  if (rc == 0) read();
  ready();
  return rc;
}

bool Ask::succeeded(int rc, std::string_view module) const {
  if (rc == 0) return true;
  global_.ReportRequestError(rc, module, name_);
  return false;
}

bool Ask::succeeded(int rc, std::string_view module, std::span<const RefusalWords> refusals) const {
  const std::string_view words = wordsOf(refusals, rc, module, global_.message());
  if (rc == 0 || words.empty()) return succeeded(rc, module);
  warningBox(global_.desktop(), std::string(words));
  return false;
}

bool Ask::operator()(std::string_view code, Tags tags) const {
  return succeeded(codeOf(code, tags), code);
}

bool Ask::operator()(std::string_view code, Tags tags, const std::function<void()>& read) const {
  return succeeded(codeOf(code, tags, read), code);
}

bool Ask::orWarn(std::string_view sentence, std::string_view code, Tags tags) const {
  if (codeOf(code, tags) == 0) return true;
  warningBox(global_.desktop(), std::string(sentence));
  return false;
}

}  // namespace vantry
