#include "ui/language/part_evaluation.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include "ui/language/formula_evaluator.h"
#include "ui/language/messages.h"
#include "ui/language/outside_sources.h"

namespace kelvarin {

namespace {

using Kind = ExpressionPart::Kind;

constexpr qsizetype kLongestPart = 40;

// "null", "NaN", or empty where the value is neither.
QString missingKind(const PartValue& part) {
  if (!part.hasValue()) {
    return {};
  }
  if (part.value.isNull()) {
    return QStringLiteral("null");
  }
  const bool isNumber = part.value.type != ExpressionValue::Type::text;
  return isNumber && std::isnan(part.value.number) ? QStringLiteral("NaN") : QString();
}

bool isMissing(const PartValue& part) {
  return !missingKind(part).isEmpty();
}

bool isTrue(const ExpressionValue& value) {
  return !value.isNull() && value.number != 0.0;
}

bool isSameBits(double a, double b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// A condition's truth is 1 or 0 to the engines of numbers.
bool isSame(const ExpressionValue& a, const ExpressionValue& b) {
  using Type = ExpressionValue::Type;
  if ((a.type == Type::text) != (b.type == Type::text)) {
    return false;
  }
  return a.type == Type::text ? a.text == b.text && a.text.isNull() == b.text.isNull()
                              : isSameBits(a.number, b.number);
}

class PartsEvaluation {
 public:
  PartsEvaluation(const Formula& formula, std::chrono::steady_clock::time_point deadline)
      : m_formula(formula),
        m_deadline(deadline),
        m_variables(variableNamesOf(formula)),
        m_evaluator(formula, BackendKind::string) {}

  PartValues run() {
    m_made.tree = SubExpressions(m_formula.output.expression, m_variables);
    m_made.values.resize(m_made.tree.size());
    m_outputs.resize(m_made.tree.size(), kNoOutput);
    findTargets();
    compileAll();
    m_evaluator.start();
    const auto row = m_evaluator.loadBestRow();
    m_made.row = row == FormulaEvaluator::Row::samples ? -1 : m_evaluator.rowNumber();
    evaluateAll();
    findUnused();
    findOrigins();
    if (m_made.isComplete && m_made.tree.isComplete()) {
      compareWithRun();
    }
    return std::move(m_made);
  }

 private:
  static constexpr int kNoOutput = -1;

  bool isLate() {
    m_made.isComplete = m_made.isComplete && std::chrono::steady_clock::now() < m_deadline;
    return !m_made.isComplete;
  }

  // Variables that the expression changes have another value in a part than in the whole.
  void findTargets() {
    for (const ExpressionPart& part : m_made.tree.parts()) {
      if (part.kind == Kind::assignment) {
        m_targets += namesIn(m_made.tree.textOf(part.parts.front()));
      }
    }
  }

  // Variables need no evaluation.
  bool isVariable(std::size_t index) const {
    const ExpressionPart& part = m_made.tree[index];
    return part.kind == Kind::name && m_evaluator.variable(part.sign).has_value();
  }

  // The whole expression first, for the time may not suffice for all of its parts.
  std::vector<std::size_t> order() const {
    std::vector<std::size_t> order(m_made.tree.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (!order.empty()) {
      std::rotate(order.begin(), order.end() - 1, order.end());
    }
    return order;
  }

  void compileAll() {
    for (const std::size_t i : order()) {
      PartValue& made = m_made.values[i];
      const QString text = m_made.tree.textOf(i);
      const OutsideSources sources(text, m_variables);
      made.mayDiffer =
          sources.any() || (!m_targets.isEmpty() && m_targets.intersects(namesIn(text)));
      if (isVariable(i)) {
        continue;
      }
      if (sources.readsFile()) {
        made.failure = language_messages::readsFile(sources.fileFunction());
      } else if (isLate()) {
        made.failure = language_messages::tookTooLong();
      } else {
        compile(i, text);
      }
    }
  }

  void compile(std::size_t index, const QString& text) {
    const Status<ExpressionError> added = m_evaluator.add(text, ResultUse::anyValue);
    if (added) {
      m_outputs[index] = m_outputCount++;
    } else {
      m_made.values[index].failure = added.error().message;
    }
  }

  void evaluateAll() {
    for (const std::size_t i : order()) {
      PartValue& made = m_made.values[i];
      if (isVariable(i)) {
        made.value = *m_evaluator.variable(m_made.tree[i].sign);
      } else if (m_outputs[i] != kNoOutput && isLate()) {
        made.failure = language_messages::tookTooLong();
      } else if (m_outputs[i] != kNoOutput) {
        FormulaValue value = m_evaluator.evaluate(m_outputs[i]);
        made.value = std::move(value.value);
        made.failure = std::move(value.failure);
      }
    }
  }

  // Each part stands behind its own parts.
  void findUnused() {
    for (std::size_t i = m_made.tree.size(); i-- > 0;) {
      const ExpressionPart& part = m_made.tree[i];
      for (std::size_t k = 0; k < part.parts.size(); ++k) {
        m_made.values[part.parts[k]].isUsed = m_made.values[i].isUsed && isTaken(part, k);
      }
    }
  }

  bool isTaken(const ExpressionPart& part, std::size_t index) const {
    const PartValue& condition = m_made.values[part.parts.front()];
    if (part.kind != Kind::conditional || index == 0 || !condition.hasValue()) {
      return true;
    }
    return isTrue(condition.value) == (index == 1);
  }

  // The first of its own parts that is missing and counts; kNone where there is none.
  std::size_t missingPartOf(std::size_t index) const {
    for (const std::size_t part : m_made.tree[index].parts) {
      if (m_made.values[part].isUsed && isMissing(m_made.values[part])) {
        return part;
      }
    }
    return ExpressionPart::kNone;
  }

  void findOrigins() {
    for (std::size_t i = 0; i < m_made.tree.size(); ++i) {
      PartValue& made = m_made.values[i];
      if (made.isUsed && isMissing(made) && missingPartOf(i) == ExpressionPart::kNone) {
        made.isOrigin = true;
        made.origin = originText(i);
      }
    }
    std::size_t at = m_made.tree.root();
    if (at == ExpressionPart::kNone || !isMissing(m_made.values[at])) {
      return;
    }
    for (std::size_t next = missingPartOf(at); next != ExpressionPart::kNone;
         next = missingPartOf(at)) {
      at = next;
    }
    m_made.cause = m_made.values[at].origin;
  }

  QString originText(std::size_t index) const {
    const QString kind = missingKind(m_made.values[index]);
    if (m_made.tree[index].kind == Kind::name) {
      return language_messages::becauseOfVariable(kind, m_made.tree[index].sign);
    }
    QString text = m_made.tree.textOf(index).simplified();
    if (text.size() > kLongestPart) {
      text = text.first(kLongestPart) + u'\u2026';
    }
    return language_messages::becauseOfPart(kind, text);
  }

  void compareWithRun() {
    FormulaEvaluator evaluator(m_formula);
    const ResultUse use = m_formula.use == ResultUse::column && !isNumberMeta(m_formula.output.meta)
                              ? ResultUse::column
                              : ResultUse::anyValue;
    if (!evaluator.add(m_formula.output.expression, use)) {
      return;
    }
    const BackendKind engine = evaluator.output(0).engine.engine;
    if (engine == BackendKind::string) {
      return;
    }
    evaluator.start();
    (void)evaluator.loadBestRow();
    FormulaValue value = evaluator.evaluate(0);
    const PartValue& shown = m_made.values.back();
    EngineValue ofRun{.engine = engine, .value = value.value, .failure = value.failure};
    ofRun.differs = !shown.mayDiffer && (shown.hasValue() != value.failure.isEmpty() ||
                                         !isSame(shown.value, value.value));
    m_made.ofRun = ofRun;
  }

  const Formula& m_formula;
  const std::chrono::steady_clock::time_point m_deadline;
  const QSet<QString> m_variables;
  FormulaEvaluator m_evaluator;
  PartValues m_made;
  QSet<QString> m_targets;
  std::vector<int> m_outputs;  // of the evaluator, one a part
  int m_outputCount = 0;
};

}  // namespace

PartValues evaluateParts(const Formula& formula, std::chrono::steady_clock::time_point deadline) {
  const Formula replaced = withParametersReplaced(formula);
  return PartsEvaluation(replaced, deadline).run();
}

PartValues partsWithoutValues(const Formula& formula, const QString& failure) {
  PartValues made;
  made.tree = SubExpressions(formula.output.expression, variableNamesOf(formula));
  PartValue none;
  none.failure = failure;
  made.values.resize(made.tree.size(), none);
  made.isComplete = false;
  return made;
}

}  // namespace kelvarin
