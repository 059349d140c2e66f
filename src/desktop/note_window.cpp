#include "desktop/note_window.h"

#include <QApplication>
#include <QBoxLayout>
#include <QDeadlineTimer>
#include <QLabel>
#include <QScreen>
#include <QWindow>

#include "desktop/icons.h"
#include "desktop/style.h"

namespace vantry {

static constexpr int kPicture = 40;
/// How long a screen may take to show it, in milliseconds.
static constexpr int kPatience = 500;

NoteWindow::NoteWindow(const QString& text) : QWidget(nullptr, Qt::SplashScreen) {
  setWindowTitle(QApplication::applicationDisplayName());
  setWindowIcon(icon("vantry"));
  auto* picture = new QLabel(this);
  picture->setPixmap(icon("vantry").pixmap(kPicture, kPicture));
  auto* label = new QLabel(text, this);
  label->setTextFormat(Qt::PlainText);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(4 * style::kUnit, 3 * style::kUnit, 4 * style::kUnit, 3 * style::kUnit);
  layout->setSpacing(3 * style::kUnit);
  layout->addWidget(picture);
  layout->addWidget(label);
  adjustSize();
  move(screen()->availableGeometry().center() - rect().center());
  show();
  for (const QDeadlineTimer limit(kPatience); !windowHandle()->isExposed() && !limit.hasExpired();)
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents, 20);
  repaint();
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace vantry
