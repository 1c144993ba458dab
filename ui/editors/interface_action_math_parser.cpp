#include "ui/editors/interface_action_math_parser.h"

#include <algorithm>
#include <utility>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/editors/output_bar.h"
#include "ui/editors/vectors_panel.h"
#include "ui/language/outside_sources.h"
#include "ui/panels/form_layout.h"
#include "ui/panels/settings_page.h"
#include "ui/widgets/flow_layout.h"
#include "ui/widgets/k_plain_text_edit.h"

namespace kelvarin {

namespace {

const QString kNameField = QStringLiteral("nameExpression");
const QString kNewExpression = QStringLiteral("1");
constexpr MetaTypeColumn kTypes[] = {MetaTypeColumn::number, MetaTypeColumn::key,
                                     MetaTypeColumn::text};

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
      m_bar(new OutputBar(this)) {
  setObjectName(QStringLiteral("Interface_actionMathParser"));
  QVBoxLayout* layout = addExpressionPage(tr("Expressions"));
  layout->addWidget(m_bar);
  layout->addWidget(makeNameRow());
  layout->addWidget(makeTypeRow());
  m_field->editor()->setAccessibleName(tr("Expression"));
  m_field->setHistoryKey(QStringLiteral("calculator"));
  layout->addWidget(fieldAndVariables(), 1);
  if (isVectorized()) {
    layout->addWidget(new VectorsPanel(*m_pinTable, this));
  }
  layout->addWidget(makeDebugger({tr("Debug Start"), tr("Debug STOP"), tr("Debug - Next (F10)")}));
  m_debugger->addCheckButton(checkButton());
  m_notes = noteField("leNotes", tr("Notes"));
  auto* notesLabel = new QLabel(tr("N&otes:"), this);
  notesLabel->setBuddy(m_notes);
  layout->addWidget(notesLabel);
  layout->addWidget(m_notes);
  addOtherPages();
  connectOutputs();
  reload();
  updatePinTable();
}

Interface_actionMathParser::~Interface_actionMathParser() {
  if (m_nameField != nullptr) {
    m_nameField->disconnect(this);
  }
}

QWidget* Interface_actionMathParser::makeNameRow() {
  auto* row = new QWidget(this);
  auto* layout =
      new QBoxLayout(isVectorized() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(isVectorized() ? kControlSpacing : 2 * kControlSpacing);
  auto* label = new QLabel(isVectorized() ? tr("&Name expression:") : tr("&Name:"), row);
  layout->addWidget(label);
  if (!isVectorized()) {
    m_name = noteField("leName", tr("Name"));
    m_name->setToolTip(tr("The name of the column that the expression makes."));
    label->setBuddy(m_name);
    layout->addWidget(m_name);
    return row;
  }
  m_nameField = new ExpressionField(row);
  m_nameField->setObjectName(kNameField);
  m_nameField->setHistoryKey(QStringLiteral("columnNames"));
  m_nameField->setValuesShown(false);
  KPlainTextEdit* editor = m_nameField->editor();
  editor->setAccessibleName(tr("Name expression"));
  editor->setToolTip(
      tr("A text for each element: _n is its number, an alias the name of its "
         "column."));
  editor->setFixedHeight(editor->fontMetrics().lineSpacing() * 2 + 12);
  label->setBuddy(editor);
  layout->addWidget(m_nameField);
  return row;
}

QWidget* Interface_actionMathParser::makeTypeRow() {
  const QString texts[] = {tr("Nu&mber"), tr("&Key"), tr("Te&xt")};
  auto* row = new QWidget(this);
  auto* layout = new FlowLayout(row);
  layout->addWidget(new QLabel(tr("Type:"), row));
  for (std::size_t i = 0; i < std::size(kTypes); ++i) {
    auto* button = new QRadioButton(texts[i], row);
    button->setObjectName(QStringLiteral("rb%1").arg(i + 1));
    connect(button, &QRadioButton::clicked, this, [this, i] { setType(kTypes[i]); });
    layout->addWidget(button);
    m_types.push_back(button);
  }
  m_update = new QCheckBox(tr("&update the column"), row);
  m_update->setObjectName(QStringLiteral("cbUpdate"));
  m_update->setToolTip(tr("The result replaces the column of the input that has this name."));
  m_update->setVisible(!isVectorized());
  connect(m_update, &QCheckBox::clicked, this, [this](bool isUpdate) {
    current().variable.update = isUpdate;
    outputsEdited();
  });
  layout->addWidget(m_update);
  return row;
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
    connect(m_nameField, &ExpressionField::editingFinished, this,
            &Interface_actionMathParser::commitName);
    connect(m_nameField->editor(), &QPlainTextEdit::textChanged, this,
            &Interface_actionMathParser::updateNames);
  } else {
    connect(m_name, &QLineEdit::textEdited, this,
            [this](const QString& name) { m_bar->setName(m_current, name); });
  }
}

void Interface_actionMathParser::load() {
  m_outputs.clear();
  for (const OutputVariable& variable : m_action.outputVariables()) {
    m_outputs.push_back({variable});
  }
  m_current = 0;
  showTabs();
  showOutput();
}

void Interface_actionMathParser::showTabs() {
  QStringList names;
  for (const Output& output : m_outputs) {
    names += output.variable.name;
  }
  m_bar->setOutputs(names, m_current);
  for (std::size_t i = 0; i < m_outputs.size(); ++i) {
    m_bar->setRefused(static_cast<int>(i), m_outputs[i].isRefused);
  }
}

void Interface_actionMathParser::showOutput() {
  const OutputVariable& output = current().variable;
  m_field->setExpression(output.expression);
  m_field->setRefused(current().isRefused);
  setCommitted(kExpressionField, m_field->expression());
  if (isVectorized()) {
    m_nameField->setExpression(output.name);
    setCommitted(kNameField, m_nameField->expression());
    m_nameField->setFormula(nameFormula());
  } else {
    m_name->setText(output.name);
    setCommitted(m_name->objectName(), m_name->text());
  }
  m_notes->setText(output.notes);
  setCommitted(m_notes->objectName(), m_notes->text());
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    m_types[i]->setAutoExclusive(false);  // another type has no button
    m_types[i]->setChecked(output.meta == kTypes[i]);
    m_types[i]->setAutoExclusive(true);
  }
  m_update->setChecked(output.update);
  updateFormula();
}

QMap<QString, QString> Interface_actionMathParser::uncommittedState() const {
  QMap<QString, QString> state = ExpressionActionEditor::uncommittedState();
  if (isVectorized() && !isCommitted(kNameField, m_nameField->expression())) {
    state[kNameField] = m_nameField->expression();
  }
  return state;
}

void Interface_actionMathParser::commit() {
  ExpressionActionEditor::commit();
  if (isVectorized()) {
    commitName();
  }
}

// Texts that a field cannot show as they are stay until the user changes them.
bool Interface_actionMathParser::store() {
  if (!isVectorized() && !isCommitted(m_name->objectName(), m_name->text())) {
    current().variable.name = m_name->text();
    m_areOutputsEdited = true;
  }
  if (!isCommitted(m_notes->objectName(), m_notes->text())) {
    current().variable.notes = m_notes->text();
    m_areOutputsEdited = true;
  }
  if (!std::exchange(m_areOutputsEdited, false)) {
    return false;
  }
  writeOutputs();
  return true;
}

// What the action makes of them is shown: an empty expression is a missing value.
void Interface_actionMathParser::writeOutputs() {
  std::vector<OutputVariable> variables;
  variables.reserve(m_outputs.size());
  for (const Output& output : m_outputs) {
    variables.push_back(output.variable);
  }
  m_action.setOutputVariables(std::move(variables));
  const std::vector<OutputVariable>& stored = m_action.outputVariables();
  for (std::size_t i = 0; i < m_outputs.size() && i < stored.size(); ++i) {
    m_outputs[i].variable = stored[i];
  }
}

void Interface_actionMathParser::outputsEdited() {
  m_areOutputsEdited = true;
  commitChanges();
  updateFormula();
}

void Interface_actionMathParser::setType(MetaTypeColumn meta) {
  current().variable.meta = meta;
  outputsEdited();
}

void Interface_actionMathParser::commitExpression() {
  const QString expression = m_field->expression();
  if (isCommitted(kExpressionField, expression)) {
    return;
  }
  current().variable.expression = expression;
  m_areOutputsEdited = true;
  commitChanges();
  m_field->setExpression(current().variable.expression);
  updateFormula();
  setCommitted(kExpressionField, m_field->expression());
  checkCommitted();
}

// The table may define variables that the expression names, so it is waited for.
void Interface_actionMathParser::checkCommitted() {
  m_isCheckDue = m_pinTable->isBusy();
  if (m_isCheckDue) {
    return;
  }
  m_checked = {m_current};
  m_checkedExpressions = {m_field->expression()};
  m_isFailureShown = false;
  m_validation->check({formula()}, ExpressionValidation::Occasion::commit);
}

void Interface_actionMathParser::commitName() {
  const QString name = m_nameField->expression();
  if (isLoading() || isCommitted(kNameField, name)) {
    return;
  }
  setCommitted(kNameField, name);
  current().variable.name = name;
  m_bar->setName(m_current, name);
  outputsEdited();
}

void Interface_actionMathParser::chooseOutput(int output) {
  if (output < 0 || output == m_current) {
    return;
  }
  commit();
  m_current = output;
  m_bar->setCurrent(output);
  showOutput();
}

QString Interface_actionMathParser::newName() const {
  for (int number = 1;; ++number) {
    const QString plain =
        number == 1 ? QStringLiteral("NewVar") : QStringLiteral("NewVar%1").arg(number);
    const QString name = isVectorized() ? QStringLiteral("\"%1_\"//_n").arg(plain) : plain;
    const auto hasName = [&](const Output& output) { return output.variable.name == name; };
    if (std::none_of(m_outputs.begin(), m_outputs.end(), hasName)) {
      return name;
    }
  }
}

void Interface_actionMathParser::addOutput() {
  commit();
  Output output;
  output.variable.name = newName();
  output.variable.expression = kNewExpression;
  m_outputs.push_back(output);
  m_current = static_cast<int>(m_outputs.size()) - 1;
  showTabs();
  showOutput();
  outputsEdited();
  name_outputVar(m_current);
}

void Interface_actionMathParser::moveOutput(bool isLeft) {
  const int target = isLeft ? m_current - 1 : m_current + 1;
  if (target < 0 || target >= static_cast<int>(m_outputs.size())) {
    return;
  }
  commit();
  m_validation->check({}, ExpressionValidation::Occasion::commit);
  std::swap(m_outputs[static_cast<std::size_t>(target)], current());
  m_current = target;
  showTabs();
  outputsEdited();
}

void Interface_actionMathParser::delete_outputVar(int output) {
  if (m_outputs.size() < 2 || output < 0 || output >= static_cast<int>(m_outputs.size())) {
    return;
  }
  commit();
  m_validation->check({}, ExpressionValidation::Occasion::commit);
  m_outputs.erase(m_outputs.begin() + output);
  if (m_current > output || m_current == static_cast<int>(m_outputs.size())) {
    --m_current;
  }
  showTabs();
  showOutput();
  outputsEdited();
}

void Interface_actionMathParser::name_outputVar(int output) {
  chooseOutput(output);
  if (isVectorized()) {
    m_nameField->setFocus();
    m_nameField->editor()->selectAll();
    return;
  }
  m_name->setFocus();
  m_name->selectAll();
}

QStringList Interface_actionMathParser::expressions() const {
  QStringList expressions;
  for (std::size_t i = 0; i < m_outputs.size(); ++i) {
    expressions +=
        static_cast<int>(i) == m_current ? m_field->expression() : m_outputs[i].variable.expression;
  }
  return expressions;
}

Formula Interface_actionMathParser::formulaOf(const OutputVariable& output) const {
  Formula formula = ExpressionActionEditor::formula();
  formula.output = output;
  const std::vector<InputVariable> ofTable = m_pinTable->variablesOf(0);
  formula.variables.insert(formula.variables.end(), ofTable.begin(), ofTable.end());
  return formula;
}

Formula Interface_actionMathParser::formula() const {
  OutputVariable output = m_outputs.empty() ? OutputVariable() : current().variable;
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
    named += namesIn(expression);
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
}

void Interface_actionMathParser::takeTableOver() {
  m_variables->addVariables(lackingVariables());
}

// The names of columns are computed from those of the first element's columns.
Formula Interface_actionMathParser::nameFormula() const {
  Formula formula;
  formula.use = ResultUse::column;
  formula.output.meta = MetaTypeColumn::text;
  formula.output.expression = m_nameField->expression();
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
  updateFormula();
  if (isVectorized()) {
    m_nameField->setFormula(nameFormula());
    updateNames();
  }
  if (m_isCheckDue && !m_pinTable->isBusy()) {
    checkCommitted();
  }
}

void Interface_actionMathParser::updateNames() {
  QStringList names;
  for (std::size_t i = 0; i < m_outputs.size(); ++i) {
    names +=
        static_cast<int>(i) == m_current ? m_nameField->expression() : m_outputs[i].variable.name;
  }
  const GlobalParameters* parameters = m_action.globalParameters();
  m_pinTable->nameColumns(names, options(),
                          parameters != nullptr ? *parameters : GlobalParameters());
}

void Interface_actionMathParser::checkCurrentOutputVars() {
  commit();
  std::vector<Formula> formulas;
  m_checked.clear();
  m_checkedExpressions.clear();
  m_isFailureShown = false;
  for (std::size_t i = 0; i < m_outputs.size(); ++i) {
    formulas.push_back(formulaOf(m_outputs[i].variable));
    m_checked.push_back(static_cast<int>(i));
    m_checkedExpressions.push_back(m_outputs[i].variable.expression);
  }
  m_validation->check(std::move(formulas), ExpressionValidation::Occasion::asked);
}

void Interface_actionMathParser::showVerdict(int index, const FormulaAnswer* failure) {
  const auto position = static_cast<std::size_t>(index);
  const int output = m_checked[position];
  m_outputs[static_cast<std::size_t>(output)].isRefused = failure != nullptr;
  m_bar->setRefused(output, failure != nullptr);
  m_action.setErrorFlag(std::any_of(m_outputs.begin(), m_outputs.end(),
                                    [](const Output& each) { return each.isRefused; }));
  const bool isFirstFailure = failure != nullptr && !std::exchange(m_isFailureShown, true);
  if (isFirstFailure && m_checked.size() > 1 && !m_validation->hasTypedElsewhere()) {
    chooseOutput(output);
  }
  if (output != m_current || m_field->expression() != m_checkedExpressions[position]) {
    return;
  }
  if (failure == nullptr || isFirstFailure) {
    showFieldVerdict(failure);
  } else {
    m_field->setRefused(true);
  }
}

}  // namespace kelvarin
