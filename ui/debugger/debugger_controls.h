// The buttons of a step debugger and its rules to stop.
//
// Used by DebuggerPanel, which says what they do.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QWidget>

#include "ui/debugger/debug_rules.h"
#include "ui/language/formula.h"

class QCheckBox;
class QComboBox;
class QPushButton;
class QSpinBox;

namespace kelvarin {

class ExpressionField;
class FlowLayout;
class IconButton;

// What the buttons read in one editor.
struct DebuggerTexts {
  QString start;
  QString stop;
  QString next;
};

class DebuggerControls : public QWidget {
  Q_OBJECT

 public:
  // What can be done now.
  struct Possible {
    bool isExpert = true;
    bool isRunning = false;
    bool isWaiting = false;
    bool hasEarlierRow = false;  // before the one that is shown
    bool hasLaterRow = false;
  };

  DebuggerControls(const DebuggerTexts& texts, QWidget* parent);

  // Puts the editor's own button before the others.
  void addCheckButton(QPushButton* check);
  void setPossible(const Possible& possible);
  // Of vectors; 0: there are none, and no choice.
  void setElementCount(int count);
  int element() const;
  // Chosen elsewhere, before or after it is known how many there are.
  void setElement(int element);
  // Of the breakpoint; empty where it is off.
  QString condition() const;
  // What the condition may refer to.
  void setConditionFormula(const Formula& formula);
  // To go on to what is chosen.
  DebugRules rules() const;
  // To go on to the breakpoint alone.
  DebugRules breakpointRules() const;
  // On or off; where there is no condition yet, its field gets the focus.
  void toggleBreakpoint();

 signals:
  void startOrStopWanted();
  void nextWanted();
  void pauseWanted();
  void backWanted();
  void forwardWanted();
  void runToWanted();
  // Of a condition that is being typed at the end of editing.
  void conditionChanged();
  void elementChanged(int element);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QWidget* makeSteps(const DebuggerTexts& texts);
  QWidget* makeRules();
  void fitCondition();
  void showTarget();

  DebuggerTexts m_texts;
  FlowLayout* m_steps = nullptr;
  QPushButton* m_startStop = nullptr;
  QPushButton* m_next = nullptr;
  QPushButton* m_pause = nullptr;
  IconButton* m_back = nullptr;
  IconButton* m_forward = nullptr;
  QCheckBox* m_breaks = nullptr;
  ExpressionField* m_condition = nullptr;
  QComboBox* m_target = nullptr;
  QSpinBox* m_row = nullptr;
  QPushButton* m_runTo = nullptr;
  QWidget* m_elementGroup = nullptr;
  QSpinBox* m_element = nullptr;
  int m_chosenElement = 0;
  std::vector<QWidget*> m_expertOnly;
};

}  // namespace kelvarin
