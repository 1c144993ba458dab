#include "actions/frame/expression_action.h"

#include <algorithm>

#include "actions/frame/messages.h"
#include "actions/frame/variables_xml.h"
#include "expression/backends/expression_text.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/expression_mark.h"
#include "expression/errors/messages.h"
#include "expression/evaluator/expression_warnings.h"
#include "expression/evaluator/messages.h"
#include "expression/evaluator/variable_names.h"
#include "expression/help/expression_hint.h"
#include "expression/options/evaluation_attributes.h"
#include "host/contract/batch_steps.h"
#include "host/contract/host_services.h"
#include "host/contract/missing_column.h"

namespace kelvarin {

namespace {

// Null for a missing value.
QString shownText(const ExpressionValue& value) {
  if (value.type == ExpressionValue::Type::text) {
    return value.text;
  }
  return value.isNull() ? QString() : shortestText(value.number);
}

ExpressionPurpose purposeOf(ResultUse use) {
  return use == ResultUse::truth ? ExpressionPurpose::condition : ExpressionPurpose::value;
}

}  // namespace

char ExpressionAction::init() {
  ActionItem::init();
  m_evaluator.clear();
  m_variablesOfRun.clear();
  m_outputsOfRun.clear();
  m_engines.clear();
  m_isRowLoaded = false;
  m_observedRow = {};
  return 0;
}

char ExpressionAction::close() {
  const FailureCount& failures = m_evaluator.rows.failures();
  QStringList warnings = hasFailed() ? QStringList() : m_evaluator.rows.closingWarnings();
  if (!hasFailed() && failures.count > 0) {
    warnings += failedRowsText(failures);
  }
  for (const QString& warning : warnings) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  reportOutputs();
  m_evaluator.clear();
  return 0;
}

// Of a check, where everything compiles.
void ExpressionAction::reportOutputs() const {
  HostServices* services = hostServices();
  const bool isRun = m_evaluator.rows.isStarted();
  if (services == nullptr || m_engines.empty() || isChecking() == isRun) {
    return;
  }
  // Rows may have shown that they must go one by one.
  const auto* transform = dynamic_cast<const BatchTransform*>(this);
  const bool isByBatch = std::ranges::all_of(m_engines, &EngineChoice::takesBatches) &&
                         (!isRun || (transform != nullptr && transform->stage() != nullptr));
  ActionReport report;
  for (int i = 0; i < static_cast<int>(m_engines.size()); ++i) {
    const EngineChoice& choice = m_engines[static_cast<std::size_t>(i)];
    OutputReport output;
    output.name = reportedName(i);
    output.engine = QString::fromLatin1(backendLabel(choice.engine));
    output.slowedBy = choice.token;
    output.reason = action_messages::reasonForEngine(choice.reason);
    output.isByBatch = isByBatch;
    output.batchRefusal = choice.batchRefusal.token;
    output.failures = isRun ? m_evaluator.rows.failureCount(i) : -1;
    report.outputs.push_back(output);
  }
  if (isRun) {
    addValueCounts(report.outputs);
  }
  services->actionReported(*this, report);
}

QString ExpressionAction::reportedName(int output) const {
  const QString name = detailsOfOutput(output).output;
  return name.isEmpty() ? action_messages::condition() : name;
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

EvaluationOptions ExpressionAction::expandedOptions() const {
  EvaluationOptions options = m_options;
  options.time.referenceTime = expandString(options.time.referenceTime);
  options.time.dateFormat = expandString(options.time.dateFormat);
  return options;
}

std::vector<InputVariable> ExpressionAction::withExpandedLabels(
    std::vector<InputVariable> inputs) const {
  for (InputVariable& variable : inputs) {
    variable.label = expandString(variable.label);
  }
  return inputs;
}

ExpressionCheck ExpressionAction::check(const OutputVariable& output, ResultUse use) const {
  const EvaluationOptions options = expandedOptions();
  const std::vector<InputVariable> variables = withExpandedLabels(m_inputs);
  if (const auto named = checkNames(variables, options); !named) {
    return ExpressionCheck::failure(named.error());
  }
  ExpressionSet expressions;
  expressions.configure(options, variables, globalParameters(), false);
  OutputVariable expanded = output;
  expanded.name = expandString(output.name);
  ExpressionCheck check = expressions.check(expanded, use);
  const QStringList warnings = warningsAboutNames(variables) +
                               warningsAbout(expanded.name, expanded.expression, purposeOf(use));
  check.setWarnings(warnings + check.warnings);
  return check;
}

bool ExpressionAction::startEvaluator(const OneRow& columns,
                                      const std::vector<InputVariable>& inputs,
                                      const QStringList& expressions, int elementCount) {
  const EvaluationOptions options = expandedOptions();
  m_variablesOfRun = withExpandedLabels(inputs);
  if (const auto named = checkNames(m_variablesOfRun, options); !named) {
    logError(named.error());
    return false;
  }
  for (const QString& warning : warningsAboutNames(m_variablesOfRun)) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  m_evaluator.expressions.configure(options, m_variablesOfRun, globalParameters(), isObserved());
  if (!prepareDates(expressions)) {
    return false;
  }
  const Status<BindingFailure> bound = bindColumns(columns, elementCount);
  if (!bound) {
    reportBindingFailure(columns, bound.error());
  } else if (isChecking()) {
    reportTextsAsNumbers(columns);
  }
  return static_cast<bool>(bound);
}

Status<BindingFailure> ExpressionAction::bindColumns(const OneRow& columns, int elementCount) {
  const auto expand = [this](const QString& text) { return expandString(text); };
  return m_evaluator.expressions.bind(columns, expand, elementCount);
}

void ExpressionAction::startShowing(const OneRow& columns) {
  m_variablesOfRun = withExpandedLabels(m_inputs);
  m_evaluator.expressions.configure(expandedOptions(), m_variablesOfRun, globalParameters(),
                                    isObserved());
  (void)m_evaluator.expressions.prepareDateContext({});
  (void)bindColumns(columns, 1);
}

// A run can count the texts that are no numbers; here they can only be expected.
void ExpressionAction::reportTextsAsNumbers(const OneRow& columns) const {
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
    details.elementPosition = locationOfInput(static_cast<int>(i));
    logWithDetails(LogLevel::information, action_messages::textEntersAsNumber(column), details);
  }
}

void ExpressionAction::reportBindingFailure(const OneRow& columns,
                                            const BindingFailure& failure) const {
  LogDetails details;
  const bool isMissing = failure.kind == BindingFailure::Kind::columnNotFound;
  if (isMissing) {
    details.column = failure.column;
    details.elementPosition = locationOfInput(failure.input);
  }
  logWithDetails(LogLevel::error, failure.text, details);
  if (isMissing) {
    logExplanation(missingColumnHint(details.column, columns.getColNamesDeep()));
  }
}

bool ExpressionAction::prepareDates(const QStringList& expressions) {
  const DateStatus status = m_evaluator.expressions.prepareDateContext(expressions);
  if (const QString advice = m_evaluator.expressions.dateFormatAdvice(); !advice.isEmpty()) {
    MainUI::addLog(LogLevel::warning, advice);
  }
  switch (status) {
    case DateStatus::ready:
      return true;
    case DateStatus::referenceTimeUnparsable:
      MainUI::addLog(LogLevel::warning, referenceTimeWarning());
      logExplanation(m_evaluator.expressions.referenceTimeAdvice());
      return true;
    case DateStatus::dateFormatUnknown:
      break;
  }
  logError(dateFormatUnknownText());
  logExplanation(action_messages::dateFormatNeeded());
  return false;
}

QString ExpressionAction::dateFormatUnknownText() const {
  return isChecking() ? messages::formatUnknown() : action_messages::dateFormatUnknownInRun();
}

bool ExpressionAction::compileOutputs(const std::vector<OutputVariable>& outputs, ResultUse use) {
  m_outputsOfRun = outputs;
  bool isGood = true;
  for (int i = 0; i < static_cast<int>(outputs.size()); ++i) {
    warnAbout(i, use);
    if (isChecking()) {
      isGood &= checkOutput(i, use);
    } else if (const auto compiled = m_evaluator.expressions.compile(output(i), use); !compiled) {
      RowFailure failure;
      failure.name = output(i).name;
      failure.error = compiled.error();
      logFailure(LogLevel::error, expressionFailureText(failure), i, failure.error);
      isGood = false;
    } else {
      const ExpressionSet& expressions = m_evaluator.expressions;
      m_engines.push_back(expressions.output(expressions.outputCount() - 1).engine);
    }
  }
  if (m_engines.size() < outputs.size()) {
    m_engines.clear();
  }
  m_isRowLoaded = !isChecking();  // before anything is evaluated
  if (isGood && !isChecking()) {
    m_evaluator.start();
    if (run() != nullptr) {
      m_evaluator.rows.setFailureListener(run()->reportsRejectedRows ? this : nullptr);
      m_evaluator.rows.advanceRows(static_cast<std::size_t>(run()->firstRow));
    }
    reportBackends();
  }
  return isGood;
}

// A reference time that cannot be parsed has been warned about, once for all outputs.
bool ExpressionAction::checkOutput(int index, ResultUse use) {
  const ExpressionCheck check = m_evaluator.expressions.check(output(index), use);
  for (const QString& warning : check.warnings) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  if (check.isCompiled()) {
    m_engines.push_back(*check.engine);
  }
  if (check.text.isEmpty() || check.error.kind == ExpressionError::Kind::referenceTimeUnparsable) {
    return true;
  }
  if (check.isCompiled()) {
    return reportTriedOutput(index, check);
  }
  logFailure(LogLevel::error, checkText(output(index).name, check.text), index, check.error);
  return false;
}

// The expression is well formed; what it does with the sample values is judged as a run would.
bool ExpressionAction::reportTriedOutput(int index, const ExpressionCheck& check) {
  const QString shown = checkText(output(index).name, check.text);
  if (check.error.kind == ExpressionError::Kind::numberForText) {
    logAboutOutput(LogLevel::warning, shown, index, messages::numberBecomesText());
    return true;
  }
  const bool stops = mayFailedRowStop();
  logFailure(stops ? LogLevel::error : LogLevel::warning, shown, index, check.error,
             stops ? messages::sampleMayDiffer() : messages::failedRowsGoOn());
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
  details.expression = output(index).expression;
  if (m_isRowLoaded) {
    for (const TriedVariable& variable : triedExpression(index).variables) {
      details.values.push_back({variable.name, variable.value, variable.isText});
    }
  }
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
  QStringList lines{error.position < 0 ? messages::expression() : messages::here()};
  lines += markedExpression(output(index).expression, error).split(u'\n');
  for (QString& line : lines) {
    line = &line == &lines.front() ? line : QStringLiteral("    ") + line;
  }
  const bool isTried = m_isRowLoaded || !note.isEmpty();
  if (!tried.variables.empty() && isTried) {
    const QString values = valuesText(tried.variables);
    lines +=
        isChecking() ? messages::sampleValues(values) : messages::valuesOfRow(rowNumber(), values);
  }
  if (!note.isEmpty()) {
    lines += note;
  }
  if (const QString command = evalCommand(tried); !command.isEmpty()) {
    lines += messages::tryIt(command);
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
      variable.value = shownText(m_evaluator.expressions.inputValue(static_cast<int>(i)));
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
  for (const QString& warning :
       warningsAbout(output(index).name, output(index).expression, purposeOf(use))) {
    logWithDetails(LogLevel::warning, warning, detailsOfOutput(index));
  }
}

void ExpressionAction::reportBackends() {
  QStringList labels;
  for (int i = 0; i < m_evaluator.expressions.outputCount(); ++i) {
    labels += QString::fromLatin1(backendLabel(m_evaluator.expressions.backend(i)));
  }
  if (HostServices* services = hostServices()) {
    services->backendsChosen(*this, labels);
  }
  if (m_observer != nullptr) {
    m_observer->backendsChosen(labels);
  }
}

void ExpressionAction::evaluationFailed(const RowFailure& failure, const OneRow& row) {
  HostServices* services = hostServices();
  if (services == nullptr || !goesOnAfter(failure)) {
    return;
  }
  RejectedRow rejected;
  rejected.number = rowNumber();
  const bool isCondition = detailsOfOutput(failure.output).output.isEmpty();
  rejected.output = isCondition ? action_messages::condition() : failure.name;
  rejected.message = failure.error.message;
  rejected.input = &row;
  services->rowRejected(*this, rejected);
}

QString ExpressionAction::failedRowsText(const FailureCount& failures) const {
  return messages::failedEvaluations(failures.count, failures.firstName, failures.firstRow,
                                     failures.firstMessage);
}

void ExpressionAction::logError(const QString& text) const {
  MainUI::addLog(LogLevel::error, text);
}

QString ExpressionAction::failureText(const RowFailure& failure) const {
  switch (failure.kind) {
    case RowFailure::Kind::keyCast:
      return keyOutOfRangeText(failure.name, rowNumber(), failure.value);
    case RowFailure::Kind::nullKey:
      return action_messages::nullKeyRefused(failure.name, rowNumber());
    case RowFailure::Kind::evaluation:
      break;
  }
  return expressionFailureText(failure);
}

ExpressionAction::RowStep ExpressionAction::failAtRow() {
  const RowFailure& failure = m_evaluator.rows.lastFailure();
  const QString text = failureText(failure);
  if (failure.kind == RowFailure::Kind::nullKey) {
    LogDetails details;
    details.row = rowNumber();
    logWithDetails(LogLevel::error, text, details);
  } else {
    const bool isKeyCast = failure.kind == RowFailure::Kind::keyCast;
    logFailure(LogLevel::error, text, failure.output, failure.error,
               isKeyCast ? messages::keyCastAdvice() : QString());
  }
  failRun();
  return RowStep::failed;
}

}  // namespace kelvarin
