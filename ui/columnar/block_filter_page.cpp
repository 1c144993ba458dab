#include "ui/columnar/block_filter_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include "host/widgets/icons.h"
#include "host/widgets/info_line.h"
#include "ui/columnar/block_values_model.h"
#include "ui/columnar/committed_verdict.h"
#include "ui/panels/time_parameters_panel.h"
#include "ui/panels/wrapping_choice.h"
#include "ui/widgets/enhanced_table_delegate.h"
#include "ui/widgets/k_plain_text_edit.h"
#include "ui/widgets/my_table.h"

namespace kelvarin {

namespace {

constexpr int kShownBlocks = 4;
constexpr int kColumnGap = 12;

}  // namespace

BlockFilterPage::BlockFilterPage(const ActionItem& action, QWidget* parent)
    : SettingsPage(parent),
      m_action(action),
      m_values(new BlockValuesModel(this)),
      m_model(new BlockVariablesModel(this)) {
  addExpression();
  addVariables();
  addTime();
  pageLayout()->addStretch();
  connect(m_model, &BlockVariablesModel::edited, this, &BlockFilterPage::edit);
}

void BlockFilterPage::addExpression() {
  QGroupBox* box = group(tr("Blocks that are read"));
  m_isApplied =
      checkBox("cbFilterRows", tr("&Skip the blocks for which this expression is false:"));
  m_field = new ExpressionField(this);
  m_field->setHistoryKey(QStringLiteral("blockFilter"));
  m_field->setAccessibleName(tr("Block filter"));
  m_field->setValuesShown(false);
  m_field->editor()->setMaximumHeight(4 * fontMetrics().height());
  m_trial = new InfoLine(this);
  m_trial->setObjectName(QStringLiteral("trial"));
  m_trial->setReservedLines(1);
  box->layout()->addWidget(choiceRow(m_isApplied));
  box->layout()->addWidget(m_field);
  box->layout()->addWidget(m_trial);
  addBlockValues(*box);
  m_verdict = new CommittedVerdict(*m_field, *this);
  connect(m_verdict, &CommittedVerdict::fieldWanted, this, &BlockFilterPage::pageWanted);
  connect(m_verdict, &CommittedVerdict::checkWanted, this, [this] {
    emit changed();
    setFormula();
  });
  connect(m_field, &ExpressionField::editingFinished, this, [this] {
    if (m_field->expression() != m_loaded) {
      m_verdict->expect(m_field->expression());
    }
    emit changed();
  });
  connect(m_field, &ExpressionField::answered, this, &BlockFilterPage::takeAnswer);
  connect(m_field, &ExpressionField::helpWanted, this, &BlockFilterPage::helpWanted);
  connect(m_field, &ExpressionField::columnWanted, m_model, &BlockVariablesModel::addOffered);

  m_blocksAhead = spinBox("sbBlocksAhead", 0, 1000, tr("Blocks read ahead"));
  auto* label = new QLabel(tr("Blocks &read ahead:"), box);
  label->setBuddy(m_blocksAhead);
  m_blocksAhead->setToolTip(tr("Decoded on other threads while rows are computed; 0: none."));
  box->layout()->addWidget(rowOf({label, m_blocksAhead}, box));
}

void BlockFilterPage::addBlockValues(QGroupBox& box) {
  m_valuesTable = new QTableView(&box);
  m_valuesTable->setObjectName(QStringLiteral("blockValues"));
  m_valuesTable->setAccessibleName(tr("The first blocks of the file"));
  m_valuesTable->setModel(m_values);
  m_valuesTable->setItemDelegate(new EnhancedTableDelegate(m_valuesTable));
  m_valuesTable->setSelectionMode(QAbstractItemView::SingleSelection);
  m_valuesTable->setTabKeyNavigation(false);
  m_valuesTable->setShowGrid(false);
  m_valuesTable->setAlternatingRowColors(true);
  m_valuesTable->setWordWrap(false);
  m_valuesTable->verticalHeader()->hide();
  m_valuesTable->horizontalHeader()->setHighlightSections(false);
  m_valuesTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  const int row = fontMetrics().height() + 6;
  m_valuesTable->verticalHeader()->setMinimumSectionSize(row);
  m_valuesTable->verticalHeader()->setDefaultSectionSize(row);
  m_valuesTable->horizontalHeader()->setFixedHeight(row);
  m_valuesTable->setFixedHeight((1 + kShownBlocks) * row + 2 * m_valuesTable->frameWidth());
  m_valuesTable->hide();
  box.layout()->addWidget(m_valuesTable);
}

void BlockFilterPage::fitBlockValues() {
  m_valuesTable->resizeColumnsToContents();
  for (int column = 0; column < m_values->columnCount(); ++column) {
    m_valuesTable->setColumnWidth(column, m_valuesTable->columnWidth(column) + kColumnGap);
  }
}

void BlockFilterPage::addVariables() {
  QGroupBox* box = group(tr("What the expression knows of a block"));
  m_table = new MyTable(box);
  m_table->setObjectName(QStringLiteral("blockVariables"));
  m_table->setAccessibleName(tr("Variables of the block filter"));
  m_table->setModel(m_model);
  m_table->setItemDelegate(new EnhancedTableDelegate(m_table));
  m_table->setTabKeyNavigation(false);
  m_table->verticalHeader()->hide();
  m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
  m_table->setFixedHeight(7 * fontMetrics().height());  // its buttons stay in sight
  m_newColumn = new QComboBox(box);
  m_newColumn->setObjectName(QStringLiteral("cmbNewVariable"));
  m_newColumn->setAccessibleName(tr("Column of the file"));
  m_newColumn->setEditable(true);
  m_newColumn->setInsertPolicy(QComboBox::NoInsert);
  m_newColumn->setMinimumContentsLength(10);
  m_newColumn->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  QPushButton* add = pushButton("pbAddInput", tr("Add"));
  QPushButton* remove = pushButton("pbRemoveInput", tr("Remove"));
  QPushButton* up = pushButton("pbUpInput", tr("Up"));
  QPushButton* down = pushButton("pbDownInput", tr("Down"));
  add->setIcon(icon(IconName::add));
  remove->setIcon(icon(IconName::remove));
  up->setIcon(icon(IconName::up));
  down->setIcon(icon(IconName::down));
  connect(add, &QPushButton::clicked, this, &BlockFilterPage::addColumn);
  connect(remove, &QPushButton::clicked, this,
          [this] { m_model->remove(m_table->selectedRows()); });
  const auto move = [this](int step) {
    const int row = m_table->currentRow();
    if (m_model->move(row, step)) {
      m_table->setCurrentCell(row + step, BlockVariablesModel::kName);
    }
  };
  connect(up, &QPushButton::clicked, this, [move] { move(-1); });
  connect(down, &QPushButton::clicked, this, [move] { move(1); });
  m_addRowNumbers = checkBox("cbAddN", tr("add '_n_min' and '_n_max' as input vars"),
                             tr("The numbers of the block's first and last row, from 0."));
  box->layout()->addWidget(m_table);
  box->layout()->addWidget(rowOf({m_newColumn, add}, box));
  box->layout()->addWidget(rowOf({remove, up, down}, box));
  box->layout()->addWidget(choiceRow(m_addRowNumbers));
}

void BlockFilterPage::addTime() {
  m_timeButton = new QToolButton(this);
  m_timeButton->setObjectName(QStringLiteral("tbTime"));
  m_timeButton->setText(tr("&Dates and times"));
  m_timeButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  m_timeButton->setArrowType(Qt::RightArrow);
  m_timeButton->setAutoRaise(true);
  m_timeButton->setCheckable(true);
  m_timeButton->setFocusPolicy(Qt::StrongFocus);
  m_time = new TimeParametersPanel(this);
  m_time->setExpansion([this](const QString& text) { return m_action.expandString(text); });
  m_time->hide();
  pageLayout()->addWidget(m_timeButton);
  pageLayout()->addWidget(m_time);
  connect(m_timeButton, &QToolButton::toggled, this, [this](bool isOpen) {
    m_time->setVisible(isOpen);
    m_timeButton->setArrowType(isOpen ? Qt::DownArrow : Qt::RightArrow);
  });
  connect(m_time, &TimeParametersPanel::changed, this, &BlockFilterPage::edit);
}

void BlockFilterPage::edit() {
  m_isEdited = true;
  emit changed();
}

void BlockFilterPage::addColumn() {
  const QString column = m_newColumn->currentText().trimmed();
  if (!column.isEmpty()) {
    m_table->setCurrentCell(m_model->add(column), BlockVariablesModel::kName);
    m_table->resizeColumnsToContents();
  }
}

void BlockFilterPage::load(const ReadColumnarSettings& settings, const BlockFilter& filter) {
  m_isEdited = false;
  m_loaded = filter.expression;
  m_isApplied->setChecked(settings.filterRows);
  m_blocksAhead->setValue(settings.blocksAhead);
  if (m_field->expression() != filter.expression) {
    m_field->setExpression(filter.expression);
  }
  m_addRowNumbers->setChecked(filter.addRowNumbers);
  m_time->setParameters(filter.time);
  m_model->setVariables(filter.variables);
  m_table->resizeColumnsToContents();
  setFormula();
}

void BlockFilterPage::store(ReadColumnarSettings& settings) const {
  settings.filterRows = m_isApplied->isChecked();
  storeNumber(*m_blocksAhead, settings.blocksAhead);
}

BlockFilter BlockFilterPage::filter() const {
  BlockFilter filter;
  filter.expression = m_field->expression();
  filter.addRowNumbers = m_addRowNumbers->isChecked();
  filter.time = m_time->parameters();
  filter.variables = m_model->variables();
  return filter;
}

bool BlockFilterPage::isEdited(const BlockFilter& loaded) const {
  return m_isEdited || m_field->expression() != loaded.expression ||
         m_addRowNumbers->isChecked() != loaded.addRowNumbers;
}

// Names of columns that are no variables yet are offered as if they were columns of the input.
void BlockFilterPage::setFormula() {
  const BlockFilter shown = filter();
  Formula formula;
  formula.use = ResultUse::anyValue;
  formula.options.addN = false;
  formula.options.time = shown.time;
  formula.variables = inputsOf(shown);
  if (m_action.globalParameters() != nullptr) {
    formula.parameters = *m_action.globalParameters();
  }
  formula.columns.isKnown = true;
  for (const InputVariable& input : m_model->offeredInputs()) {
    formula.columns.columns.push_back(
        {input.label, input.isNumber ? MetaTypeColumn::number : MetaTypeColumn::text});
  }
  m_field->setFormula(formula);
}

void BlockFilterPage::takeAnswer(const FormulaAnswer& answer) {
  m_values->setExpression(m_field->expression());
  fitBlockValues();
  if (m_verdict->isRefused(answer) || !answer.isComplete) {
    m_trial->clear();
    m_values->forgetVerdicts();
    return;
  }
  emit trialWanted();
}

void BlockFilterPage::setFile(const TableSummary* summary) {
  const QString typed = m_newColumn->currentText();
  m_newColumn->clear();
  if (summary != nullptr) {
    for (const TableSummary::Column& column : summary->columns) {
      m_newColumn->addItem(column.name);
    }
  }
  if (!typed.isEmpty()) {
    m_newColumn->setCurrentText(typed);
  }
  m_model->setFile(summary);
  m_values->clear();
  m_valuesTable->setVisible(summary != nullptr);
  m_table->resizeColumnsToContents();
  setFormula();
}

void BlockFilterPage::showTrial(const BlockFilterTrial& trial, const ShownText& words) {
  m_values->setTrial(trial);
  fitBlockValues();
  m_trial->setMessage(words.severity, words.text);
}

void BlockFilterPage::showNoTrial(const ShownText& why) {
  m_values->forgetVerdicts();
  m_trial->setMessage(why.severity, why.text);
}

}  // namespace kelvarin
