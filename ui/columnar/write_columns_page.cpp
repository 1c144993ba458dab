#include "ui/columnar/write_columns_page.h"

#include <numeric>

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "host/widgets/info_line.h"
#include "ui/columnar/column_box.h"
#include "ui/panels/wrapping_choice.h"
#include "ui/widgets/enhanced_table_delegate.h"
#include "ui/widgets/my_table.h"

namespace kelvarin {

WriteColumnsPage::WriteColumnsPage(QWidget* parent)
    : SettingsPage(parent), m_model(new ColumnSetsModel(this)) {
  addRowGroup();
  addSetGroup();
  connect(m_model, &ColumnSetsModel::edited, this, &WriteColumnsPage::changed);
}

void WriteColumnsPage::addRowGroup() {
  QGroupBox* box = group(tr("Rows"));
  m_testRows = checkBox("cbTestRows", tr("&Write only the rows in which the column"));
  m_testColumn = columnBox("leTestCol", tr("Column to test"), box);
  connect(m_testColumn, &QComboBox::activated, this, &WriteColumnsPage::changed);
  connect(m_testColumn->lineEdit(), &QLineEdit::editingFinished, this, &WriteColumnsPage::changed);
  m_testValue = watch(new QLineEdit(box), "leTestValue", tr("Value that it has"));
  m_testValue->setPlaceholderText(tr("(missing or empty)"));
  auto* has = new QLabel(tr("has the val&ue"), box);
  has->setBuddy(m_testValue);
  auto* grid = new QGridLayout;
  grid->setContentsMargins(24, 0, 0, 0);
  grid->setVerticalSpacing(8);
  grid->addWidget(m_testColumn, 0, 0, 1, 2);
  grid->addWidget(has, 1, 0);
  grid->addWidget(m_testValue, 1, 1);
  grid->setColumnStretch(1, 1);
  box->layout()->addWidget(choiceRow(m_testRows));
  qobject_cast<QVBoxLayout*>(box->layout())->addLayout(grid);
}

void WriteColumnsPage::addSetGroup() {
  QGroupBox* box = group(tr("Column sets"));
  m_oneSet = radioButton("rbOneSet", tr("All columns in one &set"),
                         tr("One file beside the main file: best where rows are read whole."));
  m_setForEach =
      radioButton("rbSetForEach", tr("A set for each &column"),
                  tr("A file for each column: written on several threads, read column by column."));
  m_listedSets = radioButton("rbListedSets", tr("The sets of &this list:"));
  makeExclusive({m_oneSet, m_setForEach, m_listedSets}, box);
  m_table = new MyTable(box);
  m_table->setObjectName(QStringLiteral("columnSets"));
  m_table->setAccessibleName(tr("Columns and their sets"));
  m_table->setModel(m_model);
  m_table->setItemDelegate(new EnhancedTableDelegate(m_table));
  m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_table->setTabKeyNavigation(false);
  m_table->verticalHeader()->hide();
  m_table->horizontalHeader()->setSectionResizeMode(ColumnSetsModel::kName, QHeaderView::Stretch);
  m_table->setMinimumHeight(7 * fontMetrics().height());
  m_set = new QSpinBox(box);
  m_set->setObjectName(QStringLiteral("sbSet"));
  m_set->setAccessibleName(tr("Number of the set"));
  m_set->setRange(0, ColumnSetsModel::kLastSet);
  QPushButton* assign = pushButton("pbAssignSet", tr("&Put into set"));
  QPushButton* leaveOut = pushButton("pbLeaveOut", tr("&Do not write"));
  assign->setToolTip(tr("The selected columns; all where none is selected."));
  leaveOut->setToolTip(tr("The selected columns; all where none is selected."));
  connect(assign, &QPushButton::clicked, this,
          [this] { m_model->assign(chosenRows(), m_set->value()); });
  connect(leaveOut, &QPushButton::clicked, this,
          [this] { m_model->assign(chosenRows(), ColumnSetsModel::kNotWritten); });
  m_setButtons = rowOf({assign, m_set, leaveOut}, box);
  m_note = new InfoLine(box);
  auto* layout = qobject_cast<QVBoxLayout*>(box->layout());
  for (const QRadioButton* button : {m_oneSet, m_setForEach, m_listedSets}) {
    layout->addWidget(choiceRow(button));
  }
  layout->addWidget(m_table, 1);
  layout->addWidget(m_setButtons);
  layout->addWidget(m_note);
  pageLayout()->setStretchFactor(box, 1);
}

std::vector<int> WriteColumnsPage::chosenRows() const {
  std::vector<int> rows = m_table->selectedRows();
  if (rows.empty()) {
    rows.resize(static_cast<std::size_t>(m_model->rowCount()));
    std::iota(rows.begin(), rows.end(), 0);
  }
  return rows;
}

void WriteColumnsPage::load(const WriteColumnarSettings& settings, const ListedColumnSets& sets) {
  using ColumnSets = WriteColumnarSettings::ColumnSets;
  const ColumnSets kind = settings.columnSets();
  m_testRows->setChecked(!settings.writeAllRows);
  showColumn(*m_testColumn, settings.testColumn);
  m_testColumn->setEnabled(!settings.writeAllRows);
  if (m_testValue->text() != settings.testValue) {
    m_testValue->setText(settings.testValue);
  }
  m_testValue->setEnabled(!settings.writeAllRows);
  m_oneSet->setChecked(kind == ColumnSets::one);
  m_listedSets->setChecked(kind == ColumnSets::listed);
  m_setForEach->setChecked(kind == ColumnSets::oneForEachColumn);
  m_model->setSets(sets);
  m_table->setEnabled(kind == ColumnSets::listed);
  m_setButtons->setEnabled(kind == ColumnSets::listed);
}

void WriteColumnsPage::store(WriteColumnarSettings& settings) const {
  using ColumnSets = WriteColumnarSettings::ColumnSets;
  settings.writeAllRows = !m_testRows->isChecked();
  settings.testColumn = m_testColumn->currentText();
  settings.testValue = m_testValue->text();
  const ColumnSets kind = m_listedSets->isChecked()   ? ColumnSets::listed
                          : m_setForEach->isChecked() ? ColumnSets::oneForEachColumn
                                                      : ColumnSets::one;
  if (kind != settings.columnSets()) {
    settings.columnStrategy = static_cast<int>(kind);
  }
}

void WriteColumnsPage::setColumns(const PinColumns& columns) {
  offerColumns(*m_testColumn, columns);
  m_model->setInput(columns);
  m_table->resizeColumnToContents(ColumnSetsModel::kType);
  m_table->resizeColumnToContents(ColumnSetsModel::kSet);
  showNote(columns);
}

void WriteColumnsPage::showNote(const PinColumns& columns) {
  if (columns.isKnown) {
    m_note->clear();
    return;
  }
  m_note->setMessage(Severity::information,
                     columns.whyUnknown.isEmpty()
                         ? tr("The columns that reach this action are not known yet.")
                         : columns.whyUnknown);
}

}  // namespace kelvarin
