#include "messaging/server_tools.h"

#include <algorithm>
#include <array>

#include "messaging/server_session.h"
#include "platform/text.h"

namespace vantry {
namespace {

/// Words of the command line that are answered before any window.
constexpr std::array<std::string_view, 3> kWindowless = {"--help", "--version", "/?"};

/// The time of "0930"; calendars write clock times so.
std::optional<Time> fourDigits(std::string_view value) {
  const bool digits = value.size() == 4 &&
                      std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (!digits) return std::nullopt;
  const Time time{intOf(value.substr(0, 2)), intOf(value.substr(2)), 0};
  return time.hour <= 23 && time.minute <= 59 ? std::optional(time) : std::nullopt;
}

}  // namespace

bool ServerTools::CheckStartup(const ServerSession& session) const {
  std::string_view line = session.commandLine();
  while (!line.empty()) {
    const auto end = std::min(line.find(' '), line.size());
    const std::string_view word = line.substr(0, end);
    if (std::find(kWindowless.begin(), kWindowless.end(), word) != kWindowless.end()) return true;
    line.remove_prefix(std::min(end + 1, line.size()));
  }
  return false;
}

void ServerTools::PrepareForm(Form& form) const {
  form.Enabled = true;
  if (form.WindowState == FormState::Minimized) form.WindowState = FormState::Normal;
  form.focusMoved(nullptr);
}

std::string ServerTools::GetControlDate(const DateField& date, const TimeField* time) {
  if (date.isEmpty()) return {};
  if (!time) return serverDate(*date.Value.get());
  return serverTime({*date.Value.get(), time->Value.get().value_or(Time{})});
}

void ServerTools::PutControlDate(std::string_view value, DateField& date) {
  const auto moment = parseServerTime(value);
  if (!moment) return date.clear();
  date.Value = moment->date;
}

void ServerTools::PutControlTime(std::string_view value, TimeField& time) {
  const auto moment = parseServerTime(value);
  const auto read = moment ? std::optional(moment->time) : fourDigits(trim(value));
  if (!read) return time.clear();
  time.Value = read;
}

std::string ServerTools::NextToken(int& position, std::string_view text, std::string_view delimiter) {
  const auto start = static_cast<std::size_t>(position) - 1;
  if (position < 1 || start >= text.size()) {
    position = 0;
    return {};
  }
  const std::size_t end = delimiter.empty() ? std::string_view::npos : text.find(delimiter, start);
  if (end == std::string_view::npos) {
    position = 0;
    return std::string(text.substr(start));
  }
  position = static_cast<int>(end + delimiter.size()) + 1;
  return std::string(text.substr(start, end - start));
}

void ServerTools::OpenWebSite(std::string_view /*caption*/) const {
  desktop_.openBrowser(supportAddress_);
}

}  // namespace vantry
