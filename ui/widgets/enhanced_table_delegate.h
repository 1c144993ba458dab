// Draws and edits the cells of the input-variable table, and reports right clicks, by which a
// variable goes into the expression.
//
// Reads the roles of cell_roles.h. Rows are those of the model that holds the variables, however
// the table sorts them.
#pragma once

#include <QStyledItemDelegate>

namespace kelvarin {

class EnhancedTableDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  explicit EnhancedTableDelegate(QObject* parent = nullptr);

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;

 signals:
  void rightClickPressed(int row);

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;
};

}  // namespace kelvarin
