#include "actions/calculator/calculator.h"

#include <algorithm>

#include "actions/frame/messages.h"
#include "actions/frame/read_back.h"
#include "actions/frame/renamed_variables.h"
#include "actions/frame/variables_xml.h"
#include "expression/errors/messages.h"
#include "expression/options/evaluation_attributes.h"

namespace kelvarin {

namespace {

const QString kNewName = QStringLiteral("NewVar");

}  // namespace

const ActionDescription& Calculator::catalogue() {
  static const ActionDescription entry{
      .typeName = "Calculator",
      .toolTip = "Add/update a column based on an expression",
      .helpId = "5_5_6_calculator_high_speed__",
      .tags = {"150_Standard"},
      .keywords = {"math", "exp", "expression", "column", "add", "new", "compute"},
      .image = ":/KelvarinMathParser/calculator.svg",
      .version = 2.08,
      .attributes = described(evaluationAttributes()),
      .children = {inputVarsElement(), outputVarsElement()}};
  return entry;
}

Calculator::Calculator(XMLNode node, GlobalParameters* parameters)
    : Calculator(node, parameters, kNewName) {}

Calculator::Calculator(XMLNode node, GlobalParameters* parameters, const QString& newName)
    : Catalogued(node, parameters) {
  m_inputPinCount = 2;
  readAttributes(node, evaluationAttributes(), m_options, parameters);
  m_inputs = readInputVariables(node.getChildNode(utf16(kInputVars)), parameters);
  m_outputs =
      readOutputVariables(node.getChildNode(utf16(kOutputVars)), {kNewName, newName}, parameters);
  if (m_outputs.empty()) {
    OutputVariable output;
    output.name = newName;
    m_outputs.push_back(output);
  }
}

void Calculator::saveXML(std::wostringstream& out, QString name) {
  saveAI(out, name, catalogue().version);
  writeAttributes(out, evaluationAttributes(), m_options);
  out << L">\n  <InputVars>\n";
  for (const InputVariable& variable : m_inputs) {
    writeInputVariable(out, variable);
  }
  out << L"  </InputVars>\n  <OutputVars>\n";
  for (const OutputVariable& variable : m_outputs) {
    writeOutputVariable(out, variable);
  }
  out << L"  </OutputVars>\n</" << typeName() << L">\n";
}

std::vector<ElementFault> Calculator::settingFaults() const {
  return faultsOfOutputVariables(node());
}

void Calculator::setOutputVariables(std::vector<OutputVariable> outputs) {
  setAsReadBack(*this, &Calculator::m_outputs, std::move(outputs));
  m_areOutputsEdited = true;
}

ColumnFate Calculator::followColumn(const QString& oldName, const QString& newName) {
  RenamedVariables renamed = renamedVariables(m_inputs, oldName, newName);
  setInputVariables(std::move(renamed.variables));
  ColumnFate fate = ColumnFate::passedOn;
  std::vector<OutputVariable> outputs = m_outputs;
  for (OutputVariable& output : outputs) {
    if (renamed.mustExpressionsFollow) {
      output.expression = withRenamedVariable(output.expression, oldName, newName);
    }
    if (output.name == oldName && output.update) {
      output.name = newName;
    } else if (output.name == oldName) {
      fate = ColumnFate::ends;
    }
  }
  setOutputVariables(std::move(outputs));
  return fate;
}

bool Calculator::renameMadeColumn(const QString& oldName, const QString& newName) {
  std::vector<OutputVariable> outputs = m_outputs;
  const auto made = std::ranges::find(outputs, oldName, &OutputVariable::name);
  // An update has its column from above.
  if (made == outputs.end() || made->update) {
    return false;
  }
  made->name = newName;
  setOutputVariables(std::move(outputs));
  return true;
}

void Calculator::renameParameter(const QString& oldName, const QString& newName) {
  if (isVariable(m_inputs, oldName)) {
    return;
  }
  std::vector<OutputVariable> outputs = m_outputs;
  for (OutputVariable& output : outputs) {
    output.expression = withRenamedVariable(output.expression, oldName, newName);
  }
  setOutputVariables(std::move(outputs));
}

QStringList Calculator::expressions() const {
  QStringList expressions;
  for (const OutputVariable& output : m_outputs) {
    expressions += output.expression;
  }
  return expressions;
}

QString Calculator::pinName(int pin, bool isOutput) const {
  return !isOutput && pin == 1 ? QStringLiteral("table of variables") : QString();
}

char Calculator::init() {
  m_stage.reset();
  m_rows.reset();
  m_computedColumns.clear();
  const bool isRefused = ExpressionAction::init() != 0;
  return isRefused || !areOutputsWhole() ? 1 : 0;
}

bool Calculator::areOutputsWhole() const {
  const std::vector<XMLNode> elements =
      m_areOutputsEdited ? std::vector<XMLNode>() : outputVariableElements(node());
  if (!m_areOutputsEdited && !node().isEmpty() && elements.empty()) {
    MainUI::addLog(LogLevel::warning, action_messages::noOutputs(m_outputs.front().name));
  }
  bool isWhole = true;
  for (std::size_t i = 0; i < m_outputs.size(); ++i) {
    const int output = static_cast<int>(i);
    const LogDetails details = detailsOfOutput(output);
    if (details.output.trimmed().isEmpty()) {
      logWithDetails(LogLevel::error, action_messages::outputWithoutName(output), details);
      isWhole = false;
    } else if (i < elements.size() && !hasExpression(elements[i])) {
      logWithDetails(LogLevel::warning, action_messages::outputWithoutExpression(details.output),
                     details);
    }
  }
  return isWhole;
}

LogDetails Calculator::detailsOfOutput(int output) const {
  LogDetails details;
  if (!m_areOutputsEdited) {
    details.elementPosition = positionOfOutputVariable(node(), output);
  }
  details.output = expandString(m_outputs[static_cast<std::size_t>(output)].name);
  return details;
}

void Calculator::setComputeRoutine() {
  computeRoutine = &Calculator::computeFirstRow;
}

QString Calculator::expressionFailureText(const RowFailure& failure) const {
  return calculatorErrorText(failure.name, failure.error, locationOf(failure));
}

FailureLocation Calculator::locationOf(const RowFailure& failure) const {
  return {rowNumber(), QString::fromLatin1(typeName()), failure.backend};
}

void Calculator::addValueCounts(std::vector<OutputReport>& outputs) const {
  const std::vector<ValueCounts> counts =
      m_rows == nullptr ? std::vector<ValueCounts>() : m_rows->valueCounts();
  for (std::size_t i = 0; i < std::min(counts.size(), outputs.size()); ++i) {
    outputs[i].nulls = counts[i].nulls;
    outputs[i].nans = counts[i].nans;
  }
}

void Calculator::countRows(const StageResult& result, std::size_t begin, std::size_t end) {
  if (m_rows->countsValues()) {
    m_stage->countValues(result, begin, end, m_rows->valueCounts());
  }
}

QString Calculator::checkText(const QString& output, const QString& text) const {
  return messages::calculatorOpening(output) + text;
}

QString Calculator::referenceTimeWarning() const {
  return action_messages::referenceTimeUnparsableInCalculator();
}

}  // namespace kelvarin
