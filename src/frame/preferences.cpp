#include "frame/preferences.h"

#include <charconv>
#include <limits>
#include <stdexcept>

#include "frame/app.h"
#include "platform/settings.h"
#include "platform/text.h"

namespace vantry {

static bool convert(std::string_view text, bool* target) {
  text = trim(text);
  const bool on = equalNoCase(text, "true") || text == "-1" || text == "1";
  if (!on && !equalNoCase(text, "false") && text != "0") return false;
  *target = on;
  return true;
}

template <class Number>
static bool convertNumber(std::string_view text, Number* target) {
  text = trim(text);
  long long number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return false;
  if constexpr (std::is_signed_v<Number>) {
    if (number < std::numeric_limits<Number>::min() || number > std::numeric_limits<Number>::max())
      return false;
  } else {
    // Colours of the desktop's palette have the top bit set; some stores hold them as negative numbers.
    if (number < std::numeric_limits<std::int32_t>::min() || number > std::numeric_limits<Number>::max())
      return false;
  }
  *target = static_cast<Number>(number);
  return true;
}

static bool convert(std::string_view text, int* target) {
  return convertNumber(text, target);
}
static bool convert(std::string_view text, Colour* target) {
  return convertNumber(text, target);
}
static bool convert(std::string_view text, std::string* target) {
  *target = text;
  return true;
}

/// Whether a value keeps to its row's limits; a text with limits is a number.
template <class Value>
static bool isWithin(const PreferenceRow& row, const Value& value) {
  if (row.most == 0) return true;
  if constexpr (std::is_same_v<Value, int>) return value >= row.least && value <= row.most;
  if constexpr (std::is_same_v<Value, std::string>)
    return isNumber(value) && val(value) >= row.least && val(value) <= row.most;
  return true;
}

bool setPreference(const PreferenceRow& row, std::string_view text, Preferences& preferences) {
  return std::visit(
      [&](auto* target) {
        auto value = *target;
        if (!convert(text, &value) || !isWithin(row, value)) return false;
        *target = value;
        return true;
      },
      row.slot(preferences));
}

bool readPreference(const PreferenceRow& row, const Settings& store, Preferences& preferences) {
  const std::string text = store.GetSetting(kSettingsApplication, kSettingsSection, row.key, row.fallback);
  if (setPreference(row, text, preferences)) return true;
  static_cast<void>(setPreference(row, row.fallback, preferences));
  return false;
}

static std::string textOf(bool value) {
  return value ? "true" : "false";
}
static std::string textOf(int value) {
  return std::to_string(value);
}
static std::string textOf(Colour value) {
  return std::to_string(value);
}
static std::string textOf(const std::string& value) {
  return value;
}

std::string storedText(const PreferenceRow& row, const Preferences& preferences) {
  Preferences copy = preferences;
  return std::visit([](const auto* value) { return textOf(*value); }, row.slot(copy));
}

bool SavePreferences(App& app, const Preferences& preferences) {
  std::vector<Setting> changed;
  for (const PreferenceRow& row : preferenceTable()) {
    std::string text = storedText(row, preferences);
    // An empty text has no need of a key: it is the default wherever it is allowed.
    if (app.settings.GetSetting(kSettingsApplication, kSettingsSection, row.key, {}) != text)
      changed.push_back({std::string(row.key), std::move(text)});
  }
  if (changed.empty()) return true;
  try {
    app.settings.SaveSettings(kSettingsApplication, kSettingsSection, changed);
  } catch (const std::runtime_error& error) {
    warningBox(app.desktop, error.what());
    return false;
  }
  return true;
}

DaySlots daySlots(int start, int end, int interval) {
  static constexpr std::array<int, 6> minutes = {5, 10, 15, 20, 30, 60};
  DaySlots slots;
  slots.startMinute = start * 60;
  slots.endMinute = end == 12 ? 720 : (end + 12) * 60;  // midnight as minute 720 is deliberate
  slots.interval = minutes[static_cast<std::size_t>(interval >= 0 && interval < 6 ? interval : 1)];
  slots.count = (slots.endMinute - slots.startMinute) / slots.interval;
  slots.perHour = 60 / slots.interval;
  int hour = start;
  int minute = 0;
  for (int slot = 0; slot < slots.count; ++slot) {
    // The hour is not folded to twelve: one in the afternoon reads 13:00 PM.
    slots.captions.push_back(std::to_string(hour) + (minute < 10 ? ":0" : ":") + std::to_string(minute) +
                             (hour >= 12 && hour != 24 ? " PM" : " AM"));
    minute += slots.interval;
    if (minute < 60) continue;
    ++hour;
    minute -= 60;
  }
  return slots;
}

int MinutesToMilliseconds(std::string_view minutes) {
  const double milliseconds = val(minutes) * 60000;
  return milliseconds < 0 || milliseconds > std::numeric_limits<int>::max() ? 0
                                                                            : static_cast<int>(milliseconds);
}

}  // namespace vantry
