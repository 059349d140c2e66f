#include "messaging/ask.h"

#include "messaging/modGlobal.h"
#include "platform/desktop.h"
#include "platform/form.h"

namespace vantry {

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
