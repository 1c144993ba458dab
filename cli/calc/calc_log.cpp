#include "cli/calc/calc_log.h"

namespace kelvarin {

void CalcLog::logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                          const LogDetails& details) {
  if (m_isFirstLook && isLeftOut(level, details)) {
    return;
  }
  ProgramServices::logDetailed(level, m_labels == nullptr ? text : m_labels->asTyped(text), action,
                               details);
}

bool CalcLog::isLeftOut(LogLevel level, const LogDetails& details) {
  if (details.explains) {
    return !m_isErrorLast;
  }
  m_isErrorLast = level == LogLevel::error;
  return !m_isErrorLast;
}

}  // namespace kelvarin
