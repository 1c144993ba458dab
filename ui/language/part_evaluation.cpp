#include "ui/language/part_evaluation.h"

#include <array>
#include <cmath>

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

// A condition's truth is 1 or 0 to the engines of numbers.
bool isSame(const ExpressionValue& a, const ExpressionValue& b) {
  using Type = ExpressionValue::Type;
  if ((a.type == Type::text) != (b.type == Type::text)) {
    return false;
  }
  return a.type == Type::text ? a.text == b.text && a.text.isNull() == b.text.isNull()
                              : hasSameBits(a.number, b.number);
}

// Values of parts that stand for the parts in the text of a larger one, so that a long sum is not
// compiled anew, whole, for each of its beginnings.
const std::array kStandIns = {QStringLiteral("\u00A7left"), QStringLiteral("\u00A7right")};
const std::array kTextStandIns = {QStringLiteral("\u00A7leftText"),
                                  QStringLiteral("\u00A7rightText")};
constexpr qsizetype kLongPart = 100;

Formula withStandIns(Formula formula) {
  for (std::size_t i = 0; i < kStandIns.size(); ++i) {
    InputVariable variable;
    variable.label = kStandIns[i];
    formula.variables.push_back(variable);
    variable.label = kTextStandIns[i];
    variable.isNumber = false;
    formula.variables.push_back(variable);
  }
  return formula;
}

// An operator to which a value is all there is to a part, whatever it was computed from.
bool takesValuesOnly(const ExpressionPart& part) {
  static const QSet<QString> signs = {"+", "-", "*",  "/",  "%",  "^", "//",
                                      "<", ">", "<=", ">=", "==", "!="};
  return part.kind == Kind::binary && signs.contains(part.sign);
}

class PartsEvaluation {
 public:
  PartsEvaluation(const Formula& formula, std::chrono::steady_clock::time_point deadline)
      : m_formula(withStandIns(formula)),
        m_deadline(deadline),
        m_variables(variableNamesOf(formula)),
        m_evaluator(m_formula, BackendKind::string) {}

  PartValues run() {
    m_made.tree = SubExpressions(m_formula.output.expression, m_variables);
    m_made.values.resize(m_made.tree.size());
    findTargets();
    const auto row = m_evaluator.loadBestRow();
    m_made.row = row == FormulaEvaluator::Row::samples ? -1 : m_evaluator.rowNumber();
    evaluateAll();
    findUnused();
    findOrigins();
    if (m_made.tree.isComplete()) {
      compareWithRun();
    }
    return std::move(m_made);
  }

 private:
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
    m_mayDiffer =
        !m_targets.isEmpty() || OutsideSources(m_made.tree.expression(), m_variables).any();
  }

  // The whole expression first, for the time may not suffice for all of its parts.
  void evaluateAll() {
    const std::size_t root = m_made.tree.root();
    if (root != ExpressionPart::kNone) {
      evaluate(root);
    }
    for (std::size_t i = 0; i < root && i < m_made.tree.size(); ++i) {
      evaluate(i);
    }
  }

  void evaluate(std::size_t index) {
    PartValue& made = m_made.values[index];
    const ExpressionPart& part = m_made.tree[index];
    const bool isLong = part.size > kLongPart && !part.parts.empty() && index != m_made.tree.root();
    const QString text = m_made.tree.textOf(index);
    if (m_mayDiffer && !takeSources(text, made)) {
      return;
    }
    if (part.kind == Kind::name) {  // variables need no evaluation
      if (const std::optional<ExpressionValue> value = m_evaluator.variable(part.sign)) {
        made.value = *value;
        return;
      }
    }
    if (isLate()) {
      made.failure = language_messages::tookTooLong();
      return;
    }
    if (!isLong || !evaluateWithStandIns(index)) {
      take(made, m_evaluator.evaluateOnce(text));
    }
  }

  // False where it reads a file.
  bool takeSources(const QString& text, PartValue& made) const {
    const OutsideSources sources(text, m_variables);
    made.mayDiffer = sources.any() || m_targets.intersects(namesIn(text));
    if (sources.readsFile()) {
      made.failure = language_messages::readsFile(sources.fileFunction());
    }
    return !sources.readsFile();
  }

  static void take(PartValue& made, FormulaValue value) {
    made.value = std::move(value.value);
    made.failure = std::move(value.failure);
  }

  // False where the part must be evaluated as it is written.
  bool evaluateWithStandIns(std::size_t index) {
    const ExpressionPart& part = m_made.tree[index];
    if (!takesValuesOnly(part) || !m_targets.isEmpty()) {
      return false;
    }
    QStringList sides;
    for (std::size_t i = 0; i < kStandIns.size(); ++i) {
      const PartValue& side = m_made.values[part.parts[i]];
      if (!side.hasValue() || side.value.type == ExpressionValue::Type::boolean) {
        return false;
      }
      const bool isText = side.value.type == ExpressionValue::Type::text;
      sides += isText ? kTextStandIns[i] : kStandIns[i];
      m_evaluator.setVariable(sides.back(), side.value);
    }
    FormulaValue value = m_evaluator.evaluateOnce(sides.join(u' ' + part.sign + u' '));
    if (!value.failure.isEmpty()) {
      return false;
    }
    take(m_made.values[index], std::move(value));
    return true;
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

  const Formula m_formula;  // with stand-ins
  const std::chrono::steady_clock::time_point m_deadline;
  const QSet<QString> m_variables;
  FormulaEvaluator m_evaluator;
  PartValues m_made;
  QSet<QString> m_targets;
  bool m_mayDiffer = false;  // some part
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
