#include "actions/frame/expression_action.h"

#include "actions/frame/messages.h"
#include "expression/errors/messages.h"
#include "host/contract/host_services.h"

namespace kelvarin {

char ExpressionAction::init() {
  ActionItem::init();
  m_evaluator.clear();
  m_variableCount = 0;
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
  const bool hasRunEnded = run() != nullptr && !run()->isRunning();
  return hasRunEnded ? nullptr : announcedColumnsOfInPin(0);
}

bool ExpressionAction::startEvaluator(const OneRow& columns,
                                      const std::vector<InputVariable>& inputs,
                                      const QStringList& expressions) {
  m_evaluator.configure(m_options, inputs, globalParameters(), isObserved());
  m_variableCount = static_cast<int>(inputs.size());
  if (!prepareDates(expressions)) {
    return false;
  }
  const auto expand = [this](const QString& text) { return expandString(text); };
  const Status<QString> bound = m_evaluator.bind(columns, expand);
  if (!bound) {
    logError(bound.error());
  }
  return static_cast<bool>(bound);
}

bool ExpressionAction::prepareDates(const QStringList& expressions) {
  switch (m_evaluator.prepareDateContext(expressions)) {
    case DateStatus::ready:
      return true;
    case DateStatus::referenceTimeUnparsable:
      MainUI::addLog(LogLevel::warning, referenceTimeWarning());
      return true;
    case DateStatus::dateFormatUnknown:
      break;
  }
  logError(isChecking() ? QString::fromUtf8(messages::kFormatUnknown)
                        : messages::dateFormatUnknownInRun());
  return false;
}

bool ExpressionAction::compileOutputs(const std::vector<OutputVariable>& outputs, ResultUse use) {
  bool isGood = true;
  for (const OutputVariable& output : outputs) {
    if (isChecking()) {
      isGood &= checkOutput(output, use);
    } else if (const auto compiled = m_evaluator.compile(output, use); !compiled) {
      RowFailure failure;
      failure.name = output.name;
      failure.error = compiled.error();
      logError(expressionFailureText(failure));
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
  return false;
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
  for (int i = 0; i < m_variableCount; ++i) {
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
      return messages::keyOutOfRange(failure.name, rowNumber(), failure.value);
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
