#include "gui/log/log_filter.h"

namespace kelvarin {

LogFilter::LogFilter(LogModel& model, QObject* parent)
    : QSortFilterProxyModel(parent), m_model(model) {
  setSourceModel(&model);
}

void LogFilter::setLeastLevel(LogLevel level) {
  m_leastLevel = level;
  invalidateFilter();
}

void LogFilter::setText(const QString& text) {
  m_text = text;
  invalidateFilter();
}

bool LogFilter::filterAcceptsRow(int row, const QModelIndex&) const {
  const LogEntry& line = m_model.entry(row);
  return line.level <= m_leastLevel &&  // the gravest one has the lowest number

         (m_text.isEmpty() || line.text.contains(m_text, Qt::CaseInsensitive) ||
          line.action.contains(m_text, Qt::CaseInsensitive));
}

}  // namespace kelvarin
