#include "ui/language/formula_service.h"

#include "ui/language/formula_check.h"
#include "ui/language/messages.h"

namespace kelvarin {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLimit{1000};
// Within which rows and parts are evaluated; a single one may take longer.
constexpr std::chrono::milliseconds kTimeForAll{700};

enum Question { aboutFormula, aboutPart, aboutParts };

FormulaValue valueNotTried() {
  FormulaValue value;
  value.failure = BoundedWorker::isOneLeftBehind() ? language_messages::isBusy()
                                                   : language_messages::tookTooLong();
  return value;
}

}  // namespace

FormulaService::FormulaService(QObject* parent) : QObject(parent), m_worker(kLimit) {}

quint64 FormulaService::ask(const Formula& formula) {
  const quint64 version = ++m_version;
  BoundedWorker::Job job;
  job.compute = [this, formula, version](bool isCareful) -> std::function<void()> {
    const CheckDepth depth = isCareful ? CheckDepth::compiledOnly : CheckDepth::evaluated;
    FormulaAnswer answer = checkFormula(formula, depth, Clock::now() + kTimeForAll);
    answer.version = version;
    return [this, answer] { emit answered(answer); };
  };
  job.giveUp = [this, version] {
    FormulaAnswer answer = answerAboutTime();
    answer.version = version;
    emit answered(answer);
  };
  m_worker.run(aboutFormula, std::move(job));
  return version;
}

quint64 FormulaService::askPart(const Formula& formula, qsizetype start, qsizetype size) {
  const quint64 version = ++m_version;
  BoundedWorker::Job job;
  const auto notTried = [this, version, start, size] {
    PartAnswer answer;
    answer.version = version;
    answer.start = start;
    answer.size = size;
    answer.value = valueNotTried();
    emit partAnswered(answer);
  };
  job.compute = [=, this](bool isCareful) -> std::function<void()> {
    if (isCareful) {
      return notTried;
    }
    PartAnswer answer = evaluatePart(formula, start, size);
    answer.version = version;
    return [this, answer] { emit partAnswered(answer); };
  };
  job.giveUp = notTried;
  m_worker.run(aboutPart, std::move(job));
  return version;
}

quint64 FormulaService::askParts(const Formula& formula) {
  const quint64 version = ++m_version;
  BoundedWorker::Job job;
  const auto notTried = [this, version, formula] {
    PartValues values = partsWithoutValues(formula, valueNotTried().failure);
    values.version = version;
    emit partsAnswered(values);
  };
  job.compute = [=, this](bool isCareful) -> std::function<void()> {
    if (isCareful) {
      return notTried;
    }
    PartValues values = evaluateParts(formula, Clock::now() + kTimeForAll);
    values.version = version;
    return [this, values] { emit partsAnswered(values); };
  };
  job.giveUp = notTried;
  m_worker.run(aboutParts, std::move(job));
  return version;
}

}  // namespace kelvarin
