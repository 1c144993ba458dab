#include "gui/host_editors/written_columns_view.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include "gui/host_editors/table_columns_model.h"
#include "host/widgets/icons.h"
#include "host/widgets/search_field.h"

namespace kelvarin {

namespace {

constexpr int kSearchedColumns = 10;  // fewer are seen at a glance
constexpr int kNameRole = Qt::UserRole;
constexpr int kTypeRole = Qt::UserRole + 1;

}  // namespace

WrittenColumnsView::WrittenColumnsView(const QStringList& types, QWidget* parent)
    : QWidget(parent), m_count(new QLabel), m_search(new SearchField), m_list(new QListWidget) {
  m_count->setObjectName(QStringLiteral("columnCount"));
  m_count->setTextFormat(Qt::PlainText);
  m_count->setWordWrap(true);
  m_search->setObjectName(QStringLiteral("searchColumns"));
  m_search->setAccessibleName(tr("Search columns"));
  m_search->setPlaceholderText(tr("Search columns"));
  m_search->setList(m_list);
  m_list->setObjectName(QStringLiteral("columns"));
  m_list->setAccessibleName(tr("Columns that are written"));
  m_list->setUniformItemSizes(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_count);
  layout->addWidget(m_search);
  layout->addWidget(m_list, 1);
  connect(m_search, &SearchField::searched, this, &WrittenColumnsView::showMatches);
  if (!types.isEmpty()) {
    addTypeBox(types);
  }
}

void WrittenColumnsView::addTypeBox(const QStringList& types) {
  m_type = new QComboBox;
  m_type->setObjectName(QStringLiteral("storedType"));
  m_type->setToolTip(tr("The type that the chosen column gets in the file."));
  m_type->addItem(tr("By the type of the column"), QString());
  for (const QString& type : types) {
    m_type->addItem(type, type);
  }
  auto* label = new QLabel(tr("&Type in the file:"));
  label->setBuddy(m_type);
  m_type->setAccessibleName(tr("Type in the file"));
  m_typeRow = new QWidget;
  auto* row = new QHBoxLayout(m_typeRow);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(label);
  row->addWidget(m_type, 1);
  static_cast<QVBoxLayout*>(layout())->addWidget(m_typeRow);
  connect(m_list, &QListWidget::currentRowChanged, this, &WrittenColumnsView::showChosenType);
  connect(m_type, &QComboBox::activated, this, [this] {
    if (const QListWidgetItem* item = m_list->currentItem()) {
      emit typeChosen(item->data(kNameRole).toString(), m_type->currentData().toString());
    }
  });
}

void WrittenColumnsView::showColumns(const PinColumns& columns,
                                     const QMap<QString, QString>& chosen) {
  fillList(columns, chosen);
  const bool isAny = m_list->count() > 0;
  m_list->setVisible(columns.isKnown || isAny);
  m_search->setVisible(m_list->count() > kSearchedColumns);
  if (m_type != nullptr) {
    m_typeRow->setVisible(isAny);
  }
  if (columns.isKnown) {
    m_count->setText(tr("Columns that are written, in this order: %1").arg(columns.columns.size()));
  } else if (columns.isBeingComputed) {
    m_count->setText(tr("Finding out which columns are written..."));
  } else {
    m_count->setText(
        columns.whyUnknown.isEmpty()
            ? tr("Which columns are written shows when rows are linked to this action.")
            : columns.whyUnknown);
  }
  showMatches(m_search->text());
  showChosenType();
}

void WrittenColumnsView::fillList(const PinColumns& columns, const QMap<QString, QString>& chosen) {
  const QString current = m_list->currentItem() == nullptr
                              ? QString()
                              : m_list->currentItem()->data(kNameRole).toString();
  const QSignalBlocker isSilent(m_list);
  m_list->clear();
  const auto add = [&](const QString& name, const QString& text) {
    auto* item = new QListWidgetItem(text, m_list);
    item->setData(kNameRole, name);
    item->setData(kTypeRole, chosen.value(name));
    if (name == current) {
      m_list->setCurrentItem(item);
    }
    return item;
  };
  QMap<QString, QString> left = chosen;
  const auto shown = columns.isKnown ? columns.columns : std::vector<PinColumns::Column>();
  for (const PinColumns::Column& column : shown) {
    const QString type =
        TableColumnsModel::typeInWords(QString(QLatin1Char(static_cast<char>(column.meta))));
    const QString stored = left.take(column.name);
    add(column.name, stored.isEmpty()
                         ? tr("%1 (%2)", "a column and its type").arg(column.name, type)
                         : tr("%1 (%2), in the file %3", "a column and its types")
                               .arg(column.name, type, stored));
  }
  for (auto entry = left.cbegin(); entry != left.cend(); ++entry) {
    QListWidgetItem* item =
        add(entry.key(), tr("%1, in the file %2", "a column and its type in the file")
                             .arg(entry.key(), entry.value()));
    if (columns.isKnown) {
      item->setIcon(icon(Severity::warning));
      item->setToolTip(tr("The table has no column of this name."));
    }
  }
}

void WrittenColumnsView::showMatches(const QString& text) {
  for (int i = 0; i < m_list->count(); ++i) {
    QListWidgetItem* column = m_list->item(i);
    column->setHidden(!column->text().contains(text, Qt::CaseInsensitive));
  }
}

void WrittenColumnsView::showChosenType() {
  if (m_type == nullptr) {
    return;
  }
  const QListWidgetItem* item = m_list->currentItem();
  m_type->setEnabled(item != nullptr);
  m_type->setCurrentIndex(item == nullptr ? 0
                                          : std::max(0, m_type->findData(item->data(kTypeRole))));
}

}  // namespace kelvarin
