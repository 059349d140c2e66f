#include <QHeaderView>
#include <QImageReader>
#include <QKeyEvent>
#include <QPainter>
#include <QPixmap>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <algorithm>

#include "desktop/binder.h"
#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/bars.h"

namespace vantry {

static constexpr int kKeyRole = Qt::UserRole;
static constexpr int kCurrentRole = Qt::UserRole + 1;
static constexpr int kEntryHeight = 30;
static constexpr int kGroupHeight = 32;
/// A larger picture is read smaller than it is.
static constexpr int kPictureSide = 2000;
static constexpr int kPictureMegabytes = 1024;  // unpacked
/// A bar is as wide as its captions want, within limits.
static constexpr int kNarrowest = 208;
static constexpr int kWidest = 300;
/// Where a caption starts, behind its picture.
static constexpr int kCaptionLeft = 4 * style::kUnit + style::kToolIcon + 2;

/// The entry whose view shows is written in bold.
static QFont currentFont(QFont font) {
  font.setWeight(QFont::DemiBold);
  return font;
}

/// Headings of groups and entries with their pictures; the entry whose view shows is marked.
class ListBarDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
    return {kNarrowest, index.parent().isValid() ? kEntryHeight : kGroupHeight};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (index.parent().isValid()) {
      paintEntry(*painter, option, index);
    } else {
      paintGroup(*painter, option, index);
    }
    painter->restore();
  }

 private:
  static void paintGroup(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
    painter.setFont(style::captionFont());
    painter.setPen(style::quietText());
    const QRect room = option.rect.adjusted(2 * style::kUnit, style::kUnit, -2 * style::kUnit, 0);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
    const auto* tree = static_cast<const QTreeWidget*>(option.widget);
    const char* sign = tree->isExpanded(index) ? "chevron-down" : "chevron-right";
    icon(sign).paint(&painter, QRect(room.right() - 12, room.center().y() - 6, 12, 12));
  }

  static void paintEntry(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
    const bool current = index.data(kCurrentRole).toBool();
    const bool under = option.state & QStyle::State_MouseOver;
    const bool focus =
        option.state & QStyle::State_HasFocus && option.state & QStyle::State_KeyboardFocusChange;
    const QRectF box = QRectF(option.rect).adjusted(style::kUnit, 1, -style::kUnit, -1);
    painter.setPen(focus ? QPen(style::accent()) : QPen(Qt::NoPen));
    const QColor ground = current ? style::tint() : under ? style::headerGround() : QColor(Qt::transparent);
    painter.setBrush(ground);
    painter.drawRoundedRect(box, style::kRadius, style::kRadius);
    if (current) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(style::accent());
      painter.drawRoundedRect(QRectF(box.left(), box.top() + 6, 3, box.height() - 12), 1.5, 1.5);
    }
    const QRect picture(option.rect.left() + 3 * style::kUnit,
                        option.rect.center().y() - style::kToolIcon / 2 + 1, style::kToolIcon,
                        style::kToolIcon);
    index.data(Qt::DecorationRole).value<QIcon>().paint(&painter, picture);
    const QFont font = current ? currentFont(option.font) : option.font;
    painter.setFont(font);
    painter.setPen(option.palette.color(QPalette::Text));
    const QRect room = option.rect.adjusted(kCaptionLeft, 0, -style::kUnit, 0);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(font).elidedText(index.data().toString(), Qt::ElideRight, room.width()));
  }
};

class ListBarWidget : public QTreeWidget {
 public:
  explicit ListBarWidget(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setIndentation(0);
    setFrameShape(NoFrame);
    setMouseTracking(true);
    setExpandsOnDoubleClick(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setFixedWidth(kNarrowest);
    setItemDelegate(new ListBarDelegate(this));
    setAutoScroll(false);
  }
  std::function<void()> onResize;
  std::function<void()> onEnter;
  QPixmap background;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QTreeWidget::resizeEvent(event);
    if (onResize) onResize();
  }
  void keyPressEvent(QKeyEvent* event) override {
    const int key = event->key();
    if ((key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) && onEnter) {
      const auto listener = onEnter;
      return listener();
    }
    QTreeWidget::keyPressEvent(event);
  }
  void paintEvent(QPaintEvent* event) override {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), style::barGround());
    if (!background.isNull()) painter.drawTiledPixmap(viewport()->rect(), background);
    painter.end();
    QTreeWidget::paintEvent(event);
    QPainter line(viewport());
    line.setPen(style::hairline());
    line.drawLine(viewport()->rect().topRight(), viewport()->rect().bottomRight());
  }
};

/// The picture of a file, no larger than a screen; empty for a file that cannot be read or is too large to be
/// unpacked.
static QPixmap pictureOf(const QString& file) {
  if (file.isEmpty()) return {};
  // A photograph of 100 MB unpacks to more than Qt takes unasked.
  QImageReader::setAllocationLimit(kPictureMegabytes);
  QImageReader reader(file);
  const QSize size = reader.size();
  if (size.width() > kPictureSide || size.height() > kPictureSide)
    reader.setScaledSize(size.scaled(kPictureSide, kPictureSide, Qt::KeepAspectRatio));
  return QPixmap::fromImageReader(&reader);
}

class ListBarBinder : public Binder {
 public:
  ListBarBinder(ListBar& bar, Host& host, ListBarWidget& widget)
      : Binder(bar, host, widget), bar_(bar), widget_(widget) {
    connect(&widget, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { clicked(*item); });
    widget.onResize = [this] { showOpenGroups(); };
    widget.onEnter = [this] {
      if (QTreeWidgetItem* item = widget_.currentItem()) clicked(*item);
    };
  }
  ~ListBarBinder() override { widget_.onResize = widget_.onEnter = nullptr; }

  void update(Aspect aspect) override {
    if (aspect == Aspect::List) showGroups();
    if (aspect == Aspect::Selection) showOpenGroups();
    if (aspect == Aspect::State) showCurrent();
    if (aspect == Aspect::Picture) {
      widget_.background = pictureOf(qt(bar_.BackgroundPicture.get()));
      widget_.viewport()->update();
    }
    Binder::update(aspect);
  }

 private:
  void showGroups() {
    widget_.clear();
    const QFontMetrics metrics(currentFont(widget_.font()));
    int widest = 0;
    for (const BarGroup& group : bar_.Groups()) {
      auto* heading = new QTreeWidgetItem(&widget_, {qt(group.caption)});
      heading->setFlags(Qt::ItemIsEnabled);
      for (const BarEntry& entry : group.entries) {
        auto* item = new QTreeWidgetItem(heading, {qt(entry.caption)});
        item->setData(0, kKeyRole, qt(entry.key));
        const int width = kCaptionLeft + metrics.horizontalAdvance(item->text(0)) + 2 * style::kUnit;
        if (width > kWidest) item->setToolTip(0, item->text(0));  // it will be cut
        widest = std::max(widest, width);
        if (!entry.picture.empty()) item->setIcon(0, icon(entry.picture));
      }
    }
    widget_.setFixedWidth(std::clamp(widest, kNarrowest, kWidest));
    showOpenGroups();
    showCurrent();
  }

  /// All groups stand open where there is room for them; otherwise the current one does.
  void showOpenGroups() {
    int height = 0;
    for (const BarGroup& group : bar_.Groups())
      height += kGroupHeight + static_cast<int>(group.entries.size()) * kEntryHeight;
    const bool all = height <= widget_.viewport()->height();
    for (int i = 0; i < widget_.topLevelItemCount(); ++i)
      widget_.topLevelItem(i)->setExpanded(all || i == bar_.CurrentGroup);
  }

  void showCurrent() {
    const QString current = qt(bar_.CurrentItem.get());
    for (int i = 0; i < widget_.topLevelItemCount(); ++i) {
      const QTreeWidgetItem* group = widget_.topLevelItem(i);
      for (int j = 0; j < group->childCount(); ++j) {
        QTreeWidgetItem* item = group->child(j);
        const bool shown = !current.isEmpty() && item->data(0, kKeyRole).toString() == current;
        item->setData(0, kCurrentRole, shown);
        item->setData(0, Qt::AccessibleDescriptionRole, shown ? QObject::tr("shown") : QString());
      }
    }
  }

  void clicked(QTreeWidgetItem& item) {
    if (!item.parent()) {
      act([this, group = widget_.indexOfTopLevelItem(&item)] { bar_.clickGroup(group); });
      return;
    }
    act([this, key = utf8(item.data(0, kKeyRole).toString())] { bar_.click(key); });
  }

  ListBar& bar_;
  ListBarWidget& widget_;
};

std::unique_ptr<Binder> bindListBar(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<ListBarBinder>(static_cast<ListBar&>(control), host, *new ListBarWidget(parent));
}

}  // namespace vantry
