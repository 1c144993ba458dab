#include "ui/widgets/enhanced_table_delegate.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTimer>
#include <QToolTip>

#include "host/widgets/icons.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/cell_roles.h"
#include "ui/widgets/my_table.h"

namespace kelvarin {

namespace {

bool isMarkedKind(const QVariant& kind) {
  return kind.isValid() &&
         ShownValue{static_cast<ShownValue::Kind>(kind.toInt()), {}, {}}.isMarked();
}

}  // namespace

EnhancedTableDelegate::EnhancedTableDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

QWidget* EnhancedTableDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                             const QModelIndex& index) const {
  const QStringList choices = index.data(kChoicesRole).toStringList();
  const bool isOpen = index.data(kOpenChoicesRole).toBool();
  if (choices.isEmpty()) {
    return QStyledItemDelegate::createEditor(parent, option, index);
  }
  auto* box = new QComboBox(parent);
  box->addItems(choices);
  box->setEditable(isOpen);
  box->setFrame(false);
  if (isOpen) {
    box->setInsertPolicy(QComboBox::NoInsert);
    box->completer()->setFilterMode(Qt::MatchContains);
    box->completer()->setCompletionMode(QCompleter::PopupCompletion);
  } else {
    QTimer::singleShot(0, box, &QComboBox::showPopup);
  }
  // A choice from the list is the end of editing; a list without typing has no other one.
  connect(box, &QComboBox::activated, this, [this, box] {
    auto* delegate = const_cast<EnhancedTableDelegate*>(this);
    emit delegate->commitData(box);
    emit delegate->closeEditor(box);
  });
  return box;
}

void EnhancedTableDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  auto* box = qobject_cast<QComboBox*>(editor);
  if (box == nullptr) {
    QStyledItemDelegate::setEditorData(editor, index);
    return;
  }
  const QString text = index.data(Qt::EditRole).toString();
  box->setCurrentIndex(box->findText(text));
  if (box->isEditable()) {
    box->setEditText(text);
    box->lineEdit()->selectAll();
  }
}

void EnhancedTableDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                         const QModelIndex& index) const {
  auto* box = qobject_cast<QComboBox*>(editor);
  if (box == nullptr) {
    QStyledItemDelegate::setModelData(editor, model, index);
  } else if (box->isEditable() || box->currentIndex() >= 0) {
    model->setData(index, box->currentText(), Qt::EditRole);
  }
}

void EnhancedTableDelegate::initStyleOption(QStyleOptionViewItem* option,
                                            const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (isMarkedKind(index.data(kValueKindRole))) {
    option->font.setItalic(true);
    option->palette.setColor(QPalette::Text,
                             option->palette.color(QPalette::Active, QPalette::PlaceholderText));
  }
  if (index.column() == 0 && !index.data(kFaultRole).toString().isEmpty()) {
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->icon = icon(Severity::warning);
    const int side = option->fontMetrics.height();
    option->decorationSize = QSize(side, side);
  }
}

bool EnhancedTableDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                        const QStyleOptionViewItem& option,
                                        const QModelIndex& index) {
  if (event->type() == QEvent::MouseButtonPress &&
      static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
    emit rightClickPressed(sourceIndexOf(index).row());
    return true;
  }
  return QStyledItemDelegate::editorEvent(event, model, option, index);
}

bool EnhancedTableDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                      const QStyleOptionViewItem& option,
                                      const QModelIndex& index) {
  const QString fault = index.data(kFaultRole).toString();
  if (event->type() == QEvent::ToolTip && !fault.isEmpty()) {
    QToolTip::showText(event->globalPos(), fault, view->viewport(), option.rect);
    return true;
  }
  return QStyledItemDelegate::helpEvent(event, view, option, index);
}

}  // namespace kelvarin
