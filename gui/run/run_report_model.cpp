#include "gui/run/run_report_model.h"

#include <algorithm>
#include <numeric>

#include <QDir>
#include <QLocale>

#include "gui/run/action_states.h"

namespace kelvarin {

namespace {

// Of what the index of a detail carries: the action's row and one; 0 is an action's own.
quintptr idOfParent(int row) {
  return static_cast<quintptr>(row) + 1;
}

long long sum(const std::vector<long long>& rowsOfPins) {
  return rowsOfPins.empty() ? -1 : std::accumulate(rowsOfPins.begin(), rowsOfPins.end(), 0LL);
}

QString count(long long number) {
  return number < 0 ? QString() : QLocale().toString(number);
}

}  // namespace

void RunReportModel::setResult(const RunResult& result) {
  beginResetModel();
  m_rows.clear();
  const std::vector<ActionState> states = statesOf(result);
  for (std::size_t i = 0; i < states.size(); ++i) {
    m_rows.push_back(rowOf(result.actions[i], states[i]));
  }
  endResetModel();
}

void RunReportModel::clear() {
  beginResetModel();
  m_rows.clear();
  endResetModel();
}

RunReportModel::Row RunReportModel::rowOf(const ActionResult& action, const ActionState& state) {
  Row row;
  row.name = action.name;
  row.typeName = action.typeName;
  row.state = wordFor(state);
  row.message = state.message;
  row.rowsIn = sum(action.rowsIn);
  row.rowsOut = sum(action.rowsOut);
  row.seconds = action.seconds;
  row.details = detailsOf(action);
  return row;
}

QString RunReportModel::wordFor(const ActionState& state) {
  switch (state.kind) {
    case ActionState::Kind::done:
      return state.hasWarning ? tr("done, with a warning") : tr("done");
    case ActionState::Kind::failed:
      return tr("failed");
    default:
      return tr("stopped");
  }
}

std::vector<RunReportModel::Detail> RunReportModel::detailsOf(const ActionResult& action) {
  std::vector<Detail> details;
  details.reserve(action.report.outputs.size());
  for (const OutputReport& output : action.report.outputs) {
    details.push_back({textOf(output), {}});
  }
  if (action.report.outputs.empty()) {
    for (const QString& backend : action.backends) {
      details.push_back({backend, {}});
    }
  }
  if (action.report.blocksRead >= 0) {
    details.push_back({tr("%1 blocks read, %2 skipped by the block filter")
                           .arg(count(action.report.blocksRead),
                                count(std::max(0LL, action.report.blocksSkipped))),
                       {}});
  }
  for (const WrittenFile& file : action.files) {
    details.push_back({tr("%1, %2").arg(QDir::toNativeSeparators(file.path),
                                        QLocale().formattedDataSize(file.bytes)),
                       file.path});
  }
  return details;
}

QString RunReportModel::textOf(const OutputReport& output) {
  QString text =
      output.engine.isEmpty() ? output.name : tr("%1: %2").arg(output.name, output.engine);
  if (!output.slowedBy.isEmpty()) {
    text += tr(", because of '%1'").arg(output.slowedBy);
  } else if (!output.reason.isEmpty()) {
    text += QStringLiteral(" (%1)").arg(output.reason);
  }
  QStringList counts;
  if (output.nulls >= 0) {
    counts += tr("nulls: %1").arg(count(output.nulls));
  }
  if (output.nans >= 0) {
    counts += tr("NaN: %1").arg(count(output.nans));
  }
  if (output.failures >= 0) {
    counts += tr("failures: %1").arg(count(output.failures));
  }
  return counts.isEmpty() ? text : text + QStringLiteral("; ") + counts.join(QStringLiteral(", "));
}

double RunReportModel::rowsPerSecond(const Row& row) {
  const long long rows = std::max(row.rowsIn, row.rowsOut);
  return row.seconds > 0.0 && rows > 0 ? static_cast<double>(rows) / row.seconds : -1.0;
}

QString RunReportModel::cell(const Row& row, int column) const {
  switch (column) {
    case actionColumn:
      return row.name;
    case stateColumn:
      return row.state;
    case rowsInColumn:
      return count(row.rowsIn);
    case rowsOutColumn:
      return count(row.rowsOut);
    case timeColumn:
      return row.seconds < 0.0 ? QString()
                               : tr("%1 s").arg(QLocale().toString(row.seconds, 'f', 3));
    default:
      return rowsPerSecond(row) < 0.0 ? QString() : QLocale().toString(rowsPerSecond(row), 'f', 0);
  }
}

QVariant RunReportModel::sortKey(const Row& row, int column) const {
  switch (column) {
    case rowsInColumn:
      return row.rowsIn;
    case rowsOutColumn:
      return row.rowsOut;
    case timeColumn:
      return row.seconds;
    case speedColumn:
      return rowsPerSecond(row);
    default:
      return cell(row, column);
  }
}

QString RunReportModel::asText() const {
  QString text;
  for (int column = 0; column < columnCountOfReport; ++column) {
    text += headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    text += column + 1 < columnCountOfReport ? u'\t' : u'\n';
  }
  for (const Row& row : m_rows) {
    for (int column = 0; column < columnCountOfReport; ++column) {
      text += cell(row, column) + (column + 1 < columnCountOfReport ? u'\t' : u'\n');
    }
    for (const Detail& detail : row.details) {
      text += QStringLiteral("    ") + detail.text + u'\n';
    }
  }
  return text;
}

QModelIndex RunReportModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) {
    return {};
  }
  return createIndex(row, column, parent.isValid() ? idOfParent(parent.row()) : quintptr{0});
}

QModelIndex RunReportModel::parent(const QModelIndex& index) const {
  return !index.isValid() || index.internalId() == 0
             ? QModelIndex()
             : createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr{0});
}

int RunReportModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) {
    return static_cast<int>(m_rows.size());
  }
  const bool isAction = parent.internalId() == 0 && parent.column() == 0;
  return isAction ? static_cast<int>(m_rows[static_cast<std::size_t>(parent.row())].details.size())
                  : 0;
}

int RunReportModel::columnCount(const QModelIndex&) const {
  return columnCountOfReport;
}

QVariant RunReportModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  const bool isAction = index.internalId() == 0;
  const Row& row =
      m_rows[isAction ? static_cast<std::size_t>(index.row()) : index.internalId() - 1];
  if (role == actionRole) {
    return row.name;
  }
  if (!isAction) {
    const Detail& detail = row.details[static_cast<std::size_t>(index.row())];
    if (role == fileRole) {
      return detail.file;
    }
    const bool isText = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    return isText && index.column() == 0 ? QVariant(detail.text) : QVariant();
  }
  switch (role) {
    case Qt::DisplayRole:
      return cell(row, index.column());
    case sortRole:
      return sortKey(row, index.column());
    case Qt::ToolTipRole:
      return index.column() == stateColumn && !row.message.isEmpty() ? row.message : row.typeName;
    case Qt::TextAlignmentRole:
      return static_cast<int>(index.column() < rowsInColumn ? Qt::AlignLeft | Qt::AlignVCenter
                                                            : Qt::AlignRight | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant RunReportModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) {
    return {};
  }
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>(section < rowsInColumn ? Qt::AlignLeft | Qt::AlignVCenter
                                                   : Qt::AlignRight | Qt::AlignVCenter);
  }
  if (role == Qt::ToolTipRole) {
    return section == timeColumn
               ? tr("Time that the action itself was at work, reading and writing "
                    "included; work on other threads is not counted")
               : QVariant();
  }
  if (role != Qt::DisplayRole) {
    return {};
  }
  switch (section) {
    case actionColumn:
      return tr("Action");
    case stateColumn:
      return tr("State");
    case rowsInColumn:
      return tr("Rows in");
    case rowsOutColumn:
      return tr("Rows out");
    case timeColumn:
      return tr("Time");
    default:
      return tr("Rows a second");
  }
}

}  // namespace kelvarin
