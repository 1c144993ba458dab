#include "gui/host_editors/column_type_delegate.h"

#include <QComboBox>

#include "gui/host_editors/table_columns_model.h"

namespace kelvarin {

QWidget* ColumnTypeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                          const QModelIndex& index) const {
  auto* box = new QComboBox(parent);
  box->setAccessibleName(tr("Type"));
  const QString found = index.data(TableColumnsModel::kFoundRole).toString();
  box->addItem(found.isEmpty() ? tr("As found") : tr("%1 (found)").arg(found), QString());
  for (const char* meta : {"F", "K", "U"}) {
    box->addItem(TableColumnsModel::typeInWords(QLatin1String(meta)), QLatin1String(meta));
  }
  connect(box, &QComboBox::activated, this, [this, box] {
    auto* delegate = const_cast<ColumnTypeDelegate*>(this);
    emit delegate->commitData(box);
    emit delegate->closeEditor(box);
  });
  return box;
}

void ColumnTypeDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  auto* box = static_cast<QComboBox*>(editor);
  box->setCurrentIndex(std::max(0, box->findData(index.data(TableColumnsModel::kMetaRole))));
}

// A type that is none of these stays until another one is chosen.
void ColumnTypeDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                      const QModelIndex& index) const {
  auto* box = static_cast<QComboBox*>(editor);
  const bool isOther = box->findData(index.data(TableColumnsModel::kMetaRole)) < 0;
  if (!isOther || box->currentIndex() > 0) {
    model->setData(index, box->currentData());
  }
}

}  // namespace kelvarin
