#include "desktop/qtext.h"

#include <QLocale>

#include "platform/datetime.h"

namespace vantry {

QString withoutMnemonic(std::string_view caption) {
  std::string text;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && ++i == caption.size()) break;
    text += caption[i];
  }
  return qt(text);
}

QString shortTime(const Time& time) {
  static const bool twelveHours =
      QLocale().timeFormat(QLocale::ShortFormat).contains('A', Qt::CaseInsensitive);
  return qt(twelveHours ? hourMinuteAmPm(time) : hourMinute(time));
}

}  // namespace vantry
