#pragma once

#include <QElapsedTimer>
#include <QPageLayout>
#include <QProgressDialog>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "desktop/page_layout.h"
#include "platform/printer.h"

class QPagedPaintDevice;

namespace vantry {

/// Prints on the system's default printer, or into a PDF file where there is none.
class QtPrinter final : public Printer {
 public:
  struct Outside {
    std::function<QString()> defaultPrinter;  ///< its name; empty where there is none
    QString folder;                           ///< of the PDF files
    QPageSize paper;                          ///< of the PDF files
    int patience = 500;                       ///< in milliseconds; the progress of what takes longer is shown
  };
  /// The system's printers, and the documents of the user.
  static Outside system();

  explicit QtPrinter(Outside outside = system());

  void StartDoc() override;
  PrintResult EndDoc() override;
  void Paragraph(std::string_view text) override;
  void DrawLine(int x1, int y1, int x2, int y2) override;
  void AddTable(std::string_view widths, std::string_view headings, std::string_view rows) override;
  bool advance(int done, int total) override;
  int CurrentX() const override { return static_cast<int>(PageLayout::kMargin); }
  int CurrentY() const override;
  int PageWidth() const override;

 private:
  /// The font that is set, or one like it that is installed.
  [[nodiscard]] QFont font();
  PrintResult printOnPaper();
  PrintResult printIntoFile();
  /// False where the device takes no pages, or the operator has stopped it.
  bool paintPages(QPagedPaintDevice& device);
  /// False once the operator has stopped the document.
  bool tellProgress(const QString& text, int done, int total);

  Outside outside_;
  QString printer_;                   ///< that the document is for; empty: none
  QPageLayout pageLayout_;            ///< of its pages
  std::optional<PageLayout> layout_;  ///< of the document under way
  std::string askedFamily_;
  QString family_;  ///< that is taken for it
  QElapsedTimer started_;
  QElapsedTimer told_;
  std::unique_ptr<QProgressDialog> progress_;  ///< once the document takes long
  bool mayStop_ = true;  ///< until the pages go to a printer, which cannot take them back
  bool stopped_ = false;
};

}  // namespace vantry
