#include "ui/debugger/history_model.h"

#include <QFont>

#include "host/widgets/icons.h"
#include "ui/debugger/debugger_texts.h"
#include "ui/debugger/row_values.h"
#include "ui/language/shown_value.h"
#include "ui/widgets/cell_roles.h"

namespace kelvarin {

namespace {

QString quoted(QString text) {
  return u'"' + text.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

QString csvOf(const ExpressionValue* value) {
  if (value == nullptr || value->isNull()) {
    return {};
  }
  const QString text = shownValue(*value).whole;
  return value->type == ExpressionValue::Type::text ? quoted(text) : text;
}

QString failuresOf(const DebuggedRow& row) {
  QStringList texts;
  for (const ObservedFailure& failure : row.row.failures) {
    texts += failure.text;
  }
  return texts.join(u'\n');
}

}  // namespace

void HistoryModel::setRows(const RowHistory& rows) {
  beginResetModel();
  m_rows = rows;
  m_names = rows.isEmpty() ? nullptr : rows.newest()->row.names;
  endResetModel();
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

// The last one is for failures.
int HistoryModel::columnCount(const QModelIndex& parent) const {
  if (parent.isValid() || m_names == nullptr) {
    return 0;
  }
  return fixedColumns + static_cast<int>(m_names->variables.size()) +
         static_cast<int>(m_names->results.size()) + 1;
}

const ExpressionValue* HistoryModel::valueAt(const DebuggedRow& row, int column) const {
  if (column < fixedColumns) {
    return nullptr;
  }
  auto at = static_cast<std::size_t>(column - fixedColumns);
  const std::size_t variables = m_names->variables.size();
  const std::vector<ExpressionValue>& values = at < variables ? row.row.variables : row.row.results;
  at = at < variables ? at : at - variables;
  return at < values.size() ? &values[at] : nullptr;
}

QString HistoryModel::textAt(const DebuggedRow& row, int column) const {
  if (column == numberColumn) {
    return QString::number(row.row.number);
  }
  if (column == reasonColumn) {
    return debugger_texts::reason(row.reason);
  }
  return column == columnCount() - 1 ? failuresOf(row) : QString();
}

// Of results, the newest row shows whether they are numbers.
int HistoryModel::alignmentOf(int column) const {
  const ExpressionValue* value = m_rows.isEmpty() ? nullptr : valueAt(*m_rows.newest(), column);
  const bool isNumber =
      column == numberColumn || (value != nullptr && value->type == ExpressionValue::Type::number);
  return int(Qt::AlignVCenter) | int(isNumber ? Qt::AlignRight : Qt::AlignLeft);
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const DebuggedRow& row = rowAt(index.row());
  if (role == Qt::TextAlignmentRole) {
    return alignmentOf(index.column());
  }
  if (const ExpressionValue* value = valueAt(row, index.column())) {
    const ShownValue shown = shownValue(*value);
    switch (role) {
      case Qt::DisplayRole:
        return shown.text;
      case Qt::ToolTipRole:
        return shown.whole;
      case kValueKindRole:
        return static_cast<int>(shown.kind);
      case Qt::FontRole: {  // bold: another value than in the row before
        if (index.row() == 0) {
          return {};
        }
        const ExpressionValue* before = valueAt(rowAt(index.row() - 1), index.column());
        QFont font;
        font.setBold(before != nullptr && !isSameValue(*before, *value));
        return font;
      }
      default:
        return {};
    }
  }
  const QString text = textAt(row, index.column());
  switch (role) {
    case Qt::DisplayRole:
      return text.section(u'\n', 0, 0);
    case Qt::ToolTipRole:
      return text;
    case Qt::DecorationRole:
      return index.column() == columnCount() - 1 && !text.isEmpty()
                 ? QVariant(icon(Severity::error))
                 : QVariant();
    default:
      return {};
  }
}

QString HistoryModel::name(int column) const {
  if (column == numberColumn) {
    return tr("Row");
  }
  if (column == reasonColumn) {
    return tr("Stopped");
  }
  if (column == columnCount() - 1) {
    return tr("Failure");
  }
  const auto at = static_cast<std::size_t>(column - fixedColumns);
  if (at >= m_names->variables.size()) {
    return m_names->results[static_cast<qsizetype>(at - m_names->variables.size())];
  }
  const ShownVariable& variable = m_names->variables[at];
  return variable.element < 0 ? variable.name
                              : QStringLiteral("%1[%2]").arg(variable.name).arg(variable.element);
}

QVariant HistoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole) {
    return alignmentOf(section);
  }
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  return name(section);
}

QString HistoryModel::csv() const {
  QString lines;
  const int columns = columnCount();
  for (int row = -1; row < rowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < columns; ++column) {
      if (row < 0) {
        cells += quoted(name(column));
        continue;
      }
      const bool isFixed = column < fixedColumns || column == columns - 1;
      const QString text = isFixed ? textAt(rowAt(row), column) : QString();
      cells += !isFixed                 ? csvOf(valueAt(rowAt(row), column))
               : column == numberColumn ? text
                                        : quoted(text);
    }
    lines += cells.join(u',') + u'\n';
  }
  return lines;
}

}  // namespace kelvarin
