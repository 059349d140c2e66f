#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTreeWidget>

#include "desktop/binder.h"
#include "desktop/icons.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/tree.h"

namespace vantry {

static constexpr int kKeyRole = Qt::UserRole;

static std::string keyOf(const QTreeWidgetItem* item) {
  return item ? utf8(item->data(0, kKeyRole).toString()) : std::string();
}

static constexpr int kLongTextsWidth = 90 * style::kUnit;

class TreeBinder : public Binder {
 public:
  TreeBinder(Tree& tree, Host& host, QTreeWidget& widget)
      : Binder(tree, host, widget), tree_(tree), widget_(widget) {
    tree.MultiSelect ? followSelection() : followCurrent();
    connect(&widget, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
      if (showing_) return;
      update(Aspect::List);  // the box shows what the window makes of it
      act([this, key = keyOf(item)] { tree_.check(key); });
    });
    connect(&widget, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem* item) { act([this, key = keyOf(item)] { tree_.doubleClick(key); }); });
    widget.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&widget, &QTreeWidget::customContextMenuRequested, this,
            [this](const QPoint& position) { menuWanted(position); });
    connect(&widget, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem* item) { expanded(*item, true); });
    connect(&widget, &QTreeWidget::itemCollapsed, this,
            [this](QTreeWidgetItem* item) { expanded(*item, false); });
  }

  void update(Aspect aspect) override {
    list_ = list_ || aspect == Aspect::List;
    selection_ = selection_ || aspect == Aspect::Selection;
    if (list_ || selection_) host().flushLater();
    Binder::update(aspect);
  }

  void flush() override {
    showing_ = true;
    if (list_) showNodes();
    if (list_ || selection_) showSelection();
    list_ = selection_ = showing_ = false;
  }

 private:
  void followCurrent() {
    connect(&widget_, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { act([this, key = keyOf(item)] { tree_.click(key); }); });
    connect(&widget_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
      // By the keyboard; a click tells of itself.
      if (!showing_ && item && QApplication::mouseButtons() == Qt::NoButton)
        act([this, key = keyOf(item)] { tree_.click(key); });
    });
  }

  void followSelection() {
    widget_.setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(&widget_, &QTreeWidget::itemSelectionChanged, this, [this] {
      if (showing_) return;
      std::vector<std::string> keys;
      for (const QTreeWidgetItem* item : widget_.selectedItems()) keys.push_back(keyOf(item));
      act([this, keys] { tree_.selectKeys(keys); });
    });
  }

  void showHeadings() {
    widget_.setHeaderHidden(tree_.Headings.empty());
    QStringList texts;
    for (const std::string& heading : tree_.Headings) texts << qt(heading);
    if (!texts.isEmpty()) widget_.setHeaderLabels(texts);
  }

  void showNodes() {
    const int place = widget_.verticalScrollBar()->value();
    widget_.clear();
    showHeadings();
    int columns = std::max(1, static_cast<int>(tree_.Headings.size()));
    for (const TreeNode* node : tree_.Roots()) {
      auto* item = makeItem(*node, columns);
      widget_.addTopLevelItem(item);
      expand(*item, *node);
    }
    if (columns > 1) widget_.setColumnCount(columns);
    for (int column = 0; columns > 1 && column < columns - 1; ++column)
      widget_.resizeColumnToContents(column);
    widget_.verticalScrollBar()->setValue(place);
  }

  QTreeWidgetItem* makeItem(const TreeNode& node, int& columns) {
    QStringList texts(qt(node.text));
    for (const std::string& text : node.columns) texts << qt(text);
    columns = std::max(columns, static_cast<int>(texts.size()));
    auto* item = new QTreeWidgetItem(texts);
    item->setData(0, kKeyRole, qt(node.key));
    setPicture(*item, node, node.expanded);
    if (tree_.BoldRoots && !node.parent) setBold(*item);
    for (const TreeNode* child : node.children) item->addChild(makeItem(*child, columns));
    return item;
  }

  void setBold(QTreeWidgetItem& item) {
    QFont font = widget_.font();
    font.setBold(true);
    item.setFont(0, font);
  }

  /// Items can be expanded only once they stand in the widget.
  void expand(QTreeWidgetItem& item, const TreeNode& node) {
    item.setExpanded(node.expanded);
    for (std::size_t i = 0; i < node.children.size(); ++i)
      expand(*item.child(static_cast<int>(i)), *node.children[i]);
  }

  void setPicture(QTreeWidgetItem& item, const TreeNode& node, bool open) {
    if (tree_.isTickable(node)) {
      item.setCheckState(0, node.image == tree_.TickedImage ? Qt::Checked : Qt::Unchecked);
      if (!node.children.empty()) item.setFlags(item.flags() & ~Qt::ItemIsUserCheckable);
      return;
    }
    const int image = open && node.openImage > 0 ? node.openImage : node.image;
    if (image > 0 && image <= static_cast<int>(tree_.Pictures.size()))
      item.setIcon(0, icon(tree_.Pictures[static_cast<std::size_t>(image - 1)]));
  }

  QTreeWidgetItem* find(QTreeWidgetItem* below, const std::string& key) {
    for (int i = 0; i < below->childCount(); ++i) {
      if (keyOf(below->child(i)) == key) return below->child(i);
      if (QTreeWidgetItem* inner = find(below->child(i), key)) return inner;
    }
    return nullptr;
  }

  void showSelection() {
    QTreeWidgetItem* item = find(widget_.invisibleRootItem(), tree_.SelectedKey);
    if (!tree_.MultiSelect) return widget_.setCurrentItem(item);
    widget_.setCurrentItem(item, 0, QItemSelectionModel::NoUpdate);
    widget_.clearSelection();
    for (const std::string& key : tree_.SelectedKeys()) {
      if (QTreeWidgetItem* selected = find(widget_.invisibleRootItem(), key)) selected->setSelected(true);
    }
  }

  void menuWanted(const QPoint& position) {
    host().popupAt(widget_.viewport()->mapToGlobal(position));
    const QTreeWidgetItem* item = widget_.itemAt(position);  // none for the menu key
    act([this, key = keyOf(item ? item : widget_.currentItem())] { tree_.rightClick(key); });
  }

  void expanded(QTreeWidgetItem& item, bool open) {
    if (showing_) return;
    const std::string key = keyOf(&item);
    if (const TreeNode* node = tree_.find(key)) setPicture(item, *node, open);
    act([this, key, open] { tree_.setExpanded(key, open); });
  }

  Tree& tree_;
  QTreeWidget& widget_;
  bool list_ = false;
  bool selection_ = false;
  bool showing_ = false;
};

std::unique_ptr<Binder> bindTree(Control& control, Host& host, QWidget* parent) {
  auto* widget = new QTreeWidget(parent);
  widget->setUniformRowHeights(true);
  widget->setIconSize({style::kMenuIcon, style::kMenuIcon});
  widget->setIndentation(3 * style::kUnit);
  widget->setExpandsOnDoubleClick(false);
  if (static_cast<Tree&>(control).LongTexts) widget->setMinimumWidth(kLongTextsWidth);
  return std::make_unique<TreeBinder>(static_cast<Tree&>(control), host, *widget);
}

}  // namespace vantry
