#include "ui/columnar/read_columns_page.h"

#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include "host/widgets/icons.h"
#include "host/widgets/search_field.h"
#include "ui/columnar/summary_texts.h"
#include "ui/panels/wrapping_choice.h"
#include "ui/widgets/enhanced_table_delegate.h"
#include "ui/widgets/my_table.h"

namespace kelvarin {

ReadColumnsPage::ReadColumnsPage(QWidget* parent)
    : SettingsPage(parent),
      m_model(new ColumnsToReadModel(this)),
      m_shown(new QSortFilterProxyModel(this)) {
  addChoice();
  addList();
  connect(m_model, &ColumnsToReadModel::edited, this, [this] {
    showExtent();
    emit changed();
  });
}

void ReadColumnsPage::addChoice() {
  m_all = radioButton("rbAllColumns", tr("All &columns"));
  m_listed = radioButton("rbListedColumns", tr("Only the columns that are &ticked, in this order"));
  m_fromPin =
      radioButton("rbColumnsFromPin", tr("The columns &named in the first column of input pin 1"));
  makeExclusive({m_all, m_listed, m_fromPin}, this);
  for (const QRadioButton* button : {m_all, m_listed, m_fromPin}) {
    pageLayout()->addWidget(choiceRow(button));
  }
  pageLayout()->setSpacing(8);
}

void ReadColumnsPage::addList() {
  m_search = new SearchField(this);
  m_search->setObjectName(QStringLiteral("search"));
  m_search->setPlaceholderText(tr("Search columns"));
  m_search->setAccessibleName(tr("Search columns"));
  m_shown->setSourceModel(m_model);
  m_shown->setFilterCaseSensitivity(Qt::CaseInsensitive);
  m_table = new MyTable(this);
  m_table->setObjectName(QStringLiteral("columns"));
  m_table->setAccessibleName(tr("Columns of the file"));
  m_table->setModel(m_shown);
  m_table->setItemDelegate(new EnhancedTableDelegate(m_table));
  m_table->setHeaderSorts(false);
  m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_table->setTabKeyNavigation(false);
  m_table->verticalHeader()->hide();
  m_table->horizontalHeader()->setSectionResizeMode(ColumnsToReadModel::kName,
                                                    QHeaderView::Stretch);
  m_table->horizontalHeader()->setMinimumSectionSize(5 * fontMetrics().height());
  m_table->setMinimumHeight(8 * fontMetrics().height());
  m_search->setList(m_table);
  connect(m_search, &SearchField::searched, m_shown, &QSortFilterProxyModel::setFilterFixedString);

  QPushButton* all = pushButton("pbAll", tr("All"));
  QPushButton* none = pushButton("pbNone", tr("None"));
  QPushButton* up = pushButton("pbUp", tr("Up"));
  QPushButton* down = pushButton("pbDown", tr("Down"));
  up->setIcon(icon(IconName::up));
  down->setIcon(icon(IconName::down));
  all->setToolTip(tr("Ticks all columns that are shown."));
  none->setToolTip(tr("Unticks all columns that are shown."));
  connect(all, &QPushButton::clicked, this, [this] { m_model->tick(shownRows(), true); });
  connect(none, &QPushButton::clicked, this, [this] { m_model->tick(shownRows(), false); });
  connect(up, &QPushButton::clicked, this, [this] { moveCurrent(-1); });
  connect(down, &QPushButton::clicked, this, [this] { moveCurrent(1); });
  m_listButtons = rowOf({all, none, up, down}, this);

  m_newColumn = new QLineEdit(this);
  m_newColumn->setObjectName(QStringLiteral("newColumn"));
  m_newColumn->setPlaceholderText(tr("Name of a further column"));
  m_newColumn->setAccessibleName(tr("Name of a further column"));
  QPushButton* add = pushButton("pbAddColumn", tr("Add"));
  add->setIcon(icon(IconName::add));
  connect(add, &QPushButton::clicked, this, &ReadColumnsPage::addTyped);
  connect(m_newColumn, &QLineEdit::returnPressed, this, &ReadColumnsPage::addTyped);
  m_addRow = new QWidget(this);
  auto* addLayout = new QHBoxLayout(m_addRow);
  addLayout->setContentsMargins(0, 0, 0, 0);
  addLayout->addWidget(m_newColumn, 1);
  addLayout->addWidget(add);

  m_extent = new QLabel(this);
  m_extent->setObjectName(QStringLiteral("extent"));
  m_extent->setWordWrap(true);
  pageLayout()->addWidget(m_search);
  pageLayout()->addWidget(m_table, 1);
  pageLayout()->addWidget(m_extent);
  pageLayout()->addWidget(m_listButtons);
  pageLayout()->addWidget(m_addRow);
}

void ReadColumnsPage::load(const ReadColumnarSettings& settings, const QStringList& listed) {
  const auto columns = settings.columns();
  m_all->setChecked(columns == ReadColumnarSettings::Columns::all);
  m_listed->setChecked(columns == ReadColumnarSettings::Columns::listed);
  m_fromPin->setChecked(columns == ReadColumnarSettings::Columns::fromPin);
  m_model->setListed(listed);
  m_model->setTickable(m_listed->isChecked());
  m_listButtons->setEnabled(m_listed->isChecked());
  m_addRow->setEnabled(m_listed->isChecked());
  showExtent();
}

// The older of the two attributes that mean "listed" stays where it was.
void ReadColumnsPage::store(ReadColumnarSettings& settings) const {
  using Columns = ReadColumnarSettings::Columns;
  const Columns columns = m_listed->isChecked()    ? Columns::listed
                          : m_fromPin->isChecked() ? Columns::fromPin
                                                   : Columns::all;
  if (columns == settings.columns()) {
    return;
  }
  settings.columnSelection = static_cast<int>(columns);
  settings.readAllColumns = true;
}

void ReadColumnsPage::setFile(const TableSummary* summary) {
  m_columnsOfFile = summary == nullptr ? -1 : static_cast<int>(summary->columns.size());
  m_model->setFile(summary);
  m_table->setColumnHidden(ColumnsToReadModel::kSet, summary == nullptr || summary->columnSets < 2);
  m_table->resizeColumnToContents(ColumnsToReadModel::kType);
  m_table->resizeColumnToContents(ColumnsToReadModel::kSize);
  m_table->resizeColumnToContents(ColumnsToReadModel::kSet);
  showExtent();
}

QString ReadColumnsPage::extent() const {
  if (m_fromPin->isChecked()) {
    return tr("The columns that input pin 1 names");
  }
  if (m_all->isChecked()) {
    return m_columnsOfFile < 0 ? tr("All columns") : tr("All %1 columns").arg(m_columnsOfFile);
  }
  const int ticked = m_model->tickedCount();
  if (ticked == 0) {
    return tr("No column: tick at least one");
  }
  const QString count = m_columnsOfFile < 0
                            ? tr("%1 columns").arg(ticked)
                            : tr("%1 of %2 columns").arg(ticked).arg(m_columnsOfFile);
  const auto bytes = m_model->tickedBytes();
  return bytes ? tr("%1, %2").arg(count, sizeText(*bytes)) : count;
}

void ReadColumnsPage::showExtent() {
  m_extent->setText(extent());
}

std::vector<int> ReadColumnsPage::shownRows() const {
  std::vector<int> rows;
  for (int row = 0; row < m_shown->rowCount(); ++row) {
    rows.push_back(m_shown->mapToSource(m_shown->index(row, 0)).row());
  }
  return rows;
}

void ReadColumnsPage::moveCurrent(int step) {
  const int row = m_table->currentRow();
  if (m_model->move(row, step)) {
    m_table->setCurrentCell(row + step, ColumnsToReadModel::kName);
  }
}

void ReadColumnsPage::addTyped() {
  const QString name = m_newColumn->text().trimmed();
  if (name.isEmpty()) {
    return;
  }
  m_newColumn->clear();
  m_table->setCurrentCell(m_model->add(name), ColumnsToReadModel::kName);
}

}  // namespace kelvarin
