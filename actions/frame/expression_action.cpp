#include "actions/frame/expression_action.h"

#include "actions/frame/messages.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/messages.h"
#include "expression/evaluator/expression_warnings.h"
#include "expression/help/unknown_name_hint.h"
#include "host/contract/host_services.h"

namespace kelvarin {

char ExpressionAction::init() {
  ActionItem::init();
  m_evaluator.clear();
  m_variableNames.clear();
  return reportUnknownElements(*this, knownElements()) ? 1 : 0;
}

char ExpressionAction::close() {
  const QStringList warnings = hasFailed() ? QStringList() : m_evaluator.closingWarnings();
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
  std::vector<InputVariable> variables = inputs;
  m_variableNames.clear();
  for (InputVariable& variable : variables) {
    variable.label = expand(variable.label);
    m_variableNames += variable.name();
  }
  m_evaluator.configure(options, variables, globalParameters(), isObserved());
  if (!prepareDates(expressions)) {
    return false;
  }
  const Status<QString> bound = m_evaluator.bind(columns, expand, elementCount);
  if (!bound) {
    logError(bound.error());
  }
  return static_cast<bool>(bound);
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
      return true;
    case DateStatus::dateFormatUnknown:
      break;
  }
  logError(dateFormatUnknownText());
  return false;
}

QString ExpressionAction::dateFormatUnknownText() const {
  return isChecking() ? QString::fromUtf8(messages::kFormatUnknown)
                      : messages::dateFormatUnknownInRun();
}

bool ExpressionAction::compileOutputs(const std::vector<OutputVariable>& outputs, ResultUse use) {
  bool isGood = true;
  for (const OutputVariable& output : outputs) {
    warnAbout(output);
    if (isChecking()) {
      isGood &= checkOutput(output, use);
    } else if (const auto compiled = m_evaluator.compile(output, use); !compiled) {
      RowFailure failure;
      failure.name = output.name;
      failure.error = compiled.error();
      logError(expressionFailureText(failure));
      hintAt(compiled.error().message, output.expression);
      isGood = false;
    }
  }
  if (isGood && !isChecking()) {
    tellBackends();
  }
  return isGood;
}

// A reference time that cannot be parsed has been warned about, once for all outputs.
bool ExpressionAction::checkOutput(const OutputVariable& output, ResultUse use) {
  const QString text = m_evaluator.check(output, use);
  if (text.isEmpty() || text == QLatin1String(messages::kReferenceUnparsable)) {
    return true;
  }
  logError(checkText(output.name, text));
  hintAt(text, output.expression);
  return false;
}

void ExpressionAction::hintAt(const QString& failure, const QString& expression) const {
  const OneRow* input = announcedColumnsOfInPin(0);
  const QStringList columns =
      input == nullptr ? QStringList() : QStringList(input->getColNamesDeep());
  if (const QString hint = unknownNameHint(failure, expression, m_variableNames, columns);
      !hint.isEmpty()) {
    MainUI::addLog(LogLevel::information, hint);
  }
}

void ExpressionAction::warnAbout(const OutputVariable& output) const {
  for (const QString& warning : warningsAbout(output.name, output.expression)) {
    MainUI::addLog(LogLevel::warning, warning);
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
  for (int i = 0; i < m_variableNames.size(); ++i) {
    values += m_evaluator.displayText(i);
  }
  m_observer->rowEvaluated(values, results);
  return m_observer->waitForStep();
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
  logError(failureText(m_evaluator.lastFailure()));
  failRun();
  return RowStep::failed;
}

}  // namespace kelvarin
