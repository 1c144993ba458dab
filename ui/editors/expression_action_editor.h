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
#include "ui/editors/committed_texts.h"
#include "ui/editors/evaluation_page.h"
#include "ui/editors/expression_validation.h"
#include "ui/language/input_rows.h"
#include "ui/panels/variables_model.h"
#include "ui/widgets/expression_field.h"

class QBoxLayout;
class QPushButton;
class QTabWidget;
class QVBoxLayout;

namespace kelvarin {

class InfoLine;
class Interface_mathParserHelp;
class NotesField;
class VariablesPanel;

class ExpressionActionEditor : public UpdateClassWidget {
  Q_OBJECT

 public:
  ExpressionActionEditor(QWidget* parent, ExpressionAction& action,
                         const EvaluationPage::Sections& sections);
  ~ExpressionActionEditor() override;

  QMap<QString, QString> uncommittedState() const override;
  void restoreUncommitted(const QMap<QString, QString>& texts) override;
  void commit() override;
  void showPosition(const QString& output, int position) override;
  bool stepToRow(long long row) override;
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
  // In the expressions that are not in the field.
  virtual void renameVariable(const QString&, const QString&) {}
  // Shows the expression of an output.
  virtual void showOutputNamed(const QString&) {}

  // For the constructors of derived editors: the page of the first tab, then the other tabs.
  QVBoxLayout* addExpressionPage(const QString& title);
  QWidget* fieldBeside(QWidget* other);
  QWidget* variablesPanel() const;
  // Of the height that the page has for both.
  static constexpr int kFieldShare = 1;
  static constexpr int kDebuggerShare = 1;
  // With the editor's check button before its own.
  void addDebugger(QBoxLayout& page, const DebuggerTexts& texts);
  // A field with its label, committed at the end of editing.
  QWidget* makeNotes(const char* name, const QString& label, const QString& accessibleName);
  void addOtherPages();
  // Its text is part of uncommittedState() until it is committed.
  void watch(const QString& field, CommittedTexts::Read text, CommittedTexts::Show show) {
    m_texts.add(field, std::move(text), std::move(show));
  }

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
  void showDebugger();
  bool isLoading() const { return m_isLoading; }
  void showHelp(const QString& name);
  CommittedTexts& texts() { return m_texts; }
  EvaluationPage& settingsPage() { return *m_settings; }

  ExpressionField* m_field;
  VariablesModel* m_variables;
  ExpressionValidation* m_validation;
  InputRows* m_inputRows;
  DebuggerPanel* m_debugger = nullptr;
  NotesField* m_notes = nullptr;

 private:
  void connectField();
  void connectVariables();
  void followRenaming(const QString& from, const QString& to);
  void connectSettings();
  void takeInput();
  bool storeCommon();
  void setErrorPolicy(bool abortWhenError);
  void showPending();
  bool isHelpShown() const;
  // F7: the verdict is wanted, wherever the user is.
  void checkNow();
  QPushButton* makeCheckButton();

  ExpressionAction& m_action;
  DebugSession* m_session;
  InfoLine* m_pending;
  QTabWidget* m_tabs;
  EvaluationPage* m_settings;
  VariablesPanel* m_variablesPanel;
  Interface_mathParserHelp* m_help;
  CommittedTexts m_texts;
  bool m_isLoading = false;
  bool m_areVariablesEdited = false;
  bool m_areOptionsEdited = false;
  bool m_isErrorPolicyEdited = false;
  std::vector<VariableValue> m_currentRow;  // of the debugger
};

// The name of the expression among the fields of uncommittedState().
inline const QString kExpressionField = QStringLiteral("expression");

}  // namespace kelvarin
