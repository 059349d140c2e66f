#include <QDesktopServices>
#include <QFile>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QTreeWidget>

#include "desktop/desktop_test.h"
#include "desktop/help_window.h"
#include "platform/tree.h"
#include "schedule/main_views.h"

namespace vantry::test {
namespace {

QString pageText(const QString& topic) {
  QFile file(":/help/" + topic + ".md");
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

TEST(HelpPages, EveryViewAndEveryLinkHasAPage) {
  QStringList pages = {"index", "booking", "bookwiz", "sched", "find", "options"};
  for (const ViewRow& view : viewTable())
    pages << QString::fromUtf8(view.picture.data(), qsizetype(view.picture.size()));
  const QRegularExpression link(R"(\]\(([^)]+)\.md\))");
  for (qsizetype i = 0; i < pages.size(); ++i) {
    const QString text = pageText(pages[i]);
    EXPECT_TRUE(text.startsWith("# ")) << pages[i].toStdString();
    for (const auto& match : link.globalMatch(text)) {
      if (!pages.contains(match.captured(1))) pages << match.captured(1);
    }
  }
}

class HelpTest : public DesktopTest {};

TEST_F(HelpTest, F1OpensThePageOfTheWindowAndADialogKeepsItUsable) {
  struct Window : Form {
    Window(Windows& all, std::string name) : Form(all, std::move(name)) { Layout = Column{txtName}; }
    TextBox txtName{*this, "txtName"};
  };
  const auto shownHelp = [](const QWidget* parent) -> HelpWindow* {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      auto* help = dynamic_cast<HelpWindow*>(top);
      if (help && help->isVisible() && help->parentWidget() == parent) return help;
    }
    return nullptr;
  };
  Window form(windows, "frmSched");
  show(form);
  QTest::keyClick(&window(form), Qt::Key_F1);
  HelpWindow* help = shownHelp(nullptr);
  ASSERT_TRUE(help);
  EXPECT_TRUE(help->findChild<QTextBrowser*>()->toPlainText().startsWith("Booking calendars"));
  help->close();
  Window dialog(windows, "frmNoPageOfItsOwn");
  bool found = false;
  later([&] {
    QTest::keyClick(&window(dialog), Qt::Key_F1);
    const HelpWindow* own = shownHelp(&window(dialog));
    found = own && own->findChild<QTextBrowser*>()->toPlainText().startsWith("Vantry");
    dialog.Hide();
  });
  dialog.ShowModal();
  EXPECT_TRUE(found);
}

TEST_F(HelpTest, AFileOpensByItsWholePathAndAFailureIsTold) {
  const std::string page = "/no folder/a#1%20.html";
  QTextBrowser browser;
  QDesktopServices::setUrlHandler("file", &browser, "setSource");
  desktop.openBrowser(page);
  EXPECT_EQ(browser.source().toLocalFile().toStdString(), page);
  QDesktopServices::setUrlHandler("file", &browser, "noSuchSlot");
  bool told = false;
  later([&] {
    QWidget* box = QApplication::activeModalWidget();
    told = box != nullptr;
    if (box) box->close();
  });
  desktop.openBrowser(page);
  EXPECT_TRUE(told);
  QDesktopServices::unsetUrlHandler("file");
}

struct TreeForm : Form {
  explicit TreeForm(Windows& all) : Form(all, "frmTree") {
    Layout = Column{tvw};
    EXPECT_TRUE(tvw.Add("", "a", "First"));
    EXPECT_TRUE(tvw.Add("", "b", "Second"));
    tvw.RightClick = [this] { chosen += tvw.SelectedKey.get() + ";"; };
  }
  Tree tvw{*this, "tvw"};
  std::string chosen;
};

TEST_F(HelpTest, ARightClickOnATreeSelectsItsNode) {
  TreeForm form(windows);
  show(form);
  auto& tree = find<QTreeWidget>(form, "tvw");
  Q_EMIT tree.customContextMenuRequested(tree.visualItemRect(tree.topLevelItem(1)).center());
  Q_EMIT tree.customContextMenuRequested({5, 400});  // beyond the nodes, and by the menu key
  EXPECT_EQ(form.chosen, "b;b;");
}

}  // namespace
}  // namespace vantry::test
