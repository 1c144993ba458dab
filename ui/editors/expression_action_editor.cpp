#include "ui/editors/expression_action_editor.h"

#include <utility>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

#include "actions/frame/renamed_variables.h"
#include "expression/options/evaluation_attributes.h"
#include "expression/tokens/expression_tokens.h"
#include "host/contract/main_ui.h"
#include "host/widgets/info_line.h"
#include "ui/editors/side_by_side.h"
#include "ui/help_browser/interface_math_parser_help.h"
#include "ui/panels/form_layout.h"
#include "ui/panels/notes_field.h"
#include "ui/panels/variables_panel.h"
#include "ui/widgets/k_plain_text_edit.h"
#include "ui/widgets/shrinking_column.h"

namespace kelvarin {

namespace {

QScrollArea* scrolled(QWidget* page, QWidget* parent) {
  auto* area = new QScrollArea(parent);
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(page);
  return area;
}

// So that what a user has asked for is seen on a small screen, too.
void scrollTo(QWidget* part) {
  for (QWidget* widget = part->parentWidget(); widget != nullptr; widget = widget->parentWidget()) {
    if (auto* area = qobject_cast<QScrollArea*>(widget)) {
      area->ensureWidgetVisible(part, 0, 0);
      return;
    }
  }
}

// At least one character.
qsizetype tokenSizeAt(const QString& expression, qsizetype position) {
  for (const Token& token : ExpressionTokens(expression)) {
    if (positionOf(token) == position) {
      return sizeOf(token);
    }
  }
  return 1;
}

}  // namespace

ExpressionActionEditor::ExpressionActionEditor(QWidget* parent, ExpressionAction& action,
                                               const EvaluationPage::Sections& sections)
    : UpdateClassWidget(parent),
      m_field(new ExpressionField(this)),
      m_variables(new VariablesModel(this)),
      m_validation(new ExpressionValidation(*this)),
      m_inputRows(new InputRows(action, 0, InputRows::kRows, this)),
      m_action(action),
      m_session(new DebugSession(action, this)),
      m_pending(new InfoLine(this)),
      m_tabs(new QTabWidget(this)),
      m_settings(new EvaluationPage(sections, this)),
      m_variablesPanel(new VariablesPanel(
          *m_variables, [this] { return expressions(); }, this)),
      m_help(new Interface_mathParserHelp(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kControlSpacing);
  layout->addWidget(m_pending);
  layout->addWidget(m_tabs);
  m_tabs->setObjectName(QStringLiteral("tabs"));
  m_tabs->setAccessibleName(tr("Parts of the editor"));
  m_tabs->setDocumentMode(true);
  m_field->setObjectName(kExpressionField);
  m_settings->setExpansion([this](const QString& text) { return m_action.expandString(text); });
  watch(
      kExpressionField, [this] { return m_field->expression(); },
      [this](const QString& text) { m_field->setExpression(text); });
  connectField();
  connectVariables();
  connectSettings();
  connect(m_inputRows, &InputRows::changed, this, &ExpressionActionEditor::takeInput);
}

// The debug run is of the action that others may delete next. A field that loses the focus while it
// goes away commits nothing.
ExpressionActionEditor::~ExpressionActionEditor() {
  delete std::exchange(m_debugger, nullptr);
  m_session->end();
  m_field->disconnect(this);
  m_variables->disconnect(this);
  delete std::exchange(m_variablesPanel, nullptr);  // it asks for the expressions
  m_settings->disconnect(this);
  m_notes->disconnect(this);
}

void ExpressionActionEditor::connectField() {
  connect(m_field, &ExpressionField::editingFinished, this, [this] {
    if (!m_isLoading && !isDebugging()) {
      commitExpression();
    }
  });
  connect(m_field->editor(), &QPlainTextEdit::textChanged, this, [this] {
    m_variablesPanel->updateMissingColumns();
    if (isDebugging()) {
      showPending();
    }
  });
  connect(m_field, &ExpressionField::columnWanted, this,
          [this](const QString& column) { m_variables->addColumns({column}); });
  connect(m_field, &ExpressionField::helpWanted, this, &ExpressionActionEditor::showHelp);
  connect(m_validation, &ExpressionValidation::passed, this,
          [this](int index) { showVerdict(index, nullptr); });
  connect(m_validation, &ExpressionValidation::failed, this,
          [this](int index, const FormulaAnswer& answer) { showVerdict(index, &answer); });
  connect(m_validation, &ExpressionValidation::goThere, this, [this](int position, int size) {
    showExpressionPage();
    window()->activateWindow();
    m_field->showPart(position, size);
  });
  connect(m_validation, &ExpressionValidation::nameChosen, this,
          [this](const QString& name, int position, int size) {
            showExpressionPage();
            m_field->showPart(position, size);
            m_field->insertText(name);
          });
}

void ExpressionActionEditor::connectVariables() {
  connect(m_variables, &VariablesModel::edited, this, [this] {
    m_areVariablesEdited = true;
    commitChanges();
    updateFormula();
  });
  connect(m_variables, &VariablesModel::renamed, this, &ExpressionActionEditor::followRenaming);
  connect(m_variablesPanel, &VariablesPanel::insertWanted, this,
          &ExpressionActionEditor::on_insertVar);
}

// Where the user is not typing, the new text is committed with the new name.
void ExpressionActionEditor::followRenaming(const QString& from, const QString& to) {
  renameVariable(from, to);
  const bool isCommitted = m_texts.isCommitted(kExpressionField);
  const QString renamed = withRenamedVariable(m_field->expression(), from, to);
  if (renamed == m_field->expression()) {
    return;
  }
  m_field->replaceExpression(renamed);
  if (isCommitted && !isDebugging()) {
    m_areVariablesEdited = true;
    commitChanges();
    commitExpression();
  }
}

void ExpressionActionEditor::connectSettings() {
  connect(m_settings, &SettingsPage::changed, this, [this] {
    if (m_isLoading) {
      return;
    }
    m_areOptionsEdited = true;
    commitChanges();
    m_variables->setRowNumberOffered(options().addN);
    updateFormula();
  });
  connect(m_settings, &EvaluationPage::errorPolicyChosen, this,
          &ExpressionActionEditor::setErrorPolicy);
}

// It changes no row that anyone sees now, so only the document is reported as modified.
void ExpressionActionEditor::setErrorPolicy(bool abortWhenError) {
  if (isDebugging()) {
    m_isErrorPolicyEdited = true;
    showPending();
    return;
  }
  EvaluationOptions changed = m_action.options();
  if (changed.abortWhenError == abortWhenError) {
    return;
  }
  changed.abortWhenError = abortWhenError;
  m_action.setOptions(changed);
  MainUI::documentWasModified();
}

QVBoxLayout* ExpressionActionEditor::addExpressionPage(const QString& title) {
  auto* page = new QWidget(this);
  auto* layout = new ShrinkingColumn(page);
  layout->setContentsMargins(12, 8, 12, 4);
  layout->setSpacing(8);
  m_tabs->addTab(scrolled(page, this), title);
  return layout;
}

QWidget* ExpressionActionEditor::fieldBeside(QWidget* other) {
  return new SideBySide(m_field, other, this);
}

QWidget* ExpressionActionEditor::variablesPanel() const {
  return m_variablesPanel;
}

QPushButton* ExpressionActionEditor::makeCheckButton() {
  auto* button = new QPushButton(tr("? (F7)"), this);
  button->setObjectName(QStringLiteral("pbCheck"));
  button->setAccessibleName(tr("Check (F7)"));
  button->setToolTip(tr("Checks what is written, and shows what is wrong with it."));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, &ExpressionActionEditor::checkNow);
  auto* shortcut = new QShortcut(QKeySequence(Qt::Key_F7), this);
  shortcut->setContext(Qt::WidgetWithChildrenShortcut);
  shortcut->setWhatsThis(tr("Check what is written"));
  connect(shortcut, &QShortcut::activated, this, &ExpressionActionEditor::checkNow);
  return button;
}

void ExpressionActionEditor::checkNow() {
  if (isHelpShown()) {
    showExpressionPage();
  }
  checkExpressions();
}

QWidget* ExpressionActionEditor::makeNotes(const char* name, const QString& labelText,
                                           const QString& accessibleName) {
  auto* line = new QWidget(this);
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2 * kControlSpacing);
  auto* label = new QLabel(labelText, line);
  m_notes = new NotesField(line);
  m_notes->setObjectName(QLatin1String(name));
  m_notes->setAccessibleName(accessibleName);
  label->setBuddy(m_notes);
  layout->addWidget(label, 0, Qt::AlignTop);
  layout->addWidget(m_notes, 1);
  // On one line with the first line of the notes.
  label->setContentsMargins(0, kControlSpacing, 0, 0);
  watch(
      m_notes->objectName(), [this] { return m_notes->toPlainText(); },
      [this](const QString& text) { m_notes->setNotes(text); });
  connect(m_notes, &NotesField::editingFinished, this, &ExpressionActionEditor::commitChanges);
  return line;
}

void ExpressionActionEditor::addDebugger(QBoxLayout& page, const DebuggerTexts& texts) {
  m_debugger = new DebuggerPanel(*m_session, texts, [this] { return formula(); }, this);
  m_debugger->setKeyOwner(this);
  m_debugger->addCheckButton(makeCheckButton());
  connect(m_debugger, &DebuggerPanel::aboutToStart, this, &ExpressionActionEditor::commit);
  connect(m_debugger, &DebuggerPanel::aboutToStart, this, &ExpressionActionEditor::showDebugger);
  connect(m_debugger, &DebuggerPanel::rowShown, this,
          [this](const std::vector<VariableValue>& values) {
            m_currentRow = values;
            m_field->setCurrentRow(values);
            m_variables->setDebugValues(values);
          });
  connect(m_debugger, &DebuggerPanel::partChosen, m_field, &ExpressionField::selectPart);
  connect(m_debugger, &DebuggerPanel::fixWanted, m_field, &ExpressionField::apply);
  connect(m_session, &DebugSession::rowDataUpdated, this, &ExpressionActionEditor::rowDataUpdated);
  connect(m_session, &DebugSession::computationFinished, this,
          &ExpressionActionEditor::computationFinished);
  connect(this, &ExpressionActionEditor::computationFinished, this,
          &ExpressionActionEditor::finishComputations, Qt::QueuedConnection);
  page.addWidget(m_debugger);
  connect(m_debugger, &DebuggerPanel::tablesShown, &page,
          [this, &page] { page.setStretchFactor(m_debugger, kDebuggerShare); });
}

// The expression above all: pointing at its parts shows their values in the row.
void ExpressionActionEditor::showDebugger() {
  scrollTo(m_debugger);
  scrollTo(m_field);
}

void ExpressionActionEditor::on_pbStartStop_clicked() {
  m_debugger->startOrStop();
}

void ExpressionActionEditor::on_pbNext_clicked() {
  m_debugger->next();
}

void ExpressionActionEditor::updateOutputVars() {
  m_debugger->updateOutputVars();
}

void ExpressionActionEditor::finishComputations() {
  if (m_debugger == nullptr) {
    return;
  }
  m_debugger->finishComputations();
  if (isDebugging()) {
    return;
  }
  if (std::exchange(m_isErrorPolicyEdited, false)) {
    setErrorPolicy(options().abortWhenError);
  }
  commit();
  m_pending->clear();
}

void ExpressionActionEditor::showPending() {
  m_pending->setMessage(Severity::information,
                        tr("What you change now takes effect at the next Start."));
}

// The mode has no signal; a user who changes it comes back to the window.
void ExpressionActionEditor::showEvent(QShowEvent* event) {
  UpdateClassWidget::showEvent(event);
  m_debugger->setExpertMode(MainUI::userMode() == GlobalUserMode::expert);
}

void ExpressionActionEditor::changeEvent(QEvent* event) {
  UpdateClassWidget::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && m_debugger != nullptr) {
    m_debugger->setExpertMode(MainUI::userMode() == GlobalUserMode::expert);
  }
}

void ExpressionActionEditor::addOtherPages() {
  m_tabs->addTab(scrolled(m_settings, this), tr("Settings"));
  m_tabs->addTab(m_help, tr("Help"));
  connect(m_help, &Interface_mathParserHelp::insertWanted, this, [this](const QString& text) {
    showExpressionPage();
    m_field->insertText(text);
  });
}

void ExpressionActionEditor::showExpressionPage() {
  m_tabs->setCurrentIndex(0);
}

bool ExpressionActionEditor::isHelpShown() const {
  return m_tabs->currentWidget() == m_help;
}

void ExpressionActionEditor::showHelp(const QString& name) {
  m_tabs->setCurrentWidget(m_help);
  m_help->showName(name);
}

void ExpressionActionEditor::on_insertVar(int variable) {
  const auto index = static_cast<std::size_t>(variable);
  if (variable >= 0 && index < m_variables->variables().size()) {
    m_field->insertVariable(m_variables->variables()[index].name());
  }
}

void ExpressionActionEditor::takeInput() {
  m_variablesPanel->setInputColumns(m_inputRows->columns(), m_inputRows->isBusy());
  updateFormula();
}

Formula ExpressionActionEditor::formula() const {
  Formula formula;
  formula.output.expression = m_field->expression();
  formula.options = options();
  formula.variables = m_variables->variables();
  if (m_action.globalParameters() != nullptr) {
    formula.parameters = *m_action.globalParameters();
  }
  formula.columns = m_inputRows->columns();
  formula.rows = m_inputRows->rows();
  formula.current = m_currentRow;
  return formula;
}

void ExpressionActionEditor::updateFormula() {
  m_field->setFormula(formula());
  if (m_debugger != nullptr) {
    m_debugger->formulaChanged();
  }
}

void ExpressionActionEditor::reload() {
  const QScopedValueRollback loading(m_isLoading, true);
  m_settings->load(m_action.options());
  m_variables->setVariables(m_action.inputVariables());
  m_variables->setRowNumberOffered(m_action.options().addN);
  load();
  m_texts.setAllCommitted();
  takeInput();
}

QMap<QString, QString> ExpressionActionEditor::uncommittedState() const {
  QMap<QString, QString> texts = m_texts.uncommitted();
  texts.insert(m_variablesPanel->uncommitted());
  // They wait for the end of a debug run.
  const EvaluationOptions edited = options();
  for (const auto& option : evaluationAttributes()) {
    if (const QString text = option.text(edited); text != option.text(m_action.options())) {
      texts[QString::fromUtf16(option.name)] = text;
    }
  }
  return texts;
}

void ExpressionActionEditor::restoreUncommitted(const QMap<QString, QString>& texts) {
  m_variablesPanel->restore(texts);  // takes the focus, by which fields commit what they have
  m_texts.restore(texts);
  EvaluationOptions restored = options();
  for (const auto& option : evaluationAttributes()) {
    if (const auto text = texts.find(QString::fromUtf16(option.name)); text != texts.end()) {
      option.set(restored, *text);
      m_areOptionsEdited = true;
    }
  }
  if (m_areOptionsEdited) {
    const QScopedValueRollback loading(m_isLoading, true);
    m_settings->load(restored);
  }
}

void ExpressionActionEditor::commit() {
  m_variablesPanel->commit();
  commitChanges();
  if (!isDebugging() && !m_texts.isCommitted(kExpressionField)) {
    commitExpression();
  }
}

void ExpressionActionEditor::showPosition(const QString& output, int position) {
  showOutputNamed(output);
  showExpressionPage();
  if (position < 0) {
    m_field->setFocus();
    return;
  }
  m_field->showPart(position, tokenSizeAt(m_field->expression(), position));
}

bool ExpressionActionEditor::stepToRow(long long row) {
  showExpressionPage();
  m_debugger->runToRow(row);
  return true;
}

bool ExpressionActionEditor::storeCommon() {
  const bool areVariablesEdited = std::exchange(m_areVariablesEdited, false);
  const bool areOptionsEdited = std::exchange(m_areOptionsEdited, false);
  if (areVariablesEdited) {
    m_action.setInputVariables(m_variables->variables());
  }
  if (areOptionsEdited) {
    m_action.setOptions(options());
  }
  return areVariablesEdited || areOptionsEdited;
}

void ExpressionActionEditor::commitChanges() {
  if (m_isLoading) {
    return;
  }
  if (isDebugging()) {
    showPending();
    return;
  }
  const bool isCommonStored = storeCommon();
  const bool isOwnStored = store();
  if (isCommonStored || isOwnStored) {
    propertiesChanged();
  }
}

void ExpressionActionEditor::showFieldVerdict(const FormulaAnswer* failure) {
  m_field->setRefused(failure != nullptr);
  if (failure == nullptr || isHelpShown()) {
    return;  // who has gone to the help knows that something lacks
  }
  if (isActiveWindow() && !m_validation->hasTypedElsewhere()) {
    showExpressionPage();
    m_field->editor()->setFocus(Qt::PopupFocusReason);
  }
  m_validation->showFailure(m_field->expression(), *failure);
}

}  // namespace kelvarin
