// The frame of the two expression editors: tabs, the expression with its variables, settings, help,
// commit, validation, and the step debugger.
//
// A derived editor fills its controls in load(), and writes what differs in store(). Nothing is
// written while the controls are filled, nor during a debug run, which runs the action itself:
// edits of that time are committed at its end.
// Threads: the user-interface thread.
#pragma once

#include "actions/frame/expression_action.h"
#include "host/widgets/user_interface.h"
#include "ui/debugger/debugger_panel.h"
#include "ui/editors/evaluation_page.h"
#include "ui/editors/expression_validation.h"
#include "ui/language/input_rows.h"
#include "ui/panels/variables_model.h"
#include "ui/widgets/expression_field.h"

class QLineEdit;
class QPushButton;
class QTabWidget;
class QVBoxLayout;

namespace kelvarin {

class InfoLine;
class Interface_mathParserHelp;
class VariablesPanel;

class ExpressionActionEditor : public UpdateClassWidget {
  Q_OBJECT

 public:
  ExpressionActionEditor(QWidget* parent, ExpressionAction& action,
                         const EvaluationPage::Sections& sections);
  ~ExpressionActionEditor() override;

  QMap<QString, QString> uncommittedState() const override;
  void commit() override;
  // Columns, rows or a verdict are being found out.
  virtual bool isBusy() const { return m_inputRows->isBusy() || m_validation->isBusy(); }

 public slots:
  // Puts the input variable into the expression.
  void on_insertVar(int variable);
  void on_pbStartStop_clicked();
  void on_pbNext_clicked();
  void updateOutputVars();
  // Commits what was edited during the run.
  void finishComputations();

 signals:
  // Of a debug run, as its session emits them.
  void rowDataUpdated();
  void computationFinished();

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

  // What the expression in the field may refer to, and the expression itself.
  virtual Formula formula() const;
  // Fills the controls of the derived editor.
  virtual void load() = 0;
  // Writes what differs of the derived editor's controls, but for expressions. False: nothing.
  virtual bool store() = 0;
  // At the end of editing the expression.
  virtual void commitExpression() = 0;
  // F7.
  virtual void checkExpressions() = 0;
  // All that may name columns.
  virtual QStringList expressions() const { return {m_field->expression()}; }
  virtual void showVerdict(int index, const FormulaAnswer* failure) = 0;

  // For the constructors of derived editors: the page of the first tab, then the other tabs.
  QVBoxLayout* addExpressionPage(const QString& title);
  QWidget* fieldAndVariables();
  QPushButton* checkButton();
  QWidget* makeDebugger(const DebuggerTexts& texts);
  // A line of text that is committed at the end of editing.
  QLineEdit* noteField(const char* name, const QString& accessibleName);
  void addOtherPages();

  void reload();
  void commitChanges();
  // The settings as the controls have them; the derived editor's are its own.
  EvaluationOptions options() const { return m_settings->options(m_action.options()); }
  // Style, focus and dialog for a failure of the expression in the field; null: it passed.
  void showFieldVerdict(const FormulaAnswer* failure);
  virtual void updateFormula();
  // Its edits are committed at the end of the run.
  bool isDebugging() const { return m_session->isRunning(); }
  void showExpressionPage();
  bool isLoading() const { return m_isLoading; }
  // Of fields: what differs from the text that was committed last is not committed yet.
  void setCommitted(const QString& field, const QString& text) { m_committed[field] = text; }
  bool isCommitted(const QString& field, const QString& text) const {
    return m_committed.value(field) == text;
  }
  EvaluationPage& settingsPage() { return *m_settings; }

  ExpressionField* m_field;
  VariablesModel* m_variables;
  ExpressionValidation* m_validation;
  InputRows* m_inputRows;
  DebuggerPanel* m_debugger = nullptr;

 private:
  void connectField();
  void connectVariables();
  void connectSettings();
  void takeInput();
  bool storeCommon();
  void setErrorPolicy(bool abortWhenError);
  void showPending();
  void showHelp(const QString& name);
  bool isHelpShown() const;
  // F7: the verdict is wanted, wherever the user is.
  void checkNow();
  QMap<QString, QString> texts() const;

  ExpressionAction& m_action;
  DebugSession* m_session;
  InfoLine* m_pending;
  QTabWidget* m_tabs;
  EvaluationPage* m_settings;
  VariablesPanel* m_variablesPanel;
  Interface_mathParserHelp* m_help;
  QList<QLineEdit*> m_notes;
  QMap<QString, QString> m_committed;
  bool m_isLoading = false;
  bool m_areVariablesEdited = false;
  bool m_areOptionsEdited = false;
  bool m_isErrorPolicyEdited = false;
  std::vector<VariableValue> m_currentRow;  // of the debugger
};

// The name of the expression among the fields of uncommittedState().
inline const QString kExpressionField = QStringLiteral("expression");

}  // namespace kelvarin
