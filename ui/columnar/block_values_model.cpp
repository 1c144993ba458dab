#include "ui/columnar/block_values_model.h"

#include <algorithm>
#include <numeric>

#include <QFont>

#include "expression/tokens/expression_tokens.h"
#include "ui/columnar/summary_texts.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/cell_roles.h"

namespace kelvarin {

namespace {

// In the order in which the expression names them.
std::vector<std::size_t> namedVariables(const QStringList& variables, const QString& expression) {
  std::vector<std::size_t> named;
  const ExpressionTokens tokens(expression);
  for (const Token& token : tokens) {
    const qsizetype found =
        token.kind == TokenKind::name ? variables.indexOf(tokens.text(token).toString()) : -1;
    const auto index = static_cast<std::size_t>(found);
    if (found >= 0 && std::find(named.begin(), named.end(), index) == named.end()) {
      named.push_back(index);
    }
  }
  return named;
}

}  // namespace

void BlockValuesModel::setTrial(const BlockFilterTrial& trial) {
  beginResetModel();
  m_trial = trial;
  m_hasVerdicts = true;
  chooseVariables();
  endResetModel();
}

void BlockValuesModel::setExpression(const QString& expression) {
  if (expression == m_expression) {
    return;
  }
  beginResetModel();
  m_expression = expression;
  chooseVariables();
  endResetModel();
}

void BlockValuesModel::forgetVerdicts() {
  m_hasVerdicts = false;
  if (rowCount() > 0) {
    emit dataChanged(index(0, kVerdict), index(rowCount() - 1, kVerdict));
  }
}

void BlockValuesModel::chooseVariables() {
  m_shown = namedVariables(m_trial.variables, m_expression);
  if (m_shown.empty()) {
    m_shown.resize(static_cast<std::size_t>(m_trial.variables.size()));
    std::iota(m_shown.begin(), m_shown.end(), std::size_t{0});
  }
}

int BlockValuesModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_trial.firstBlocks.size());
}

int BlockValuesModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kFixedColumns + static_cast<int>(m_shown.size());
}

QVariant BlockValuesModel::fixedData(const BlockFilterTrial::Block& block, int column,
                                     int role) const {
  if (column == kRows) {
    return role == Qt::DisplayRole
               ? tr("%1 to %2")
                     .arg(countText(block.firstRow), countText(block.firstRow + block.rowCount - 1))
               : QVariant();
  }
  if (!m_hasVerdicts) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    return block.isSkipped ? tr("skipped") : tr("read");
  }
  if (role == Qt::FontRole && !block.isSkipped) {
    QFont font;
    font.setBold(true);
    return font;
  }
  const bool isUnknown = block.values.empty() && !m_trial.variables.isEmpty();
  return role == Qt::ToolTipRole && isUnknown
             ? tr("Read in any case, since its statistics say nothing about its values.")
             : QVariant();
}

int BlockValuesModel::alignmentOf(std::size_t variable) const {
  const bool isNumber =
      std::any_of(m_trial.firstBlocks.begin(), m_trial.firstBlocks.end(),
                  [variable](const BlockFilterTrial::Block& block) {
                    return variable < block.values.size() &&
                           block.values[variable].type == ExpressionValue::Type::number;
                  });
  return int(Qt::AlignVCenter) | int(isNumber ? Qt::AlignRight : Qt::AlignLeft);
}

QVariant BlockValuesModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const BlockFilterTrial::Block& block = m_trial.firstBlocks[static_cast<std::size_t>(index.row())];
  if (index.column() < kFixedColumns) {
    return fixedData(block, index.column(), role);
  }
  const std::size_t variable = m_shown[static_cast<std::size_t>(index.column() - kFixedColumns)];
  if (variable >= block.values.size()) {
    return role == Qt::DisplayRole ? tr("unknown") : QVariant();
  }
  const ExpressionValue& value = block.values[variable];
  switch (role) {
    case Qt::DisplayRole:
      return shownValue(value).text;
    case Qt::ToolTipRole:
      return shownValue(value).whole;
    case kValueKindRole:
      return static_cast<int>(shownValue(value).kind);
    case Qt::TextAlignmentRole:
      return alignmentOf(variable);
    default:
      return {};
  }
}

QVariant BlockValuesModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) {
    return {};
  }
  if (section < kFixedColumns) {
    return role == Qt::DisplayRole ? (section == kRows ? tr("Rows") : tr("Block")) : QVariant();
  }
  const std::size_t variable = m_shown[static_cast<std::size_t>(section - kFixedColumns)];
  if (role == Qt::TextAlignmentRole) {
    return alignmentOf(variable);
  }
  return role == Qt::DisplayRole ? m_trial.variables[static_cast<qsizetype>(variable)] : QVariant();
}

}  // namespace kelvarin
