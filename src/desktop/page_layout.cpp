#include "desktop/page_layout.h"

#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <numeric>

#include "desktop/qtext.h"

namespace vantry {

static constexpr double kFoot = 360;  ///< for the page number, above the lower margin
static constexpr double kCellGap = 90;
static constexpr double kRowGap = 30;
/// A section that starts lower than this above the foot starts on the next page.
static constexpr double kSectionStart = 1800;
static constexpr double kRuleWidth = 10;
static constexpr double kRuleGap = 60;  ///< above and below
/// The part of its size that a font keeps at least.
static constexpr double kSmallest = 0.7;
/// A head without a row below it is of no use.
static constexpr int kRowsWithHead = 3;

PageLayout::PageLayout(QSizeF paper) : paper_(paper) {
  startPage();
}

double PageLayout::bottom() const {
  return paper_.height() - kMargin - kFoot;
}

void PageLayout::startPage() {
  pages_.emplace_back();
  pen_ = kMargin;
}

PageLayout::UsedFont& PageLayout::used(const QFont& font) {
  for (UsedFont& each : fonts_) {
    if (each.font == font) return each;
  }
  const QFontMetricsF metrics(font);
  return fonts_.emplace_back(UsedFont{font, TextWidths(font), metrics.ascent(), metrics.height()});
}

/// Whether each letter has a place of its own, from the left to the right: Latin, Greek and Cyrillic texts.
static bool isPlain(std::string_view text) {
  constexpr unsigned char kFirstOther = 0xD6;  // starts the letters of Hebrew and all that follow it
  return std::all_of(text.begin(), text.end(), [](char sign) {
    return sign != '\n' && sign != '\r' && static_cast<unsigned char>(sign) < kFirstOther;
  });
}

QFont PageLayout::fitted(std::string_view text, const QFont& font, double width) {
  TextWidths& widths = used(font).widths;
  double widest = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(" \n"), text.size());
    widest = std::max(widest, widths.of(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (widest <= width || widest * kSmallest > width) return font;
  QFont smaller = font;
  smaller.setPixelSize(static_cast<int>(font.pixelSize() * width / widest));
  return smaller;
}

/// Most cells are plain and short, and need no search for the places where lines end.
std::vector<PageLayout::Line> PageLayout::linesOf(std::string_view text, const QFont& font, double width) {
  UsedFont& usedFont = used(font);
  if (isPlain(text) && usedFont.widths.of(text) <= width)
    return {{qt(text), font, 0, usedFont.ascent, usedFont.height, false}};
  QString shown = qt(text);
  shown.replace("\r\n", "\n").replace('\n', QChar::LineSeparator);
  const bool rightToLeft = shown.isRightToLeft();
  const QFont lineFont = fitted(text, font, width);
  QTextOption option;
  option.setAlignment(Qt::AlignAbsolute | (rightToLeft ? Qt::AlignRight : Qt::AlignLeft));
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
  QTextLayout layout(shown, lineFont);
  layout.setTextOption(option);
  std::vector<Line> lines;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    QString part = shown.mid(line.textStart(), line.textLength());
    part.remove(QChar::LineSeparator);
    lines.push_back(
        {part, lineFont, line.naturalTextRect().left(), line.ascent(), line.height(), rightToLeft});
  }
  layout.endLayout();
  return lines;
}

void PageLayout::paragraph(std::string_view text, const QFont& font) {
  head_ = {};
  for (const Line& line : linesOf(text, font, paper_.width() - 2 * kMargin)) {
    if (!fits(line.height)) startPage();
    if (!line.text.trimmed().isEmpty()) {
      pages_.back().texts.push_back(
          {{kMargin + line.left, pen_ + line.ascent}, line.text, line.font, line.rightToLeft});
    }
    pen_ += line.height;
  }
}

void PageLayout::rule(QLineF line) {
  head_ = {};
  if (line.y1() >= pen_ - 1 && !fits(kSectionStart)) {
    startPage();
    line.translate(0, pen_ - line.y1());
  } else if (line.y1() >= pen_ - 1) {
    pen_ += 2 * kRuleGap;
    line.translate(0, kRuleGap);
  }
  pages_.back().rules.push_back(line);
}

void PageLayout::head(const std::vector<int>& widths, const Row& headings, const QFont& font) {
  if (!fits(kRowsWithHead * used(font).height)) startPage();
  place(widths, headings, font);
  head_ = {widths, headings, font};
}

void PageLayout::row(const std::vector<int>& widths, const Row& cells, const QFont& font) {
  if (head_.widths != widths) head_ = {};
  place(widths, cells, font);
}

void PageLayout::continueTable() {
  startPage();
  if (head_.widths.empty()) return;
  const Head head = std::move(head_);
  head_ = {};
  place(head.widths, head.headings, head.font);
  head_ = head;
}

/// Columns that are wider than the page together become narrower, all alike.
static double shrinkingOf(const std::vector<int>& widths, double room) {
  const int total = std::accumulate(widths.begin(), widths.end(), 0);
  return total > room ? room / total : 1.0;
}

void PageLayout::place(const std::vector<int>& widths, const Row& cells, const QFont& font) {
  const double shrinking = shrinkingOf(widths, paper_.width() - 2 * kMargin);
  std::vector<std::vector<Line>> columns;
  std::vector<double> heights;  // of the row's lines
  for (std::size_t i = 0; i < std::min(cells.size(), widths.size()); ++i) {
    columns.push_back(linesOf(cells[i], font, std::max(widths[i] * shrinking - kCellGap, kCellGap)));
    heights.resize(std::max(heights.size(), columns.back().size()));
    for (std::size_t k = 0; k < columns.back().size(); ++k)
      heights[k] = std::max(heights[k], columns.back()[k].height);
  }
  const double height = std::accumulate(heights.begin(), heights.end(), 0.0);
  if (!fits(height)) continueTable();
  for (std::size_t k = 0; k < heights.size(); ++k) {
    if (!fits(heights[k])) continueTable();
    double left = kMargin;
    for (std::size_t i = 0; i < columns.size(); left += widths[i++] * shrinking) {
      if (k >= columns[i].size() || columns[i][k].text.trimmed().isEmpty()) continue;
      const Line& line = columns[i][k];
      pages_.back().texts.push_back(
          {{left + line.left, pen_ + line.ascent}, line.text, line.font, line.rightToLeft});
    }
    pen_ += heights[k];
  }
  pen_ += kRowGap;
}

void PageLayout::paint(QPainter& painter, std::size_t page, const QFont& footFont) const {
  const Page& shown = pages_.at(page);
  painter.setPen(QPen(Qt::black, kRuleWidth));
  for (const QLineF& rule : shown.rules) painter.drawLine(rule);
  for (const Text& text : shown.texts) {
    if (painter.font() != text.font) painter.setFont(text.font);
    painter.setLayoutDirection(text.rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(text.base, text.text);
  }
  painter.setLayoutDirection(Qt::LeftToRight);
  painter.setFont(footFont);
  painter.drawText(QRectF(kMargin, bottom(), paper_.width() - 2 * kMargin, kFoot),
                   Qt::AlignRight | Qt::AlignBottom,
                   QString("Page %1 of %2").arg(page + 1).arg(pages_.size()));
}

}  // namespace vantry
