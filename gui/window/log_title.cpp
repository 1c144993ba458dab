#include "gui/window/log_title.h"

#include <QDockWidget>

#include "gui/log/log_model.h"

namespace kelvarin {

LogTitle::LogTitle(QDockWidget& dock, const LogModel& model)
    : QObject(&dock), m_dock(dock), m_model(model) {
  connect(&model, &QAbstractItemModel::rowsInserted, this,
          [this](const QModelIndex&, int first, int last) { addRows(first, last); });
  connect(&model, &QAbstractItemModel::rowsRemoved, this, &LogTitle::startAgain);
  connect(&model, &QAbstractItemModel::modelReset, this, &LogTitle::startAgain);
}

void LogTitle::startAgain() {
  m_errors = 0;
  m_warnings = 0;
  addRows(0, m_model.rowCount() - 1);
}

void LogTitle::addRows(int first, int last) {
  for (int row = first; row <= last; ++row) {
    const LogLevel level = m_model.entry(row).level;
    m_errors += level == LogLevel::error ? 1 : 0;
    m_warnings += level == LogLevel::warning ? 1 : 0;
  }
  show();
}

void LogTitle::show() {
  QStringList counts;
  if (m_errors > 0) {
    counts += tr("errors: %1").arg(m_errors);
  }
  if (m_warnings > 0) {
    counts += tr("warnings: %1").arg(m_warnings);
  }
  m_dock.setWindowTitle(counts.isEmpty() ? tr("Log")
                                         : tr("Log (%1)").arg(counts.join(QStringLiteral(", "))));
}

}  // namespace kelvarin
