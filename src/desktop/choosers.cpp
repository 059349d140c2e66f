#include "desktop/choosers.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>

#include "desktop/qtext.h"
#include "desktop/style.h"

namespace vantry {

/// "Images (*.gif;*.jpg)|*.gif;*.jpg" as the toolkit wants it: "Images (*.gif *.jpg)".
static QString filterOf(std::string_view filter) {
  const QStringList parts = qt(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString name = parts[i].section('(', 0, 0).trimmed();
    filters += name + " (" + QString(parts[i + 1]).replace(';', ' ') + ')';
  }
  return filters.join(";;");
}

std::optional<std::string> runFileChooser(std::string_view caption, std::string_view filter,
                                          std::string_view initial) {
  const QString file =
      QFileDialog::getOpenFileName(QApplication::activeWindow(), qt(caption), qt(initial), filterOf(filter));
  if (file.isEmpty()) return std::nullopt;
  return utf8(file);
}

std::optional<Colour> runColourChooser(Colour initial) {
  const QColor chosen =
      QColorDialog::getColor(style::colour(initial, Qt::white), QApplication::activeWindow());
  if (!chosen.isValid()) return std::nullopt;
  return static_cast<Colour>(chosen.red() | chosen.green() << 8 | chosen.blue() << 16);
}

}  // namespace vantry
