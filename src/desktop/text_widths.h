#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <map>
#include <string_view>
#include <vector>

namespace vantry {

/// Measures texts in one font, letter by letter and without the pairs that a font draws closer: a measured
/// text may come out a little wider than it is drawn, and a hundred thousand cells take no time.
class TextWidths {
 public:
  explicit TextWidths(const QFont& font);
  /// In pixels.
  double of(std::string_view text);

 private:
  double advance(char32_t letter);

  QFontMetricsF metrics_;
  std::vector<float> common_;  ///< below 0 where it is not known yet, as in `rare_`
  std::map<char32_t, float> rare_;
};

}  // namespace vantry
