#include <QComboBox>
#include <QKeyEvent>
#include <QListView>
#include <QStyleOption>
#include <QWheelEvent>

#include "desktop/binder.h"
#include "desktop/list_model.h"
#include "desktop/qtext.h"
#include "desktop/style.h"
#include "platform/controls.h"

namespace vantry {

static constexpr int kListRows = 8;
static constexpr int kComboRows = 16;
static constexpr int kComboLetters = 14;

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
  return qt(list_.List(index.row()));
}

void ListModel::renew() {
  beginResetModel();
  rows_ = list_.ListCount();
  endResetModel();
}

/// What combo and list have in common: entries come one by one and are shown together.
class ListBinder : public Binder {
 public:
  ListBinder(ListControl& list, Host& host, QWidget& widget)
      : Binder(list, host, widget), list_(list), model_(new ListModel(list, this)) {}

  void update(Aspect aspect) override {
    if (aspect == Aspect::List || aspect == Aspect::Selection) {
      renew_ = renew_ || aspect == Aspect::List;
      marked_ = true;
      host().flushLater();
    }
    Binder::update(aspect);
  }

  void flush() override {
    if (!marked_) return;
    marked_ = false;
    showing_ = true;
    if (renew_) model_->renew();
    renew_ = false;
    select(list_.ListIndex);
    showing_ = false;
  }

 protected:
  ListModel& model() const { return *model_; }
  /// Whether a signal comes from showing the control's own state.
  bool showing() const { return showing_; }
  virtual void select(int index) = 0;
  void chosen(int index) {
    if (index != list_.ListIndex) act([this, index] { list_.select(index); });
  }

 private:
  ListControl& list_;
  ListModel* model_;
  bool marked_ = false;
  bool renew_ = false;
  bool showing_ = false;
};

/// The wheel scrolls the window, not a list that nobody has opened or chosen. A locked list only shows its
/// entry.
class ComboWidget : public QComboBox {
 public:
  using QComboBox::QComboBox;
  void setLocked(bool locked) {
    locked_ = locked;
    update();
  }
  void showPopup() override {
    if (!locked_) QComboBox::showPopup();
  }

 protected:
  void initStyleOption(QStyleOptionComboBox* option) const override {
    QComboBox::initStyleOption(option);
    if (locked_) option->state |= QStyle::State_ReadOnly;
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (!locked_) return QComboBox::keyPressEvent(event);
    event->ignore();
  }
  void wheelEvent(QWheelEvent* event) override {
    if (hasFocus() && !locked_) return QComboBox::wheelEvent(event);
    event->ignore();
  }

 private:
  bool locked_ = false;
};

class ComboBinder : public ListBinder {
 public:
  ComboBinder(ComboBox& combo, Host& host, ComboWidget& widget)
      : ListBinder(combo, host, widget), combo_(combo), widget_(widget) {
    widget.setModel(&model());
    widget.setMaxVisibleItems(kComboRows);
    widget.setMinimumContentsLength(kComboLetters);
    widget.setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(&widget, &QComboBox::currentIndexChanged, this, [this](int index) {
      if (!showing()) chosen(index);
    });
  }
  ~ComboBinder() override {
    widget_.disconnect(this);
    widget_.setModel(new NoEntries(&widget_));
  }

  void update(Aspect aspect) override {
    if (aspect == Aspect::State) widget_.setLocked(combo_.Locked);
    ListBinder::update(aspect);
  }

 private:
  /// Stands in when the control's entries have gone and the widget has not yet.
  class NoEntries : public QAbstractListModel {
   public:
    using QAbstractListModel::QAbstractListModel;
    int rowCount(const QModelIndex&) const override { return 0; }
    QVariant data(const QModelIndex&, int) const override { return {}; }
  };
  void select(int index) override { widget_.setCurrentIndex(index); }
  ComboBox& combo_;
  ComboWidget& widget_;
};

/// A list whose Enter key is a double-click.
class ListWidget : public QListView {
 public:
  using QListView::QListView;
  /// Called last in an event; false where Enter means nothing here.
  std::function<bool()> onEnter;
  QSize sizeHint() const override { return {200, kListRows * style::kRowHeight + 2}; }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const auto listener = onEnter;  // whoever listens may go while it does
    if (!enter) return QListView::keyPressEvent(event);
    if (!listener || !currentIndex().isValid() || !listener()) event->ignore();
  }
};

class ListBoxBinder : public ListBinder {
 public:
  ListBoxBinder(ListBox& list, Host& host, ListWidget& widget)
      : ListBinder(list, host, widget), list_(list), widget_(widget) {
    widget.setModel(&model());
    widget.setUniformItemSizes(true);
    if (list.MultiSelect) widget.setSelectionMode(QAbstractItemView::MultiSelection);
    connect(widget.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { selectionChanged(); });
    connect(&widget, &QListView::doubleClicked, this, [this] { choose(); });
    widget.onEnter = [this] {
      if (!list_.DblClick) return false;
      choose();
      return true;
    };
  }
  ~ListBoxBinder() override {
    widget_.onEnter = nullptr;
    widget_.setModel(nullptr);
  }

 private:
  void select(int index) override {
    if (list_.MultiSelect) {
      selectMarked();
    } else if (index < 0) {
      widget_.clearSelection();
    } else {
      widget_.setCurrentIndex(model().index(index));
    }
  }
  void selectMarked() {
    for (int row = 0; row < list_.ListCount(); ++row)
      widget_.selectionModel()->select(model().index(row), list_.Selected(row)
                                                               ? QItemSelectionModel::Select
                                                               : QItemSelectionModel::Deselect);
  }
  /// What was chosen is known before the window answers, since its answer may change the selection.
  void markSelected() {
    std::vector<int> changed;
    for (int row = 0; row < list_.ListCount(); ++row) {
      const bool on = widget_.selectionModel()->isSelected(model().index(row));
      if (on != list_.Selected(row)) changed.push_back(row);
    }
    if (changed.empty()) return;
    act([&list = list_, changed] {
      for (const int row : changed) list.toggle(row);
    });
  }
  void selectionChanged() {
    if (showing()) return;
    if (list_.MultiSelect) return markSelected();
    const auto rows = widget_.selectionModel()->selectedRows();
    chosen(rows.isEmpty() ? -1 : rows.first().row());
  }
  void choose() {
    act([this, index = widget_.currentIndex().row()] { list_.doubleClick(index); });
  }

  ListBox& list_;
  ListWidget& widget_;
};

std::unique_ptr<Binder> bindComboBox(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<ComboBinder>(static_cast<ComboBox&>(control), host, *new ComboWidget(parent));
}

std::unique_ptr<Binder> bindListBox(Control& control, Host& host, QWidget* parent) {
  return std::make_unique<ListBoxBinder>(static_cast<ListBox&>(control), host, *new ListWidget(parent));
}

}  // namespace vantry
