#include "desktop/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include "desktop/qtext.h"
#include "desktop/style.h"

namespace vantry {

// The colours that the drawings are kept in, and stand for others: lines, and what is to catch the eye.
static constexpr const char* kInk = "#202020";
static constexpr const char* kAccent = "#2060d0";

class SvgEngine : public QIconEngine {
 public:
  explicit SvgEngine(QByteArray drawing) : drawing_(std::move(drawing)) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const double scale = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    painter->drawPixmap(rect.topLeft(), draw(rect.size(), mode, scale));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1.0);
  }
  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal) override {
    return draw(size, mode, 1.0);
  }
  QIconEngine* clone() const override { return new SvgEngine(*this); }

 private:
  QPixmap draw(const QSize& size, QIcon::Mode mode, double scale) const {
    const QPalette palette = QGuiApplication::palette();
    const QColor text = palette.color(QPalette::WindowText);
    const QColor ground = palette.color(QPalette::Window);
    const bool off = mode == QIcon::Disabled;
    const bool chosen = mode == QIcon::Selected;
    const QColor ink =
        chosen ? palette.color(QPalette::HighlightedText) : style::blend(text, ground, off ? 0.7 : 0.2);
    const QColor accent = off || chosen ? ink : style::accent();
    const QSize pixels = (QSizeF(size) * scale).toSize();
    const QString key = QStringLiteral("vantry-%1-%2x%3-%4-%5")
                            .arg(qHash(drawing_))
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(ink.rgba())
                            .arg(accent.rgba());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
      pixmap = render(pixels, ink, accent);
      QPixmapCache::insert(key, pixmap);
    }
    pixmap.setDevicePixelRatio(scale);
    return pixmap;
  }

  QPixmap render(const QSize& size, const QColor& ink, const QColor& accent) const {
    QByteArray drawing = drawing_;
    drawing.replace(kInk, ink.name().toLatin1());
    drawing.replace(kAccent, accent.name().toLatin1());
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(drawing);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
  }

  QByteArray drawing_;
};

QIcon icon(std::string_view name) {
  QFile file(QStringLiteral(":/icons/%1.svg").arg(qt(name)));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QIcon(new SvgEngine(file.readAll()));
}

}  // namespace vantry
