// Chooses the type of a column in a table: the one found, or one that the user fixes.
//
// Used by: the editors of table files and of tables inside graphs, over models with the roles of
// TableColumnsModel.
// Threads: the user-interface thread.
#pragma once

#include <QStyledItemDelegate>

namespace kelvarin {

class ColumnTypeDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
};

}  // namespace kelvarin
