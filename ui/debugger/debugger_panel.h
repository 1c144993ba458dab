// What the user sees of a step debugger: its buttons, rules to stop, the tree of the expression's
// parts with their values, and the rows that went by.
//
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <memory>

#include <QWidget>

#include "ui/debugger/debug_session.h"
#include "ui/language/formula.h"

namespace kelvarin {

// What the buttons read in one editor.
struct DebuggerTexts {
  QString start;
  QString stop;
  QString next;
};

class DebuggerPanel : public QWidget {
  Q_OBJECT

 public:
  // `formula`: the expression that is looked at, as the editor has it now.
  DebuggerPanel(DebugSession& session, const DebuggerTexts& texts, std::function<Formula()> formula,
                QWidget* parent = nullptr);
  ~DebuggerPanel() override;

  // The debug controls work in the expert mode only.
  void setExpertMode(bool isExpert);
  // Shows the latest row; the values go to the variable table, too.
  void updateOutputVars();
  void finishComputations();

 signals:
  // The values of the row that is shown now, for the column "Value (debug):"; empty: none.
  void rowShown(const std::vector<kelvarin::VariableValue>& variables);
  // pbStartStop was pressed where nothing ran; the editor commits its fields first.
  void aboutToStart();
  // A part of the expression was chosen in the tree.
  void partChosen(qsizetype start, qsizetype size);

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
