#pragma once

#include <QAbstractListModel>

namespace vantry {

class ListControl;

/// The entries of a list, read in place.
class ListModel : public QAbstractListModel {
 public:
  ListModel(const ListControl& list, QObject* parent) : QAbstractListModel(parent), list_(list) {}
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  /// The list is another one now.
  void renew();

 private:
  const ListControl& list_;
  int rows_ = 0;
};

}  // namespace vantry
