#include "desktop/qt_printer.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QFontDatabase>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSaveFile>
#include <QStandardPaths>
#include <algorithm>

#include "desktop/qtext.h"
#include "platform/text.h"

namespace vantry {

static constexpr double kTwipsToThePoint = 20;
static constexpr double kTwipsToTheInch = 1440;
static constexpr int kFootSize = 8;
static constexpr int kLongestFileName = 80;
/// As often as the eye can follow.
static constexpr int kProgressInterval = 40;

QtPrinter::Outside QtPrinter::system() {
  const bool letter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
  return {[] { return QPrinterInfo::defaultPrinterName(); },
          QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
          QPageSize(letter ? QPageSize::Letter : QPageSize::A4)};
}

QtPrinter::QtPrinter(Outside outside) : outside_(std::move(outside)) {}

/// Fonts that look like the one that a report names; the first that is installed is taken.
static QString installedFont(std::string_view wanted) {
  static const QStringList kSerif = {"Times New Roman", "Liberation Serif", "Nimbus Roman", "Tinos",
                                     "FreeSerif",       "Noto Serif",       "DejaVu Serif"};
  const QStringList installed = QFontDatabase::families();
  const QString name = qt(wanted);
  if (name != "Times Roman" || installed.contains(name)) return name;
  const auto found = std::find_if(kSerif.begin(), kSerif.end(),
                                  [&](const QString& family) { return installed.contains(family); });
  return found == kSerif.end() ? name : *found;
}

static QFont fontInTwips(const QString& family, double points) {
  QFont font;
  if (!family.isEmpty()) font.setFamily(family);
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setPixelSize(static_cast<int>(points * kTwipsToThePoint));
  return font;
}

QFont QtPrinter::font() {
  if (FontName != askedFamily_) {
    askedFamily_ = FontName;
    family_ = installedFont(FontName);
  }
  QFont font = fontInTwips(family_, FontSize);
  font.setBold(FontBold);
  font.setItalic(FontItalic);
  return font;
}

// Writing

void QtPrinter::StartDoc() {
  printer_ = outside_.defaultPrinter();
  QPageSize paper = outside_.paper;
  if (!printer_.isEmpty()) {
    const QPageSize own = QPrinterInfo::printerInfo(printer_).defaultPageSize();
    if (own.isValid()) paper = own;
  }
  const bool landscape = Orientation == PageOrientation::Landscape;
  pageLayout_ = QPageLayout(paper, landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF());
  layout_.emplace(pageLayout_.fullRect(QPageLayout::Point).size() * kTwipsToThePoint);
  started_.start();
  mayStop_ = true;
  stopped_ = false;
}

void QtPrinter::Paragraph(std::string_view text) {
  if (layout_ && !stopped_) layout_->paragraph(text, font());
}

void QtPrinter::DrawLine(int x1, int y1, int x2, int y2) {
  if (layout_ && !stopped_) layout_->rule(QLineF(x1, y1, x2, y2));
}

void QtPrinter::AddTable(std::string_view widths, std::string_view headings, std::string_view rows) {
  if (!layout_ || stopped_) return;
  std::vector<int> columns;
  for (const auto& row : tableRows(widths)) {
    for (const std::string& width : row) columns.push_back(intOf(width));
  }
  for (const auto& row : tableRows(headings)) layout_->head(columns, row, font());
  for (const auto& row : tableRows(rows)) layout_->row(columns, row, font());
}

int QtPrinter::CurrentY() const {
  return layout_ ? static_cast<int>(layout_->penHeight()) : 0;
}

int QtPrinter::PageWidth() const {
  return static_cast<int>(pageLayout_.fullRect(QPageLayout::Point).width() * kTwipsToThePoint);
}

// Progress

bool QtPrinter::advance(int done, int total) {
  return tellProgress(QString("Preparing %1 of %2 rows").arg(done).arg(total), done, total);
}

bool QtPrinter::tellProgress(const QString& text, int done, int total) {
  if (stopped_) return false;
  if (!progress_) {
    if (Preview || started_.elapsed() < outside_.patience) return true;
    progress_ = std::make_unique<QProgressDialog>(QApplication::activeWindow());
    progress_->setObjectName("printing");
    progress_->setWindowTitle("Printing");
    progress_->setCancelButtonText(mayStop_ ? "&Stop" : QString());
    progress_->setWindowModality(Qt::ApplicationModal);
    progress_->setAutoReset(false);
    progress_->setMinimumDuration(0);
    progress_->setCursor(Qt::ArrowCursor);
  } else if (told_.elapsed() < kProgressInterval) {
    return true;
  }
  told_.start();
  progress_->setMaximum(total);
  progress_->setLabelText(text);
  progress_->setValue(done);  // handles what the operator does in the dialog
  stopped_ = mayStop_ && progress_->wasCanceled();
  return !stopped_;
}

// Printing

PrintResult QtPrinter::EndDoc() {
  PrintResult result;
  if (!Preview && !stopped_) result = printer_.isEmpty() ? printIntoFile() : printOnPaper();
  if (stopped_) result = {PrintResult::Outcome::Stopped};
  progress_.reset();
  layout_.reset();
  return result;
}

bool QtPrinter::paintPages(QPagedPaintDevice& device) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const double scale = device.logicalDpiX() / kTwipsToTheInch;
  const QFont foot = fontInTwips(family_, kFootSize);
  const std::size_t pages = layout_->pages().size();
  for (std::size_t page = 0; page < pages; ++page) {
    const QString text = QString("Printing page %1 of %2").arg(page + 1).arg(pages);
    if (!tellProgress(text, static_cast<int>(page), static_cast<int>(pages))) return false;
    if (page > 0 && !device.newPage()) return false;
    painter.resetTransform();
    painter.scale(scale, scale);
    layout_->paint(painter, page, foot);
  }
  return painter.end();
}

PrintResult QtPrinter::printOnPaper() {
  const PrintResult failed = {PrintResult::Outcome::Failed,
                              "The printer \"" + utf8(printer_) + "\" does not take the document."};
  const QPrinterInfo info = QPrinterInfo::printerInfo(printer_);
  // It was taken away since the document was started, or has stopped.
  if (info.isNull() || info.state() == QPrinter::Error) return failed;
  QPrinter printer(info, QPrinter::HighResolution);
  printer.setDocName(qt(DocumentName));
  // Not the layout as a whole: a printer with margins of its own refuses one without margins.
  printer.setFullPage(true);
  printer.setPageSize(pageLayout_.pageSize());
  printer.setPageOrientation(pageLayout_.orientation());
  mayStop_ = false;
  if (progress_) progress_->setCancelButton(nullptr);
  const bool painted = printer.isValid() && paintPages(printer);
  const bool printed = painted && printer.printerState() != QPrinter::Error;
  return printed ? PrintResult{} : failed;
}

/// A name that tells what is in the file, and is taken by no other file.
static QString freeFileName(const QDir& folder, std::string_view document) {
  QString name = qt(document).simplified();
  for (QChar& sign : name) {
    if (QString("/\\:*?\"<>|").contains(sign)) sign = '-';
  }
  name = name.left(kLongestFileName).trimmed();
  if (name.isEmpty()) name = "Report";
  QString file = name + ".pdf";
  for (int number = 2; folder.exists(file); ++number) file = QString("%1 (%2).pdf").arg(name).arg(number);
  return folder.filePath(file);
}

/// Writes the file whole or not at all. A failure to write is noticed only where the buffer is flushed.
static bool writeFile(QSaveFile& file, const QByteArray& content) {
  return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
         file.commit();
}

PrintResult QtPrinter::printIntoFile() {
  QBuffer content;
  content.open(QIODevice::WriteOnly);
  QPdfWriter writer(&content);
  writer.setTitle(qt(DocumentName));
  writer.setCreator("Vantry");
  writer.setPageLayout(pageLayout_);
  const bool painted = paintPages(writer);
  if (stopped_) return {};
  QDir().mkpath(outside_.folder);
  const QString name = freeFileName(QDir(outside_.folder), DocumentName);
  QSaveFile file(name);
  if (painted && writeFile(file, content.data())) return {PrintResult::Outcome::Filed, utf8(name)};
  return {PrintResult::Outcome::Failed,
          "The file \"" + utf8(name) + "\" cannot be written: " + utf8(file.errorString())};
}

}  // namespace vantry
