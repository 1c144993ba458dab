#include "expression/evaluator/expression_set.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include <QDateTime>
#include <QSet>

#include "expression/backends/expression_text.h"
#include "expression/batches/typed_parser.h"
#include "expression/dates/reference_time_advice.h"
#include "expression/errors/expression_mark.h"
#include "expression/evaluator/backend_choice.h"
#include "expression/functions/called_functions.h"

namespace kelvarin {

namespace {

constexpr int kSeedFromClock = -1;

std::uint32_t seedOf(const TimeParameters& time, std::optional<std::uint32_t> seedOfRun) {
  if (time.seed != kSeedFromClock) {
    return static_cast<std::uint32_t>(time.seed);
  }
  // kept: the clock contributes its milliseconds only, a thousand sequences.
  const std::int64_t clock = QDateTime::currentMSecsSinceEpoch() % 1000;
  return seedOfRun.value_or(static_cast<std::uint32_t>(clock));
}

// An expression left empty is the missing value of its column.
QString withoutEmptiness(const OutputVariable& output, ResultUse use) {
  if (use != ResultUse::column || !output.expression.trimmed().isEmpty()) {
    return output.expression;
  }
  return isNumberMeta(output.meta) ? QStringLiteral("_null") : QStringLiteral("_nullS");
}

}  // namespace

void ExpressionSet::clear() {
  m_outputs.clear();
  m_binding.clear();
  m_stringBackend = std::make_unique<StringBackend>();
  m_functions = {};
  m_constants = constantsOf(nullptr);
  m_variables.reset(false);
  m_required.reset();
  m_isObserved = false;
  m_seedOfRun.reset();
  m_texts.clear();
  m_indices.clear();
  m_inputs.clear();
  m_options = {};
}

void ExpressionSet::configure(const EvaluationOptions& options,
                              const std::vector<InputVariable>& inputs,
                              const GlobalParameters* parameters, bool isObserved) {
  clear();
  m_options = options;
  m_inputs = inputs;
  m_isObserved = isObserved;
  m_constants = constantsOf(parameters);
  m_functions.dates.configure(options.time);
  if (parameters != nullptr) {
    m_seedOfRun = parameters->randomSeed();
    m_functions.dates.fixCurrentTime(parameters->currentTime());
  }
  m_functions.filesFolder = parameters == nullptr ? QString() : parameters->dataDirRead();
  m_variables.reset(options.addN);
  m_texts.resize(inputs.size());
  QSet<QString> names = namesOf(m_variables);
  for (const InputVariable& input : inputs) {
    const bool isText = kindOf(input) == VariableKind::text;
    const std::size_t index = isText ? m_variables.addText() : m_variables.addNumber();
    m_indices.push_back(index);
    if (const QString name = input.name(); !names.contains(name)) {
      names.insert(name);
      m_variables.name({name, isText, index});
    }
  }
}

bool ExpressionSet::hasDateInputs() const {
  return std::any_of(m_inputs.begin(), m_inputs.end(), [](const InputVariable& input) {
    return kindOf(input) == VariableKind::date;
  });
}

DateStatus ExpressionSet::prepareDateContext(const QStringList& expressions) {
  m_functions.seed(seedOf(m_options.time, m_seedOfRun));
  const DateStatus status = prepareDates(m_functions.dates, expressions, hasDateInputs());
  setCurrentTime(m_constants, m_functions.dates);
  return status;
}

QString ExpressionSet::referenceTimeAdvice() const {
  return adviceOnReferenceTime(m_options.time.referenceTime);
}

Status<BindingFailure> ExpressionSet::bind(const OneRow& columns, const RowBinding::Expand& expand,
                                           int elementCount) {
  return m_binding.bind(m_inputs, m_indices, columns, expand, elementCount);
}

Status<ExpressionError> ExpressionSet::compile(const OutputVariable& output, ResultUse use) {
  MadeOutput made = makeOutput(output, use);
  if (!made) {
    return Failure{made.error()};
  }
  m_outputs.push_back(std::move(*made));
  return Done{};
}

ExpressionSet::MadeOutput ExpressionSet::makeOutput(const OutputVariable& variable, ResultUse use) {
  BackendRules rules;
  rules.isObserved = m_isObserved;
  rules.isText = use == ResultUse::column && !isNumberMeta(variable.meta);
  rules.allowsNative = m_options.useJIT;
  rules.required = m_required;
  const QString expression = withoutEmptiness(variable, use);
  ChosenBackend chosen = compileWithFirstFit(
      expression, rules, ExpressionScope{m_variables, m_constants, m_functions}, *m_stringBackend);
  if (!chosen.compiled) {
    return Failure{withPosition(chosen.compiled.error(), variable.expression)};
  }
  auto made = std::make_unique<CompiledOutput>();
  made->name = variable.name;
  made->text = variable.expression;
  made->meta = variable.meta;
  made->use = use;
  made->expression = std::move(*chosen.compiled);
  made->engine = chosen.choice;
  addColumnProgram(*made, expression);
  return made;
}

// Bounds of texts are for single evaluations, and a debugger wants to see every row.
void ExpressionSet::addColumnProgram(CompiledOutput& output, const QString& expression) {
  const bool isForRows =
      m_isObserved || output.use == ResultUse::anyValue || m_functions.bounds.textBytes.has_value();
  const bool isNative = output.engine.engine == BackendKind::native;
  output.engine.takesBatches = isNative && !isForRows;
  if (isForRows || isNative) {
    return;
  }
  Result<TypedTree, BatchRefusal> tree = typedTreeOf(
      withoutLineBreaks(expression), ExpressionScope{m_variables, m_constants, m_functions});
  if (!tree) {
    output.engine.batchRefusal = tree.error();
    return;
  }
  const bool isForNumbers = output.use == ResultUse::column && isNumberMeta(output.meta);
  if (!isForNumbers || tree->type() != ValueType::text) {  // else an error at every row
    output.entryProgram = EntryProgram::of(*tree, m_variables.endOfIndices(), m_functions);
    output.columnProgram = ColumnProgram::of(std::move(*tree), m_functions);
    output.engine.takesBatches = output.columnProgram != nullptr;
  }
}

Result<ExpressionValue, ExpressionError> ExpressionSet::evaluateOnce(const QString& expression) {
  OutputVariable output;
  output.expression = expression;
  MadeOutput made = makeOutput(output, ResultUse::anyValue);
  if (!made) {
    return Failure{made.error()};
  }
  m_stringBackend->load(m_variables);
  CompiledExpression& compiled = *(*made)->expression;
  EvaluatedValue value;
  if (!compiled.evaluate(value)) {
    return Failure{compiled.error()};
  }
  return valueOf(value);
}

void ExpressionSet::setNumber(int input, double value) {
  const auto i = static_cast<std::size_t>(input);
  assert(kindOf(m_inputs[i]) != VariableKind::text);
  m_variables.numbers()[m_indices[i]] = value;
}

void ExpressionSet::setText(int input, const QString& value) {
  const auto i = static_cast<std::size_t>(input);
  assert(kindOf(m_inputs[i]) == VariableKind::text);
  m_texts[i] = value.toStdString();
  m_variables.text(m_indices[i]) = {m_texts[i], value.isNull()};
}

ExpressionValue ExpressionSet::inputValue(int input) const {
  const auto i = static_cast<std::size_t>(input);
  if (kindOf(m_inputs[i]) != VariableKind::text) {
    return ExpressionValue::ofNumber(m_variables.numbers()[m_indices[i]]);
  }
  const TextCell& cell = m_variables.text(m_indices[i]);
  return cell.isNull ? ExpressionValue::nullText() : ExpressionValue::ofText(cell.bytes);
}

}  // namespace kelvarin
