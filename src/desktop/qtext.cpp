#include "desktop/qtext.h"

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
  return qt(hourMinuteAmPm(time));
}

}  // namespace vantry
