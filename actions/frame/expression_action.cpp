#include "actions/frame/expression_action.h"

#include "actions/frame/evaluation_attributes.h"
#include "actions/frame/messages.h"
#include "actions/frame/read_back.h"
#include "actions/frame/variables_xml.h"
#include "expression/backends/expression_text.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/expression_mark.h"
#include "expression/errors/messages.h"
#include "expression/evaluator/expression_warnings.h"
#include "expression/evaluator/messages.h"
#include "expression/evaluator/variable_names.h"
#include "expression/help/expression_hint.h"
#include "host/contract/host_services.h"
#include "host/contract/missing_column.h"

namespace kelvarin {

bool ExpressionAction::setInputVariables(std::vector<InputVariable> variables) {
  const bool isSet = setAsReadBack(*this, &ExpressionAction::m_inputs, std::move(variables));
  m_areInputsEdited |= isSet;
  return isSet;
}

bool ExpressionAction::setOptions(EvaluationOptions options) {
  return setAsReadBack(*this, &ExpressionAction::m_options, std::move(options));
}

char ExpressionAction::init() {
  ActionItem::init();
  m_evaluator.clear();
  m_variablesOfRun.clear();
  m_outputsOfRun.clear();
  m_isRowLoaded = false;
  return reportUnknownElements(*this, knownElements()) ? 1 : 0;
}

char ExpressionAction::close() {
  const QStringList warnings =
      hasFailed() ? QStringList() : m_evaluator.closingWarnings(failedRowsText());
  for (const QString& warning : warnings) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  m_evaluator.clear();
  return 0;
}

char ExpressionAction::canRunInParallel(QString, bool* reason) {
  if (reason != nullptr) {
    *reason = true;
  }
  return 0;
}

const OneRow* ExpressionAction::columnsToPlanFor(const OneRow* firstRow) const {
  if (firstRow != nullptr) {
    return firstRow;
  }
  return hasRunEnded() ? nullptr : announcedColumnsOfInPin(0);
}

bool ExpressionAction::startEvaluator(const OneRow& columns,
                                      const std::vector<InputVariable>& inputs,
                                      const QStringList& expressions, int elementCount) {
  const auto expand = [this](const QString& text) { return expandString(text); };
  EvaluationOptions options = m_options;
  options.time.referenceTime = expand(options.time.referenceTime);
  options.time.dateFormat = expand(options.time.dateFormat);
  m_variablesOfRun = inputs;
  for (InputVariable& variable : m_variablesOfRun) {
    variable.label = expand(variable.label);
  }
  if (const auto named = checkNames(m_variablesOfRun, options); !named) {
    logError(named.error());
    return false;
  }
  for (const QString& warning : warningsAboutNames(m_variablesOfRun)) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  m_evaluator.configure(options, m_variablesOfRun, globalParameters(), isObserved());
  if (!prepareDates(expressions)) {
    return false;
  }
  const Status<QString> bound = m_evaluator.bind(columns, expand, elementCount);
  if (!bound) {
    reportMissingColumn(columns, bound.error());
  } else if (isChecking()) {
    tellTextsAsNumbers(columns);
  }
  return static_cast<bool>(bound);
}

// A run can count the texts that are no numbers; here they can only be expected.
void ExpressionAction::tellTextsAsNumbers(const OneRow& columns) const {
  for (std::size_t i = 0; i < m_variablesOfRun.size(); ++i) {
    const InputVariable& variable = m_variablesOfRun[i];
    const QString column = expandString(variable.columns.value(variable.columns.size() - 1));
    const int index = columns.getIndexOfColumn(column);
    if (kindOf(variable) != VariableKind::number || index < 0 ||
        columns.getMetaType(index) != MetaTypeColumn::text) {
      continue;
    }
    LogDetails details;
    details.column = column;
    details.place = locationOfInput(i);
    logWithDetails(LogLevel::information, messages::textEntersAsNumber(column), details);
  }
}

XMLNode::Place ExpressionAction::locationOfInput(std::size_t index) const {
  return m_areInputsEdited ? XMLNode::Place{}
                           : placeOfInputVariable(node(), static_cast<int>(index));
}

// `text` is about the first variable with a column that is not there, or with columns that differ
// in type.
void ExpressionAction::reportMissingColumn(const OneRow& columns, const QString& text) const {
  LogDetails details;
  for (std::size_t i = 0; i < m_variablesOfRun.size() && details.column.isNull(); ++i) {
    for (const QString& unexpanded : m_variablesOfRun[i].columns) {
      const QString name = expandString(unexpanded);
      if (columns.getIndexOfColumn(name) < 0) {
        details.column = name;
        details.place = locationOfInput(i);
        break;
      }
    }
  }
  logWithDetails(LogLevel::error, text, details);
  if (!details.column.isNull()) {
    logExplanation(missingColumnHint(details.column, columns.getColNamesDeep()));
  }
}

bool ExpressionAction::prepareDates(const QStringList& expressions) {
  const DateStatus status = m_evaluator.prepareDateContext(expressions);
  if (const QString advice = m_evaluator.dateFormatAdvice(); !advice.isEmpty()) {
    MainUI::addLog(LogLevel::warning, advice);
  }
  switch (status) {
    case DateStatus::ready:
      return true;
    case DateStatus::referenceTimeUnparsable:
      MainUI::addLog(LogLevel::warning, referenceTimeWarning());
      logExplanation(m_evaluator.referenceTimeAdvice());
      return true;
    case DateStatus::dateFormatUnknown:
      break;
  }
  logError(dateFormatUnknownText());
  logExplanation(messages::dateFormatNeeded());
  return false;
}

QString ExpressionAction::dateFormatUnknownText() const {
  return isChecking() ? QString::fromUtf8(messages::kFormatUnknown)
                      : messages::dateFormatUnknownInRun();
}

bool ExpressionAction::compileOutputs(const std::vector<OutputVariable>& outputs, ResultUse use) {
  m_outputsOfRun = outputs;
  bool isGood = true;
  for (int i = 0; i < static_cast<int>(outputs.size()); ++i) {
    warnAbout(i, use);
    if (isChecking()) {
      isGood &= checkOutput(i, use);
    } else if (const auto compiled = m_evaluator.compile(output(i), use); !compiled) {
      RowFailure failure;
      failure.name = output(i).name;
      failure.error = compiled.error();
      logFailure(LogLevel::error, expressionFailureText(failure), i, failure.error);
      isGood = false;
    }
  }
  m_isRowLoaded = !isChecking();  // before anything is evaluated
  if (isGood && !isChecking()) {
    tellBackends();
  }
  return isGood;
}

// A reference time that cannot be parsed has been warned about, once for all outputs.
bool ExpressionAction::checkOutput(int index, ResultUse use) {
  const QString text = m_evaluator.check(output(index), use);
  for (const QString& warning : m_evaluator.checkWarnings()) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  if (text.isEmpty() || text == QLatin1String(messages::kReferenceUnparsable)) {
    return true;
  }
  if (const auto compiled = m_evaluator.compile(output(index), use); !compiled) {
    logFailure(LogLevel::error, checkText(output(index).name, text), index, compiled.error());
    return false;
  }
  return checkTriedOutput(index, text);
}

// The expression is well formed; what it does with the sample values is judged as a run would.
bool ExpressionAction::checkTriedOutput(int index, const QString& text) {
  const QString shown = checkText(output(index).name, text);
  if (text == QLatin1String(messages::kNumberForString)) {
    logAboutOutput(LogLevel::warning, shown, index,
                   QString::fromUtf8(messages::kNumberBecomesText));
    return true;
  }
  const bool stops = mayFailedRowStop();
  const bool isWrongType = text == QLatin1String(messages::kStringForNumber);
  const ExpressionError error = isWrongType ? ExpressionError{text, -1, {}}
                                            : m_evaluator.lastFailure().error;
  logFailure(stops ? LogLevel::error : LogLevel::warning, shown, index, error,
             QString::fromUtf8(stops ? messages::kSampleMayDiffer : messages::kFailedRowsGoOn));
  return !stops;
}

void ExpressionAction::logAboutOutput(LogLevel level, const QString& text, int output,
                                      const QString& explanation) const {
  logWithDetails(level, text, detailsOfOutput(output));
  logExplanation(explanation);
}

void ExpressionAction::logFailure(LogLevel level, const QString& text, int index,
                                  const ExpressionError& error, const QString& note) const {
  LogDetails details = detailsOfOutput(index);
  details.token = error.token;
  details.position = error.position;
  details.row = isChecking() ? -1 : rowNumber();
  logWithDetails(level, text, details);
  logExplanation(explanation(index, error, note));
  const OneRow* input = announcedColumnsOfInPin(0);
  HintNames names;
  names.columns = input == nullptr ? QStringList() : QStringList(input->getColNamesDeep());
  for (const InputVariable& variable : m_variablesOfRun) {
    names.variables += variable.name();
  }
  if (const QString hint = expressionHint(error, output(index).expression, names);
      !hint.isEmpty()) {
    logExplanation(hint);
  }
}

QString ExpressionAction::explanation(int index, const ExpressionError& error,
                                      const QString& note) const {
  const TriedExpression tried = triedExpression(index);
  QStringList lines{
      QString::fromUtf8(error.position < 0 ? messages::kExpression : messages::kHere)};
  lines += markedExpression(output(index).expression, error).split(u'\n');
  for (QString& line : lines) {
    line = &line == &lines.front() ? line : QStringLiteral("    ") + line;
  }
  const bool isTried = m_isRowLoaded || !note.isEmpty();
  if (!tried.variables.empty() && isTried) {
    const QString values = valuesText(tried.variables);
    lines += isChecking() ? QString::fromUtf8(messages::kSampleValues).arg(values)
                          : QString::fromUtf8(messages::kValuesOfRow)
                                .arg(QString::number(rowNumber()), values);
  }
  if (!note.isEmpty()) {
    lines += note;
  }
  if (const QString command = evalCommand(tried); !command.isEmpty()) {
    lines += QString::fromUtf8(messages::kTry).arg(command);
  }
  return lines.join(QStringLiteral("\n  "));
}

TriedExpression ExpressionAction::triedExpression(int index) const {
  TriedExpression tried;
  tried.expression = output(index).expression;
  const QSet<QString> used = valueNames(tried.expression);
  for (std::size_t i = 0; i < m_variablesOfRun.size(); ++i) {
    const InputVariable& input = m_variablesOfRun[i];
    if (!used.contains(input.name())) {
      continue;
    }
    TriedVariable variable{input.name(), {}, kindOf(input) == VariableKind::text};
    if (m_isRowLoaded) {
      variable.value = m_evaluator.displayText(static_cast<int>(i));
      const bool isMissing = !variable.isText && variable.value.isEmpty();
      variable.value = isMissing ? QString() : variable.value;
    } else {
      variable.value = variable.isText ? input.text : shortestText(input.number);
    }
    tried.variables.push_back(variable);
  }
  tried.options = changedOptions(m_options);
  const QString rowNumberName = QStringLiteral("_n");
  if (m_options.addN && used.contains(rowNumberName)) {
    tried.variables.push_back({rowNumberName, QString::number(rowNumber()), false});
    tried.options += QStringLiteral("addN=0");
  }
  if (!detailsOfOutput(index).output.isEmpty()) {
    const MetaTypeColumn type = metaOfOutput(output(index).meta).type();
    tried.meta = QString(QChar(static_cast<char16_t>(type)));
  }
  return tried;
}

void ExpressionAction::warnAbout(int index, ResultUse use) const {
  const ExpressionPurpose purpose =
      use == ResultUse::truth ? ExpressionPurpose::condition : ExpressionPurpose::value;
  for (const QString& warning :
       warningsAbout(output(index).name, output(index).expression, purpose)) {
    logWithDetails(LogLevel::warning, warning, detailsOfOutput(index));
  }
}

void ExpressionAction::tellBackends() {
  QStringList labels;
  for (int i = 0; i < m_evaluator.outputCount(); ++i) {
    labels += QString::fromLatin1(backendLabel(m_evaluator.backend(i)));
  }
  if (HostServices* services = hostServices()) {
    services->backendsChosen(*this, labels);
  }
  if (m_observer != nullptr) {
    m_observer->backendsChosen(labels);
  }
}

bool ExpressionAction::showRow(const QStringList& results) {
  QStringList values;
  for (std::size_t i = 0; i < m_variablesOfRun.size(); ++i) {
    values += m_evaluator.displayText(static_cast<int>(i));
  }
  m_observer->rowEvaluated(values, results);
  return m_observer->waitForStep();
}

const char* ExpressionAction::failedRowsText() const {
  return messages::kFailedEvaluations;
}

void ExpressionAction::logError(const QString& text) const {
  MainUI::addLog(LogLevel::error, text);
}

QString ExpressionAction::failureText(const RowFailure& failure) const {
  switch (failure.kind) {
    case RowFailure::Kind::keyCast:
      return keyOutOfRangeText(failure.name, rowNumber(), failure.value);
    case RowFailure::Kind::nullKey:
      return messages::nullKeyRefused(failure.name, rowNumber());
    case RowFailure::Kind::evaluation:
      break;
  }
  return expressionFailureText(failure);
}

ExpressionAction::RowStep ExpressionAction::failAtRow() {
  const RowFailure& failure = m_evaluator.lastFailure();
  const QString text = failureText(failure);
  if (failure.kind == RowFailure::Kind::nullKey) {
    LogDetails details;
    details.row = rowNumber();
    logWithDetails(LogLevel::error, text, details);
  } else {
    const bool isKeyCast = failure.kind == RowFailure::Kind::keyCast;
    logFailure(LogLevel::error, text, failure.output, failure.error,
               isKeyCast ? QString::fromUtf8(messages::kKeyCastAdvice) : QString());
  }
  failRun();
  return RowStep::failed;
}

}  // namespace kelvarin
