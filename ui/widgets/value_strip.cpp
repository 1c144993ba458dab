#include "ui/widgets/value_strip.h"

#include <algorithm>

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QStackedLayout>
#include <QTableView>

#include "expression/tokens/expression_tokens.h"
#include "host/widgets/icons.h"
#include "ui/language/sentence.h"
#include "ui/widgets/cell_roles.h"
#include "ui/widgets/enhanced_table_delegate.h"

namespace kelvarin {

namespace {

constexpr int kShownRows = 3;
constexpr int kMinimumRows = 2;
constexpr int kColumnGap = 12;

struct UsedVariable {
  QString name;
  int column = -1;  // of the rows; -1: it is not among them
};

// In the order in which the expression names them.
std::vector<UsedVariable> usedVariables(const Formula& formula) {
  QHash<QString, QString> columnOfName;
  for (const InputVariable& variable : formula.variables) {
    if (!variable.columns.isEmpty()) {
      columnOfName.insert(variable.name(), variable.columns.last());
    }
  }
  const auto& columns = formula.rows->columns().columns;
  std::vector<UsedVariable> used;
  const ExpressionTokens tokens(formula.output.expression);
  for (const Token& token : tokens) {
    const auto found = columnOfName.constFind(tokens.text(token).toString());
    if (token.kind != TokenKind::name || found == columnOfName.constEnd()) {
      continue;
    }
    const auto column = std::find_if(columns.begin(), columns.end(), [&](const auto& candidate) {
      return candidate.name == found.value();
    });
    used.push_back(
        {found.key(), column == columns.end() ? -1 : static_cast<int>(column - columns.begin())});
    columnOfName.erase(found);
  }
  return used;
}

bool hasRows(const Formula& formula) {
  return formula.rows != nullptr && formula.rows->rowCount() > 0;
}

}  // namespace

void ValueStripModel::setAnswer(const Formula& formula, const FormulaAnswer& answer) {
  beginResetModel();
  m_names.clear();
  m_rowNumbers.clear();
  m_rows.clear();
  if (hasRows(formula)) {
    const std::vector<UsedVariable> used = usedVariables(formula);
    for (const UsedVariable& variable : used) {
      m_names += variable.name;
    }
    m_names += formula.output.name.isEmpty() ? tr("result") : formula.output.name;
    for (std::size_t row = 0; row < formula.rows->rowCount(); ++row) {
      std::vector<Cell> cells;
      cells.reserve(used.size() + 1);
      for (const UsedVariable& variable : used) {
        cells.push_back(
            {variable.column < 0
                 ? ShownValue()
                 : shownValue(*formula.rows, row, static_cast<std::size_t>(variable.column))});
      }
      const long long number = formula.rows->firstRow() + static_cast<long long>(row);
      cells.push_back(resultOf(number, answer));
      m_rowNumbers.push_back(number);
      m_rows.push_back(std::move(cells));
    }
  }
  endResetModel();
}

// Empty while the expression is wrong, so that its variables stay in sight.
ValueStripModel::Cell ValueStripModel::resultOf(long long row, const FormulaAnswer& answer) {
  const auto found = std::find_if(answer.values.begin(), answer.values.end(),
                                  [row](const FormulaValue& value) { return value.row == row; });
  if (found == answer.values.end()) {
    return {{ShownValue::Kind::text, {}, {}}};
  }
  if (!found->failure.isEmpty()) {
    return {{ShownValue::Kind::text, tr("error"), found->failure}, true};
  }
  return {shownValue(found->value)};
}

// Nulls in a column of numbers stand where the numbers do.
int ValueStripModel::alignmentOf(std::size_t column) const {
  const bool hasNumbers =
      std::any_of(m_rows.begin(), m_rows.end(), [column](const std::vector<Cell>& row) {
        return row[column].value.kind == ShownValue::Kind::number;
      });
  return int(Qt::AlignVCenter) | int(hasNumbers ? Qt::AlignRight : Qt::AlignLeft);
}

int ValueStripModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int ValueStripModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_names.size());
}

QVariant ValueStripModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const Cell& cell =
      m_rows[static_cast<std::size_t>(index.row())][static_cast<std::size_t>(index.column())];
  switch (role) {
    case Qt::DisplayRole:
      return cell.value.text;
    case Qt::ToolTipRole:
      return cell.value.whole;
    case Qt::TextAlignmentRole:
      return alignmentOf(static_cast<std::size_t>(index.column()));
    case kValueKindRole:
      return static_cast<int>(cell.value.kind);
    case Qt::DecorationRole:
      return cell.isFailure ? QVariant(icon(Severity::error)) : QVariant();
    default:
      return {};
  }
}

QVariant ValueStripModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role == Qt::TextAlignmentRole && orientation == Qt::Horizontal) {
    return alignmentOf(static_cast<std::size_t>(section));
  }
  if (role != Qt::DisplayRole) {
    return {};
  }
  if (orientation == Qt::Vertical) {
    return QString::number(m_rowNumbers[static_cast<std::size_t>(section)]);
  }
  return m_names[section];
}

ValueStrip::ValueStrip(QWidget* parent)
    : QWidget(parent),
      m_model(new ValueStripModel(this)),
      m_table(new QTableView(this)),
      m_note(new QLabel(this)) {
  auto* layout = new QStackedLayout(this);
  layout->addWidget(m_note);
  layout->addWidget(m_table);
  m_note->setWordWrap(true);
  m_note->setTextFormat(Qt::PlainText);
  m_note->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  m_note->setForegroundRole(QPalette::PlaceholderText);
  m_table->setModel(m_model);
  m_table->setItemDelegate(new EnhancedTableDelegate(this));
  m_table->setAccessibleName(tr("Values of the first rows"));
  m_table->setSelectionMode(QAbstractItemView::SingleSelection);
  m_table->setTabKeyNavigation(false);
  m_table->setShowGrid(false);
  m_table->setAlternatingRowColors(true);
  m_table->setWordWrap(false);
  m_table->horizontalHeader()->setHighlightSections(false);
  m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  m_table->verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
  m_table->verticalHeader()->setToolTip(tr("The number of the row"));
  fitHeight();
}

void ValueStrip::setAnswer(const Formula& formula, const FormulaAnswer& answer) {
  m_model->setAnswer(formula, answer);
  auto* layout = static_cast<QStackedLayout*>(this->layout());
  const bool isTable = m_model->rowCount() > 0;
  if (!isTable) {
    m_note->setText(noteWithoutRows(formula, answer));
  } else {
    m_table->resizeColumnsToContents();
    for (int column = 0; column < m_model->columnCount(); ++column) {
      m_table->setColumnWidth(column, m_table->columnWidth(column) + kColumnGap);
    }
  }
  layout->setCurrentIndex(isTable ? 1 : 0);
}

void ValueStrip::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitHeight();
  }
}

void ValueStrip::fitHeight() {
  const int row = fontMetrics().height() + 6;
  m_table->verticalHeader()->setDefaultSectionSize(row);
  m_table->verticalHeader()->setMinimumSectionSize(row);
  m_table->horizontalHeader()->setFixedHeight(row);
  setMinimumHeight((1 + kMinimumRows) * row + 2 * m_table->frameWidth());
  setMaximumHeight((1 + kShownRows) * row + 2 * m_table->frameWidth());
}

QString noteWithoutRows(const Formula& formula, const FormulaAnswer& answer) {
  if (hasRows(formula)) {
    return {};
  }
  QString why = formula.columns.whyUnknown;
  if (formula.columns.isKnown && formula.rows != nullptr) {
    why = ValueStrip::tr("the input has none.");
  } else if (formula.columns.isKnown) {
    why = ValueStrip::tr("those of the input have not arrived.");
  } else if (why.isEmpty()) {
    why = ValueStrip::tr("the input of the action is not known.");
  }
  QString note = ValueStrip::tr("No rows yet: %1").arg(asSentence(why));
  if (answer.check.value) {
    note += u' ' + ValueStrip::tr("With the samples of the variables, the result is %1.")
                       .arg(shownValue(*answer.check.value).text);
  }
  return note;
}

}  // namespace kelvarin
