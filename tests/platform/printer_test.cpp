#include <gtest/gtest.h>

#include "support/scripted_desktop.h"

namespace vantry::test {
namespace {

/// What reports rely on when their tests read pages as text.
TEST(PrinterDouble, KeepsDocumentsAsText) {
  ScriptedDesktop desktop;
  Printer& printer = *desktop.printer();
  printer.Preview = true;
  printer.StartDoc();
  printer.EndDoc();
  printer.Preview = false;
  printer.StartDoc();
  printer.FontName = "Times Roman";
  printer.FontSize = 16;
  printer.FontBold = true;
  printer.Paragraph("Day List");
  printer.FontSize = 10;
  printer.Paragraph("");
  const int line = printer.CurrentY();
  printer.DrawLine(printer.CurrentX(), line, printer.PageWidth(), line);
  printer.AddTable("1500|2000;", "Time|Room;", "");
  printer.FontBold = false;
  printer.AddTable("1500|2000;", "", "9:00|Hall;10:00|;");
  printer.EndDoc();
  EXPECT_EQ(desktop.pages.previewed, std::vector<std::string>{""});
  ASSERT_EQ(desktop.pages.printed.size(), 1U);
  EXPECT_EQ(desktop.pages.printed[0],
            "{Times Roman 16 bold} Day List\n\n----\n{Times Roman 10 bold} Time | Room\n"
            "{Times Roman 10} 9:00 | Hall\n10:00\n");
  desktop.hasPrinter = false;
  EXPECT_EQ(desktop.printer(), nullptr);
}

}  // namespace
}  // namespace vantry::test
