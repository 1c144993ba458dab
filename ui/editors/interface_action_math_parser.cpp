#include "ui/editors/interface_action_math_parser.h"

#include <algorithm>
#include <utility>

#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

#include "actions/frame/renamed_variables.h"
#include "expression/backends/expression_text.h"
#include "ui/editors/output_bar.h"
#include "ui/editors/output_fields.h"
#include "ui/editors/vectors_panel.h"
#include "ui/panels/form_layout.h"
#include "ui/panels/notes_field.h"
#include "ui/panels/settings_page.h"
#include "ui/widgets/k_plain_text_edit.h"

namespace kelvarin {

namespace {

// Among the fields of uncommittedState().
const QString kNameField = QStringLiteral("name");
// How new outputs are called; the second one is an expression.
const QString kNewName = QStringLiteral("NewVar%1");
const QString kNewNameExpression = QStringLiteral("\"NewVar%1_\"//_n");

EvaluationPage::Sections sections() {
  EvaluationPage::Sections sections;
  sections.keyCasts = true;
  sections.continueAfterError =
      Interface_actionMathParser::tr("Return null and continue (very slowly)");
  return sections;
}

InputVariable textVariable(const QString& name, const QString& sample) {
  InputVariable variable;
  variable.label = name;
  variable.isNumber = false;
  variable.text = sample;
  return variable;
}

}  // namespace

Interface_actionMathParser::Interface_actionMathParser(QWidget* parent, Calculator& action,
                                                       int mode)
    : ExpressionActionEditor(parent, action, sections()),
      m_action(action),
      m_mode(mode),
      m_pinTable(new PinTable(action, mode == kVectorized, this)),
      m_bar(new OutputBar(this)),
      m_fields(new OutputFields(mode == kVectorized, this)),
      m_outputs(mode == kVectorized ? kNewNameExpression : kNewName) {
  setObjectName(QStringLiteral("Interface_actionMathParser"));
  QVBoxLayout* layout = addExpressionPage(tr("Expressions"));
  layout->addWidget(m_bar);
  layout->addWidget(m_fields);
  m_field->editor()->setAccessibleName(tr("Expression"));
  m_field->setHistoryKey(QStringLiteral("calculator"));
  layout->addWidget(fieldBeside(isVectorized() ? makeVectors() : variablesPanel()), kFieldShare);
  addDebugger(*layout, {tr("Debug Start"), tr("Debug STOP"), tr("Debug - Next (F10)")});
  layout->addWidget(makeNotes("leNotes", tr("N&otes:"), tr("Notes")));
  addOtherPages();
  watch(
      kNameField, [this] { return m_fields->name(); },
      [this](const QString& name) { m_fields->setName(name); });
  connectOutputs();
  reload();
  updatePinTable();
}

Interface_actionMathParser::~Interface_actionMathParser() {
  m_fields->disconnect(this);
}

QWidget* Interface_actionMathParser::makeVectors() {
  auto* panel = new VectorsPanel(*m_pinTable, this);
  panel->addTab(variablesPanel(), tr("Variables"));
  auto* group = new QWidget(this);
  auto* layout = new QHBoxLayout(group);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kControlSpacing);
  auto* label = new QLabel(tr("Elemen&t:"), group);
  m_element = new QSpinBox(group);
  m_element->setObjectName(QStringLiteral("sbShownElement"));
  m_element->setAccessibleName(tr("Element of the vectors whose values are shown"));
  m_element->setToolTip(tr("The values below are those of this element of each vector."));
  label->setBuddy(m_element);
  layout->addWidget(label);
  layout->addWidget(m_element);
  m_field->addBesideVerdict(group);
  connect(m_element, &QSpinBox::valueChanged, this, &Interface_actionMathParser::updateFormula);
  return panel;
}

int Interface_actionMathParser::shownElement() const {
  return m_element != nullptr ? m_element->value() : 0;
}

void Interface_actionMathParser::connectOutputs() {
  connect(m_bar, &OutputBar::chosen, this, &Interface_actionMathParser::chooseOutput);
  connect(m_bar, &OutputBar::addWanted, this, &Interface_actionMathParser::addOutput);
  connect(m_bar, &OutputBar::moveWanted, this, &Interface_actionMathParser::moveOutput);
  connect(m_bar, &OutputBar::deleteWanted, this, &Interface_actionMathParser::delete_outputVar);
  connect(m_bar, &OutputBar::renameWanted, this, &Interface_actionMathParser::name_outputVar);
  connect(m_pinTable, &PinTable::changed, this, &Interface_actionMathParser::updatePinTable);
  connect(m_debugger, &DebuggerPanel::lackingVariablesWanted, this,
          &Interface_actionMathParser::takeTableOver);
  if (isVectorized()) {
    connect(m_element, &QSpinBox::valueChanged, m_debugger, &DebuggerPanel::setElement);
    connect(m_debugger, &DebuggerPanel::elementChosen, m_element, &QSpinBox::setValue);
  }
  connect(m_fields, &OutputFields::typeChosen, this, [this](MetaTypeColumn meta) {
    m_outputs.current().meta = meta;
    outputsEdited();
  });
  connect(m_fields, &OutputFields::updateChosen, this, [this](bool isUpdate) {
    m_outputs.current().update = isUpdate;
    outputsEdited();
  });
  connect(m_fields, &OutputFields::nameEdited, this, &Interface_actionMathParser::followName);
  connect(m_fields, &OutputFields::nameFinished, this, [this] {
    commitChanges();
    updateFormula();
  });
  connect(m_fields, &OutputFields::helpWanted, this, &Interface_actionMathParser::showHelp);
}

void Interface_actionMathParser::load() {
  m_outputs.set(m_action.outputVariables());
  showTabs();
  showOutput();
}

void Interface_actionMathParser::showTabs() {
  m_bar->setOutputs(m_outputs.names(), m_outputs.currentIndex());
  for (int i = 0; i < m_outputs.size(); ++i) {
    m_bar->setRefused(i, m_outputs.isRefused(i));
  }
}

void Interface_actionMathParser::showOutput() {
  const OutputVariable& output = m_outputs.current();
  m_field->setExpression(output.expression);
  m_field->setRefused(m_outputs.isRefused(m_outputs.currentIndex()));
  m_fields->showOutput(output);
  m_fields->setNameFormula(nameFormula(m_fields->name()));
  m_notes->setNotes(output.notes);
  for (const QString& field : {kExpressionField, kNameField, m_notes->objectName()}) {
    texts().setCommitted(field);
  }
  updateFormula();
}

void Interface_actionMathParser::followName() {
  m_bar->setName(m_outputs.currentIndex(), m_fields->name());
  updateNames();
}

bool Interface_actionMathParser::store() {
  takeNameAndNotes();
  if (!std::exchange(m_areOutputsEdited, false)) {
    return false;
  }
  writeOutputs();
  return true;
}

// Texts that a field cannot show as they are stay until the user changes them.
void Interface_actionMathParser::takeNameAndNotes() {
  if (!texts().isCommitted(kNameField)) {
    m_outputs.current().name = m_fields->name();
    texts().setCommitted(kNameField);
    m_areOutputsEdited = true;
  }
  if (!texts().isCommitted(m_notes->objectName())) {
    m_outputs.current().notes = m_notes->toPlainText();
    texts().setCommitted(m_notes->objectName());
    m_areOutputsEdited = true;
  }
}

// Before another output is shown in the fields. A debug run keeps them from the action for now.
void Interface_actionMathParser::leaveOutput() {
  commit();
  if (!isDebugging()) {
    return;
  }
  takeNameAndNotes();
  if (!texts().isCommitted(kExpressionField)) {
    m_outputs.current().expression = m_field->expression();
    m_areOutputsEdited = true;
  }
}

// What the action makes of them is shown: an empty expression is a missing value.
void Interface_actionMathParser::writeOutputs() {
  m_action.setOutputVariables(m_outputs.variables());
  m_outputs.update(m_action.outputVariables());
}

void Interface_actionMathParser::outputsEdited() {
  m_areOutputsEdited = true;
  commitChanges();
  updateFormula();
}

void Interface_actionMathParser::commitExpression() {
  if (texts().isCommitted(kExpressionField)) {
    return;
  }
  m_outputs.current().expression = m_field->expression();
  m_areOutputsEdited = true;
  commitChanges();
  m_field->setExpression(m_outputs.current().expression);
  updateFormula();
  texts().setCommitted(kExpressionField);
  checkCommitted();
}

// The table may define variables that the expression names, so it is waited for.
void Interface_actionMathParser::checkCommitted() {
  m_isCheckDue = m_pinTable->isBusy();
  if (m_isCheckDue) {
    return;
  }
  m_checked = {m_outputs.currentIndex()};
  m_checkedExpressions = {m_field->expression()};
  m_isFailureShown = false;
  m_validation->check({formula()}, ExpressionValidation::Occasion::commit);
}

void Interface_actionMathParser::chooseOutput(int output) {
  if (!m_outputs.has(output) || output == m_outputs.currentIndex()) {
    return;
  }
  leaveOutput();
  m_outputs.setCurrent(output);
  m_bar->setCurrent(output);
  showOutput();
}

void Interface_actionMathParser::showOutputNamed(const QString& name) {
  chooseOutput(static_cast<int>(m_outputs.names().indexOf(name)));
}

void Interface_actionMathParser::renameVariable(const QString& from, const QString& to) {
  for (int i = 0; i < m_outputs.size(); ++i) {
    const QString renamed = withRenamedVariable(m_outputs.at(i).expression, from, to);
    if (i != m_outputs.currentIndex() && renamed != m_outputs.at(i).expression) {
      m_outputs.setExpression(i, renamed);
      m_areOutputsEdited = true;
    }
  }
}

void Interface_actionMathParser::addOutput() {
  leaveOutput();
  m_outputs.add();
  showTabs();
  showOutput();
  outputsEdited();
  name_outputVar(m_outputs.currentIndex());
}

void Interface_actionMathParser::moveOutput(bool isLeft) {
  leaveOutput();
  if (!m_outputs.moveCurrent(isLeft)) {
    return;
  }
  m_validation->check({}, ExpressionValidation::Occasion::commit);
  showTabs();
  outputsEdited();
}

void Interface_actionMathParser::delete_outputVar(int output) {
  if (m_outputs.size() < 2 || !m_outputs.has(output)) {
    return;
  }
  leaveOutput();
  m_validation->check({}, ExpressionValidation::Occasion::commit);
  m_outputs.remove(output);
  showTabs();
  showOutput();
  outputsEdited();
}

void Interface_actionMathParser::name_outputVar(int output) {
  chooseOutput(output);
  m_fields->editName();
}

QStringList Interface_actionMathParser::expressions() const {
  QStringList expressions;
  for (int i = 0; i < m_outputs.size(); ++i) {
    const bool isCurrent = i == m_outputs.currentIndex();
    expressions += isCurrent ? m_field->expression() : m_outputs.at(i).expression;
  }
  return expressions;
}

Formula Interface_actionMathParser::formulaOf(const OutputVariable& output) const {
  Formula formula = ExpressionActionEditor::formula();
  formula.output = output;
  const std::vector<InputVariable> ofTable = m_pinTable->variablesOf(shownElement());
  formula.variables.insert(formula.variables.end(), ofTable.begin(), ofTable.end());
  return formula;
}

Formula Interface_actionMathParser::formula() const {
  OutputVariable output = m_outputs.size() == 0 ? OutputVariable() : m_outputs.current();
  output.expression = m_field->expression();
  return formulaOf(output);
}

// A debug run of a calculator does not read the table.
std::vector<InputVariable> Interface_actionMathParser::lackingVariables() const {
  std::vector<InputVariable> lacking;
  if (isVectorized() || !m_pinTable->table()) {
    return lacking;
  }
  QSet<QString> named;
  for (const QString& expression : expressions()) {
    named += valueNames(expression);
  }
  const std::vector<InputVariable>& own = m_variables->variables();
  for (const InputVariable& variable : m_pinTable->table()->variables) {
    const auto hasName = [&](const InputVariable& each) { return each.name() == variable.name(); };
    if (named.contains(variable.name()) && std::none_of(own.begin(), own.end(), hasName)) {
      lacking.push_back(variable);
    }
  }
  return lacking;
}

void Interface_actionMathParser::updateFormula() {
  ExpressionActionEditor::updateFormula();
  QStringList names;
  for (const InputVariable& variable : lackingVariables()) {
    names += variable.name();
  }
  m_debugger->setLackingVariables(names);
  if (!isVectorized()) {
    m_debugger->setOutputs(m_action.outputVariables());
  }
}

void Interface_actionMathParser::takeTableOver() {
  m_variables->addVariables(lackingVariables());
}

// The names of columns are computed from those of the first element's columns.
Formula Interface_actionMathParser::nameFormula(const QString& expression) const {
  Formula formula;
  formula.use = ResultUse::column;
  formula.output.meta = MetaTypeColumn::text;
  formula.output.expression = expression;
  formula.options = options();
  formula.options.addN = false;
  if (m_action.globalParameters() != nullptr) {
    formula.parameters = *m_action.globalParameters();
  }
  formula.variables.push_back(textVariable(QStringLiteral("_n"), QStringLiteral("0")));
  for (const InputVariable& variable : m_pinTable->variablesOf(0)) {
    const QString column = formula.parameters.expandString2(variable.columns.last());
    formula.variables.push_back(textVariable(variable.name(), column));
  }
  return formula;
}

void Interface_actionMathParser::updatePinTable() {
  if (isVectorized()) {
    m_element->setMaximum(std::max(0, m_pinTable->longestVector() - 1));
  }
  updateFormula();
  m_fields->setNameFormula(nameFormula(m_fields->name()));
  updateNames();
  if (m_isCheckDue && !m_pinTable->isBusy()) {
    checkCommitted();
  }
}

void Interface_actionMathParser::updateNames() {
  if (!isVectorized()) {
    return;
  }
  std::vector<Formula> names;
  for (int i = 0; i < m_outputs.size(); ++i) {
    const bool isCurrent = i == m_outputs.currentIndex();
    names.push_back(nameFormula(isCurrent ? m_fields->name() : m_outputs.at(i).name));
  }
  m_pinTable->nameColumns(names);
}

void Interface_actionMathParser::checkCurrentOutputVars() {
  commit();
  std::vector<Formula> formulas;
  m_checked.clear();
  m_checkedExpressions.clear();
  m_isFailureShown = false;
  for (int i = 0; i < m_outputs.size(); ++i) {
    formulas.push_back(formulaOf(m_outputs.at(i)));
    m_checked.push_back(i);
    m_checkedExpressions.push_back(m_outputs.at(i).expression);
  }
  m_validation->check(std::move(formulas), ExpressionValidation::Occasion::asked);
}

void Interface_actionMathParser::showVerdict(int index, const FormulaAnswer* failure) {
  const auto position = static_cast<std::size_t>(index);
  const int output = m_checked[position];
  m_outputs.setRefused(output, failure != nullptr);
  m_bar->setRefused(output, failure != nullptr);
  m_action.setErrorFlag(m_outputs.isAnyRefused());
  const bool isFirstFailure = failure != nullptr && !std::exchange(m_isFailureShown, true);
  if (isFirstFailure && m_checked.size() > 1 && !m_validation->hasTypedElsewhere()) {
    chooseOutput(output);
  }
  if (output != m_outputs.currentIndex() ||
      m_field->expression() != m_checkedExpressions[position]) {
    return;
  }
  if (failure == nullptr || isFirstFailure) {
    showFieldVerdict(failure);
  } else {
    m_field->setRefused(true);
  }
}

}  // namespace kelvarin
