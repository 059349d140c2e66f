#pragma once

#include <QFont>
#include <QLineF>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/text_widths.h"

class QPainter;

namespace vantry {

/// Lays a document out on pages. Lengths are in twips, which makes the pages the same on every printer.
class PageLayout {
 public:
  using Row = std::vector<std::string>;
  struct Text {
    QPointF base;  ///< left end of its base line
    QString text;
    QFont font;
    bool rightToLeft;
  };
  struct Page {
    std::vector<Text> texts;
    std::vector<QLineF> rules;
  };

  explicit PageLayout(QSizeF paper);

  void paragraph(std::string_view text, const QFont& font);
  /// A rule at the pen's height starts a section, and moves to the next page where the section's first lines
  /// find no room.
  void rule(QLineF line);
  /// The head of a table, which is repeated above the rows that follow on other pages.
  void head(const std::vector<int>& widths, const Row& headings, const QFont& font);
  /// A row is not split between two pages unless it is longer than one.
  void row(const std::vector<int>& widths, const Row& cells, const QFont& font);

  static constexpr double kMargin = 720;
  [[nodiscard]] double penHeight() const { return pen_; }
  [[nodiscard]] const std::vector<Page>& pages() const { return pages_; }
  /// Paints a page in twips, with its number at the foot.
  void paint(QPainter& painter, std::size_t page, const QFont& footFont) const;

 private:
  struct Head {
    std::vector<int> widths;
    Row headings;
    QFont font;
  };
  struct Line {
    QString text;
    QFont font;
    double left;
    double ascent;
    double height;
    bool rightToLeft;
  };

  /// What is known of a font that the document uses.
  struct UsedFont {
    QFont font;
    TextWidths widths;
    double ascent;
    double height;
  };

  std::vector<Line> linesOf(std::string_view text, const QFont& font, double width);
  UsedFont& used(const QFont& font);
  /// A smaller font, where a little smaller one keeps the words of a text whole.
  QFont fitted(std::string_view text, const QFont& font, double width);
  [[nodiscard]] double bottom() const;
  [[nodiscard]] bool fits(double height) const { return pen_ + height <= bottom(); }
  void startPage();
  /// Starts a page within a table: its head comes first.
  void continueTable();
  void place(const std::vector<int>& widths, const Row& cells, const QFont& font);

  QSizeF paper_;
  std::vector<Page> pages_;
  std::deque<UsedFont> fonts_;
  double pen_ = kMargin;
  Head head_;  ///< of the table under way; empty widths: none
};

}  // namespace vantry
