#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace vantry {

struct Time;

/// The platform's texts are UTF-8, the toolkit's are not.
inline QString qt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string utf8(const QString& text) {
  return text.toStdString();
}
/// A caption without the signs of its mnemonic, where none can be used.
QString withoutMnemonic(std::string_view caption);
/// A time of day as fields, lists and logs show it: "07:15 PM".
QString shortTime(const Time& time);

}  // namespace vantry
