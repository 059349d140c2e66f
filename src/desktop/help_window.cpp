#include "desktop/help_window.h"

#include <QDesktopServices>
#include <QFile>
#include <QKeyEvent>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolBar>
#include <QVBoxLayout>

#include "desktop/icons.h"
#include "desktop/style.h"

namespace vantry {

static constexpr QSize kSize{720, 640};
static constexpr const char* kFirstPage = "index";

static QString pageOf(const QString& topic) {
  const QString page = QStringLiteral(":/help/%1.md").arg(topic);
  return !topic.isEmpty() && QFile::exists(page) ? page : QStringLiteral(":/help/%1.md").arg(kFirstPage);
}

HelpWindow::HelpWindow(QWidget* dialog) : QWidget(dialog, Qt::Window), pages_(new QTextBrowser(this)) {
  if (dialog) setAttribute(Qt::WA_DeleteOnClose);
  setObjectName("help");
  setWindowTitle(tr("Vantry Help"));
  setWindowIcon(icon("help"));
  resize(kSize);
  pages_->setFrameShape(QFrame::NoFrame);
  pages_->document()->setDocumentMargin(4 * style::kUnit);
  pages_->setOpenLinks(false);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(pages_);
  connect(pages_, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) {
    if (!link.scheme().isEmpty() && link.scheme() != "qrc") {
      QDesktopServices::openUrl(link);
    } else {
      open(QString(link.fileName()).remove(".md"));
    }
  });
}

void HelpWindow::open(const QString& topic) {
  const QString page = pageOf(topic);
  QFile file(page);
  if (file.open(QIODevice::ReadOnly)) {
    const QString wayBack = page == pageOf(kFirstPage) ? "" : "\n\n[All topics](index.md)\n";
    pages_->setMarkdown(QString::fromUtf8(file.readAll()) + wayBack);
  }
  show();
  raise();
  activateWindow();
}

}  // namespace vantry
