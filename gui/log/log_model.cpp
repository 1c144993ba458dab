#include "gui/log/log_model.h"

#include <algorithm>

#include "host/widgets/icons.h"

namespace kelvarin {

namespace {

Severity severityOf(LogLevel level) {
  switch (level) {
    case LogLevel::error:
      return Severity::error;
    case LogLevel::warning:
      return Severity::warning;
    case LogLevel::information:
      break;
  }
  return Severity::information;
}

}  // namespace

void LogModel::append(const std::vector<LogEntry>& entries) {
  const std::size_t skipped = entries.size() > kMaxLines ? entries.size() - kMaxLines : 0;
  const int added = static_cast<int>(entries.size() - skipped);
  const int excess = rowCount() + added - kMaxLines;
  if (excess > 0) {
    beginRemoveRows({}, 0, excess - 1);
    m_entries.erase(m_entries.begin(), m_entries.begin() + excess);
    endRemoveRows();
  }
  if (added > 0) {
    beginInsertRows({}, rowCount(), rowCount() + added - 1);
    m_entries.insert(m_entries.end(), entries.begin() + static_cast<std::ptrdiff_t>(skipped),
                     entries.end());
    endInsertRows();
  }
}

void LogModel::clear() {
  beginResetModel();
  m_entries.clear();
  endResetModel();
}

QString LogModel::asText(const QModelIndexList& rows) const {
  std::vector<int> numbers;
  for (const QModelIndex& index : rows) {
    numbers.push_back(index.row());
  }
  std::ranges::sort(numbers);
  QStringList lines;
  for (const int row : numbers) {
    const LogEntry& line = entry(row);
    const char* head = line.level == LogLevel::error     ? "error: "
                       : line.level == LogLevel::warning ? "warning: "
                                                         : "info: ";
    lines += QLatin1String(head) + line.text;
  }
  return lines.join(u'\n');
}

int LogModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

int LogModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columnCountOfLog;
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};  // a view copies its current item, even where it has none
  }
  const LogEntry& line = entry(index.row());
  if (role == Qt::DecorationRole && index.column() == level) {
    return icon(severityOf(line.level));
  }
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != Qt::AccessibleTextRole) {
    return {};
  }
  switch (index.column()) {
    case level:
      return line.level == LogLevel::error     ? tr("Error")
             : line.level == LogLevel::warning ? tr("Warning")
                                               : tr("Note");
    case action:
      return line.action;
    case time:
      return line.time.toString(QStringLiteral("HH:mm:ss"));
    default:
      // A cell shows one line; the tool tip has all of them.
      return role == Qt::DisplayRole ? QString(line.text).replace(u'\n', u' ') : line.text;
  }
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return {};
  }
  switch (section) {
    case level:
      return tr("Level");
    case action:
      return tr("Action");
    case time:
      return tr("Time");
    default:
      return tr("Text");
  }
}

}  // namespace kelvarin
