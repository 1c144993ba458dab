// What the user sees of a step debugger: its buttons, rules to stop, the variables and the parts of
// the expression with their values, and the rows that went by.
//
// Used by the editors of expression actions, which show the values of the row in their own tables.
// Keys: F5 starts and goes on, Shift+F5 stops, F10 next row, Shift+F10 and Ctrl+Shift+F10 back and
// forth in the rows that went by, Ctrl+F10 runs to what is chosen, F9 breakpoint.
// Threads: the user-interface thread; parts are evaluated beside it.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <QStringList>
#include <QWidget>

#include "ui/debugger/debug_session.h"
#include "ui/debugger/debugger_controls.h"
#include "ui/language/formula.h"
#include "ui/language/formula_answer.h"
#include "ui/language/formula_service.h"

class QShortcut;

namespace kelvarin {

class DebuggerViews;
class InfoLine;

class DebuggerPanel : public QWidget {
  Q_OBJECT

 public:
  // `formula`: the expression that is looked at, as the editor has it now. The session outlives the
  // panel.
  DebuggerPanel(DebugSession& session, const DebuggerTexts& texts, std::function<Formula()> formula,
                QWidget* parent = nullptr);
  ~DebuggerPanel() override;

  // Stands before the panel's own buttons.
  void addCheckButton(QPushButton* check) { m_controls->addCheckButton(check); }
  // The keys act where the focus is in this widget or below it; at first in the panel itself.
  void setKeyOwner(QWidget* owner);
  // The debug controls work in the expert mode only.
  void setExpertMode(bool isExpert);
  // Variables that a debug run lacks, since they come from a table that it does not read.
  void setLackingVariables(const QStringList& names);
  // What the action computes, as the condition of a breakpoint may name it before the first row.
  void setOutputs(const std::vector<OutputVariable>& outputs);
  // Of vectors, whose values are shown.
  void setElement(int element) { m_controls->setElement(element); }
  // Another expression is looked at, or it was edited.
  void formulaChanged();

  // What pbStartStop and pbNext do.
  void startOrStop();
  void next();
  // Starts and stops at the row with this number, counted from 0; a run that goes on ends first.
  void runToRow(long long row);
  // Shows the latest row; the values go to the variable table, too. Both are connected to the
  // session.
  void updateOutputVars();
  void finishComputations();

 signals:
  // The values of the row that is shown now, for the column "Value (debug):" and the parts under
  // the pointer, of vectors those of the chosen element; empty: none.
  void rowShown(const std::vector<kelvarin::VariableValue>& variables);
  // pbStartStop was pressed where nothing ran; the editor commits its fields first.
  void aboutToStart();
  // At the first run: there is use for more height.
  void tablesShown();
  void elementChosen(int element);
  // A part of the expression was chosen in the tree.
  void partChosen(qsizetype start, qsizetype size);
  // The variables of setLackingVariables() are to be read from their table.
  void lackingVariablesWanted();
  // What makes the expression one that can be debugged.
  void fixWanted(const kelvarin::QuickFix& fix);

 private:
  void connectControls();
  void addKey(const QKeySequence& key, const QString& what, const std::function<void()>& act);

  // With the rules of the panel, or stepping.
  void start(const std::optional<DebugRules>& rules);
  void stop();
  void startOrGoOn();
  void runTo();
  bool canBeDebugged();

  void showControls();
  void showStatus();
  void showRow(std::size_t index);
  void showNoRow();
  void moveBy(int rows);
  void askForParts();
  void showParts(const PartValues& values);
  void showNotes();
  QString engineNote() const;
  void showConditionNames();
  std::vector<VariableValue> knownResults() const;
  int shownElement() const { return m_elementCount > 0 ? m_controls->element() : -1; }

  DebugSession& m_session;
  std::function<Formula()> m_formula;
  FormulaService m_service;
  quint64 m_asked = 0;  // the version of the latest question
  DebugState m_state;
  std::size_t m_shown = 0;  // its index in the rows of m_state
  int m_elementCount = 0;
  bool m_isExpert = true;
  bool m_hasEnded = false;
  bool m_isStopping = false;
  long long m_rowAfterStop = -1;  // to run to when the run has ended; -1: none
  QStringList m_lacking;
  std::vector<OutputVariable> m_outputs;
  QuickFix m_fix;  // of an expression that cannot be debugged
  std::vector<QShortcut*> m_keys;

  DebuggerControls* m_controls;
  InfoLine* m_status;
  InfoLine* m_notes;
  DebuggerViews* m_views;
};

}  // namespace kelvarin
