// The real printer: how a document lies on its pages, and what becomes of it.
#include "desktop/qt_printer.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <QDir>
#include <QFontMetricsF>
#include <QPushButton>
#include <QTemporaryDir>
#include <csignal>

#include "desktop_test.h"

namespace vantry::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Outcome = PrintResult::Outcome;

constexpr QSizeF kLetter(12240, 15840);
constexpr double kRight = 12240 - PageLayout::kMargin;

QFont font() {
  QFont font;
  font.setPixelSize(200);
  return font;
}

std::vector<QString> textsOf(const PageLayout::Page& page) {
  std::vector<QString> texts;
  for (const auto& each : page.texts) texts.push_back(each.text);
  return texts;
}

TEST(PageLayoutTest, ATableRepeatsItsHeadAndKeepsItsRowsWhole) {
  PageLayout layout(kLetter);
  const std::vector<int> widths = {1000, 1500};
  layout.head(widths, {"No", "Title"}, font());
  for (int i = 1; i <= 60; ++i) layout.row(widths, {std::to_string(i), "two words make two lines"}, font());
  ASSERT_GT(layout.pages().size(), 1U);
  for (const auto& page : layout.pages()) {
    const auto texts = textsOf(page);
    EXPECT_EQ(texts.at(0), "No");
    EXPECT_EQ(texts.at(1), "Title");
    EXPECT_GT(texts.at(2).toInt(), 0) << "a page begins with the first line of a row";
    for (const auto& text : page.texts) EXPECT_LT(text.base.y(), kLetter.height() - PageLayout::kMargin);
  }

  layout.paragraph("After the table", font());
  for (const std::size_t before = layout.pages().size(); layout.pages().size() == before;)
    layout.paragraph("On", font());
  EXPECT_EQ(textsOf(layout.pages().back()).at(0), "On") << "the head belongs to the table alone";
}

TEST(PageLayoutTest, ARowThatIsLongerThanAPageIsPrintedWhole) {
  PageLayout layout(kLetter);
  QStringList words;
  for (int i = 0; i < 400; ++i) words << QString("word%1").arg(i);
  layout.head({900}, {"Note"}, font());
  layout.row({900}, {words.join(' ').toStdString()}, font());
  QString all;
  for (const auto& page : layout.pages()) {
    for (const auto& text : page.texts) all += text.text.trimmed() + ' ';
  }
  for (const QString& word : words) EXPECT_TRUE(all.contains(word + ' ')) << word.toStdString();
}

TEST(PageLayoutTest, AWideTableIsScaledToThePage) {
  PageLayout layout(kLetter);
  const std::vector<int> widths(13, 1500);
  layout.row(widths, PageLayout::Row(13, "Laptops"), font());
  for (const auto& text : layout.pages().at(0).texts)
    EXPECT_LE(text.base.x() + QFontMetricsF(text.font).horizontalAdvance(text.text), kRight);
  EXPECT_EQ(textsOf(layout.pages().at(0)).size() % 13, 0U) << "no column is left out";
}

TEST(PageLayoutTest, TextsThatRunFromTheRightEndAtTheirColumnsRightSide) {
  PageLayout layout(kLetter);
  const std::string arabic = "مكتبة";
  const std::string chinese = "图书馆预约服务媒体设备";
  layout.row({3000, 1000}, {arabic, chinese}, font());
  const auto& texts = layout.pages().at(0).texts;
  EXPECT_TRUE(texts.at(0).rightToLeft);
  EXPECT_GT(texts.at(0).base.x(), PageLayout::kMargin + 1000);
  EXPECT_FALSE(texts.at(1).rightToLeft);
  EXPECT_GT(texts.size(), 2U) << "a text without blanks is broken between its signs";
}

TEST(PageLayoutTest, ASectionDoesNotStartAtTheFootOfAPage) {
  PageLayout layout(kLetter);
  while (layout.penHeight() < 14000) layout.paragraph("Line", font());
  layout.rule(QLineF(720, layout.penHeight(), kRight, layout.penHeight()));
  layout.paragraph("Section", font());
  ASSERT_EQ(layout.pages().size(), 2U);
  EXPECT_THAT(layout.pages().at(1).rules, ElementsAre(QLineF(720, 720, kRight, 720)));
}

/// Prints into a folder, or on a printer of a name.
class PrinterTest : public DesktopTest {
 protected:
  PrintResult print(int rows = 3) {
    QtPrinter printer({[this] { return printerName; }, folder.filePath("made/when needed"),
                       QPageSize(QPageSize::A4), patience});
    printer.DocumentName = "Bookings for 24/11/2026";
    printer.FontName = "Times Roman";
    printer.StartDoc();
    printer.Paragraph("Bookings");
    for (int i = 0; i < rows; ++i) {
      printer.AddTable("2000|3000;", "", "Piano|\\|\\;;");
      if (!printer.advance(i + 1, rows)) break;
    }
    return printer.EndDoc();
  }
  QStringList files() const { return QDir(folder.filePath("made/when needed")).entryList(QDir::Files); }

  QTemporaryDir folder;
  QString printerName;
  int patience = 1'000'000;
};

TEST_F(PrinterTest, WithoutAPrinterADocumentBecomesAFileOfItsOwn) {
  const PrintResult first = print();
  EXPECT_EQ(first.outcome, Outcome::Filed) << first.text;
  EXPECT_THAT(first.text, HasSubstr("made/when needed/Bookings for 24-11-2026.pdf"));
  EXPECT_THAT(print(200).text, HasSubstr("Bookings for 24-11-2026 (2).pdf"));
  QFile file(folder.filePath("made/when needed/Bookings for 24-11-2026 (2).pdf"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const std::string content = file.readAll().toStdString();
  EXPECT_TRUE(content.starts_with("%PDF"));
  const std::string count = "/Count ";
  EXPECT_GT(std::atoi(content.c_str() + content.rfind(count) + count.size()), 2) << "pages";
}

TEST_F(PrinterTest, APrinterThatIsGoneFails) {
  printerName = "Desk";
  const PrintResult result = print();
  EXPECT_EQ(result.outcome, Outcome::Failed);
  EXPECT_EQ(result.text, "The printer \"Desk\" does not take the document.");
}

/// Files cannot grow beyond a few bytes, as on a full disk.
class FullDisk {
 public:
  FullDisk() {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit tiny{100, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tiny);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
  FullDisk(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

TEST_F(PrinterTest, AFullDiskFailsAndLeavesNoFile) {
  PrintResult result;
  {
    const FullDisk disk;
    result = print();
  }
  EXPECT_EQ(result.outcome, Outcome::Failed);
  EXPECT_THAT(result.text, HasSubstr("cannot be written: "));
  EXPECT_TRUE(files().isEmpty()) << files().join(", ").toStdString();
}

TEST_F(PrinterTest, ALongDocumentIsStoppedInItsDialog) {
  patience = 0;
  later([&] {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == "printing") widget->findChild<QPushButton*>()->click();
    }
  });
  const PrintResult result = print(100'000);
  EXPECT_EQ(result.outcome, Outcome::Stopped);
  EXPECT_TRUE(files().isEmpty());
}

}  // namespace
}  // namespace vantry::test
