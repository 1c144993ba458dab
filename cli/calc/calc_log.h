// The log of a calculation, for somebody who has typed its expressions: names in backquotes are
// shown as such, and what a first look at the table has to say waits for the run, which says it
// again.
//
// Used by: calc_command.cpp, calculation_input.cpp.
// Threads: any; what is set is set between runs.
#pragma once

#include "cli/calc/column_labels.h"
#include "cli/program_services.h"

namespace kelvarin {

class CalcLog : public ProgramServices {
 public:
  using ProgramServices::ProgramServices;

  // Until the next call: errors and what explains them are all that is logged.
  void setFirstLook(bool isFirstLook) { m_isFirstLook = isFirstLook; }
  // Outlives the log.
  void setLabels(const ColumnLabels& labels) { m_labels = &labels; }

  void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                   const LogDetails& details) override;

 private:
  bool isLeftOut(LogLevel level, const LogDetails& details);

  bool m_isFirstLook = false;
  bool m_isErrorLast = false;  // in a first look, which works on one thread
  const ColumnLabels* m_labels = nullptr;
};

}  // namespace kelvarin
