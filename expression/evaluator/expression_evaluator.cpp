#include "expression/evaluator/expression_evaluator.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include <QDateTime>

#include "expression/backends/string_backend.h"
#include "expression/dates/reference_time_advice.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/expression_mark.h"
#include "expression/errors/messages.h"
#include "expression/evaluator/backend_choice.h"
#include "expression/evaluator/constants.h"
#include "expression/evaluator/expression_warnings.h"
#include "expression/evaluator/messages.h"
#include "expression/evaluator/result_writer.h"
#include "expression/evaluator/row_binding.h"
#include "expression/functions/called_functions.h"

namespace kelvarin {

namespace {

constexpr int kSeedFromClock = -1;

std::uint32_t seedOf(const TimeParameters& time) {
  // kept: the clock gives its milliseconds only, a thousand sequences.
  const std::int64_t clock = QDateTime::currentMSecsSinceEpoch() % 1000;
  return static_cast<std::uint32_t>(time.seed == kSeedFromClock ? clock : time.seed);
}

// An expression left empty is the missing value of its column.
QString withoutEmptiness(const OutputVariable& output, ResultUse use) {
  if (use != ResultUse::column || !output.expression.trimmed().isEmpty()) {
    return output.expression;
  }
  return isNumberMeta(output.meta) ? QStringLiteral("_null") : QStringLiteral("_nullS");
}

QString wrongTypeText(const EvaluatedValue& value, MetaTypeColumn meta) {
  if (isNumberMeta(meta) != value.isText()) {
    return {};
  }
  return QString::fromUtf8(value.isText() ? messages::kStringForNumber
                                          : messages::kNumberForString);
}

}  // namespace

// Failed evaluations of one run.
struct FailureCount {
  long long count = 0;
  QString firstName;
  QString firstMessage;
  double firstRow = 0.0;

  void add(const QString& name, const QString& message, double row) {
    if (count++ == 0) {
      firstName = name;
      firstMessage = message;
      firstRow = row;
    }
  }
};

struct ExpressionEvaluator::State {
  using MadeOutput = Result<std::unique_ptr<ExpressionOutput>, ExpressionError>;

  EvaluationOptions options;
  std::vector<InputVariable> inputs;
  std::vector<std::size_t> places;  // of each input in `variables`
  bool isObserved = false;
  std::optional<BackendKind> required;

  VariableStore variables;
  std::vector<NamedConstant> constants = constantsOf(nullptr);
  FunctionContext functions;
  StringBackend stringBackend;
  RowBinding binding;
  std::vector<std::unique_ptr<ExpressionOutput>> outputs;  // gone before what they refer to
  bool hasStringOutput = false;
  ColumnEvaluation ahead;
  ResultWriter writer;
  std::vector<std::string> textsByHand;  // one an input

  int element = 0;           // of the vectors in the current row
  QStringList elementNames;  // of the outputs, element by element; may be empty

  RowFailure lastFailure;
  FailureCount failures;
  QStringList checkWarnings;

  ExpressionOutput& output(int index) { return *outputs[static_cast<std::size_t>(index)]; }

  RowOutcome evaluate(ExpressionOutput& target) {
    EvaluatedValue value;
    if (!target.expression->evaluate(value)) [[unlikely]] {
      return failToEvaluate(target);
    }
    switch (writer.write(target, value, options.keyCast)) {
      case ResultWriter::Outcome::ok:
        break;
      case ResultWriter::Outcome::textForNumber:
        return fail(target, {.message = QString::fromUtf8(messages::kStringForNumber),
                             .kind = ExpressionError::Kind::textForNumber});
      case ResultWriter::Outcome::noKey:
        return failToCast(target, value.number);
    }
    return RowOutcome::ok;
  }

  bool hasDateInputs() const {
    for (const InputVariable& input : inputs) {
      if (kindOf(input) == VariableKind::date) {
        return true;
      }
    }
    return false;
  }

  MadeOutput makeOutput(const OutputVariable& variable, ResultUse use) {
    BackendRules rules;
    rules.allowsNumberBackends =
        !isObserved && (use != ResultUse::column || isNumberMeta(variable.meta));
    rules.allowsNative = options.useJIT;
    rules.required = required;
    CompileResult compiled =
        compileWithFirstFit(withoutEmptiness(variable, use), rules,
                            ExpressionScope{variables, constants, functions}, stringBackend);
    if (!compiled) {
      return Failure{withPosition(compiled.error(), variable.expression)};
    }
    auto made = std::make_unique<ExpressionOutput>();
    made->name = variable.name;
    made->text = variable.expression;
    made->meta = variable.meta;
    made->use = use;
    made->expression = std::move(*compiled);
    ResultWriter::writeNull(*made);
    return made;
  }

  int indexOf(const ExpressionOutput& output) const {
    const auto found = std::find_if(outputs.begin(), outputs.end(),
                                    [&](const auto& other) { return other.get() == &output; });
    return static_cast<int>(found - outputs.begin());
  }

  QString nameOf(const ExpressionOutput& output) const {
    const auto index = static_cast<std::size_t>(element) * outputs.size() +
                       static_cast<std::size_t>(indexOf(output));
    return elementNames.value(static_cast<qsizetype>(index), output.name);
  }

  // Column by column where the back-end can.
  void prepareAhead(const ExpressionOutput& output, int index) {
    NumberExpression* expression = output.expression->asNumberExpression();
    if (expression == nullptr || output.use == ResultUse::anyValue) {
      return;
    }
    const bool isKey = output.use == ResultUse::column && output.meta == MetaTypeColumn::key;
    ahead.add(index, expression->columnsCall(), isKey ? &options.keyCast : nullptr);
  }

  RowOutcome fail(const ExpressionOutput& output, const ExpressionError& error) {
    lastFailure = {RowFailure::Kind::evaluation,
                   nameOf(output),
                   withPosition(error, output.text),
                   output.expression->kind(),
                   0.0,
                   indexOf(output)};
    failures.add(lastFailure.name, error.message, variables.rowNumber());
    return options.abortWhenError ? RowOutcome::stop : RowOutcome::failed;
  }

  RowOutcome failToEvaluate(ExpressionOutput& output) {
    ResultWriter::writeNull(output);
    return fail(output, output.expression->error());
  }

  RowOutcome failToCast(const ExpressionOutput& output, double number) {
    lastFailure = {RowFailure::Kind::keyCast,  nameOf(output), {},
                   output.expression->kind(), number,         indexOf(output)};
    return RowOutcome::stop;
  }

  // Of an expression that is only tried.
  QString checkFailed(const OutputVariable& output, const ExpressionError& error) {
    lastFailure = {};
    lastFailure.name = output.name;
    lastFailure.error = withPosition(error, output.expression);
    return checkErrorText(lastFailure.error);
  }

  void setText(std::size_t input, const QString& value) {
    textsByHand[input] = value.toStdString();
    variables.text(places[input]) = {textsByHand[input], value.isNull()};
  }

  void takeSamples() {
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      const InputVariable& input = inputs[i];
      if (kindOf(input) == VariableKind::text) {
        setText(i, input.text);
      } else {
        variables.numbers()[places[i]] =
            input.isNumber ? input.number : functions.dates.toElapsedTime(input.text);
      }
    }
  }

  void startRow() {
    writer.startRow();
    if (hasStringOutput) {
      stringBackend.load(variables);
    }
  }
};

ExpressionEvaluator::ExpressionEvaluator()
    : m_state(std::make_unique<State>()), m_variables(&m_state->variables) {}
ExpressionEvaluator::~ExpressionEvaluator() = default;

void ExpressionEvaluator::clear() {
  m_shortWays.clear();
  m_state = std::make_unique<State>();
  m_variables = &m_state->variables;
}

void ExpressionEvaluator::configure(const EvaluationOptions& options,
                                    const std::vector<InputVariable>& inputs,
                                    const GlobalParameters* parameters, bool isObserved) {
  clear();
  State& state = *m_state;
  state.options = options;
  state.inputs = inputs;
  state.isObserved = isObserved;
  state.constants = constantsOf(parameters);
  state.functions.dates.configure(options.time);
  state.functions.filesFolder = parameters == nullptr ? QString() : parameters->dataDirRead();
  state.variables.reset(options.addN);
  state.textsByHand.resize(inputs.size());
  QSet<QString> names = namesOf(state.variables);
  for (const InputVariable& input : inputs) {
    const bool isText = kindOf(input) == VariableKind::text;
    const std::size_t place = isText ? state.variables.addText() : state.variables.addNumber();
    state.places.push_back(place);
    if (const QString name = input.name(); !names.contains(name)) {
      names.insert(name);
      state.variables.name({name, isText, place});
    }
  }
}

void ExpressionEvaluator::requireBackend(BackendKind kind) {
  m_state->required = kind;
}

DateStatus ExpressionEvaluator::prepareDateContext(const QStringList& expressions) {
  State& state = *m_state;
  state.functions.seed(seedOf(state.options.time));
  const DateStatus status = prepareDates(state.functions.dates, expressions, state.hasDateInputs());
  setCurrentTime(state.constants, state.functions.dates);
  return status;
}

QString ExpressionEvaluator::dateFormatAdvice() const {
  return m_state->functions.dates.formatAdvice();
}

QString ExpressionEvaluator::referenceTimeAdvice() const {
  return adviceOnReferenceTime(m_state->options.time.referenceTime);
}

Status<QString> ExpressionEvaluator::bind(const OneRow& columns,
                                          const std::function<QString(const QString&)>& expand,
                                          int elementCount) {
  State& state = *m_state;
  Status<QString> bound =
      state.binding.bind(state.inputs, state.places, columns, expand, elementCount);
  std::vector<NumberSource> sources =
      state.binding.numberSources(state.functions.dates, state.options.keyCast.nullOnInput);
  sources.push_back({});  // the row number
  state.ahead.setSources(std::move(sources));
  return bound;
}

Status<ExpressionError> ExpressionEvaluator::compile(const OutputVariable& output, ResultUse use) {
  State::MadeOutput made = m_state->makeOutput(output, use);
  if (!made) {
    return Failure{made.error()};
  }
  m_state->hasStringOutput |= (*made)->expression->kind() == BackendKind::string;
  m_shortWays.push_back(shortWayOf(**made));
  m_state->prepareAhead(**made, outputCount());
  m_state->outputs.push_back(std::move(*made));
  return Done{};
}

ExpressionEvaluator::ShortWay ExpressionEvaluator::shortWayOf(ExpressionOutput& output) {
  const bool isPlain = output.use == ResultUse::truth ||
                       (output.use == ResultUse::column && output.meta == MetaTypeColumn::number);
  NumberExpression* expression = isPlain ? output.expression->asNumberExpression() : nullptr;
  if (expression == nullptr) {
    return {};
  }
  return {expression->numberCall(), ::new (output.cell) double(kNullNumber)};
}

int ExpressionEvaluator::outputCount() const {
  return static_cast<int>(m_state->outputs.size());
}

BackendKind ExpressionEvaluator::backend(int output) const {
  return m_state->output(output).expression->kind();
}

QString ExpressionEvaluator::check(const OutputVariable& output, ResultUse use) {
  State& state = *m_state;
  state.checkWarnings.clear();
  const DateStatus status = prepareDateContext({output.expression});
  if (status == DateStatus::dateFormatUnknown) {
    return QString::fromUtf8(messages::kFormatUnknown);
  }
  state.takeSamples();
  State::MadeOutput made = state.makeOutput(output, use);
  if (!made) {
    return state.checkFailed(output, made.error());
  }
  state.stringBackend.load(state.variables);
  CompiledExpression& expression = *(*made)->expression;
  EvaluatedValue value;
  if (!expression.evaluate(value)) {
    return state.checkFailed(output, expression.error());
  }
  state.checkWarnings = warningsOfCheck(output.name, expression.textArguments());
  if (use == ResultUse::truth && value.isText()) {
    state.checkWarnings += warningAboutTextCondition(output.name);
  }
  const QString wrongType =
      use == ResultUse::column ? wrongTypeText(value, output.meta) : QString();
  const bool isReferenceMissing = status == DateStatus::referenceTimeUnparsable;
  return wrongType.isEmpty() && isReferenceMissing
             ? QString::fromUtf8(messages::kReferenceUnparsable)
             : wrongType;
}

const QStringList& ExpressionEvaluator::checkWarnings() const {
  return m_state->checkWarnings;
}

RowOutcome ExpressionEvaluator::loadRow(const OneRow& row) {
  m_state->writer.startRow();
  return loadElement(row, 0);
}

RowOutcome ExpressionEvaluator::loadElement(const OneRow& row, int element) {
  State& state = *m_state;
  state.element = element;
  if (!state.binding.load(row, element, state.variables, state.functions.dates,
                          state.options.keyCast.nullOnInput)) {
    state.lastFailure = {};
    state.lastFailure.kind = RowFailure::Kind::nullKey;
    state.lastFailure.name = state.binding.failedVariable();
    return RowOutcome::stop;
  }
  if (state.hasStringOutput) {
    state.stringBackend.load(state.variables);
  }
  return RowOutcome::ok;
}

void ExpressionEvaluator::nameElements(const QStringList& names) {
  m_state->elementNames = names;
}

RowOutcome ExpressionEvaluator::evaluateAnyValue(int output) {
  return m_state->evaluate(m_state->output(output));
}

RowOutcome ExpressionEvaluator::failToEvaluate(int output) {
  return m_state->failToEvaluate(m_state->output(output));
}

RowOutcome ExpressionEvaluator::evaluateTruth(int output, bool& isTrue) {
  const NumberCall& call = m_shortWays[static_cast<std::size_t>(output)].call;
  EvaluatedValue value;
  const bool isEvaluated = call.function != nullptr
                               ? call(&value.number)
                               : m_state->output(output).expression->evaluate(value);
  isTrue = isEvaluated && isTrueValue(value);
  if (call.function == nullptr && value.isText()) [[unlikely]] {
    m_state->output(output).wasTextCondition = true;
  }
  return isEvaluated ? RowOutcome::ok : failToEvaluate(output);
}

std::size_t ExpressionEvaluator::evaluateAhead(const RowsAhead& rows) {
  return m_state->ahead.evaluate(rows, m_state->variables.rowNumber());
}

bool ExpressionEvaluator::canEvaluateAhead() const {
  return !m_state->ahead.isEmpty();
}

ColumnResults ExpressionEvaluator::resultsAhead(int output) {
  return m_state->ahead.resultsOf(output);
}

bool ExpressionEvaluator::mustLoadRows() const {
  return m_state->ahead.outputCount() < m_state->outputs.size() ||
         m_state->binding.hasEffects(m_state->options.keyCast.nullOnInput);
}

const RowFailure& ExpressionEvaluator::lastFailure() const {
  return m_state->lastFailure;
}

unsigned char* ExpressionEvaluator::resultCell(int output) {
  return m_state->output(output).cell;
}

void ExpressionEvaluator::setTextTarget(int output, unsigned char** slot) {
  m_state->output(output).textTarget = slot;
}

const ExpressionValue& ExpressionEvaluator::value(int output) const {
  return m_state->output(output).value;
}

void ExpressionEvaluator::setNumber(int variable, double value) {
  const auto input = static_cast<std::size_t>(variable);
  assert(kindOf(m_state->inputs[input]) != VariableKind::text);
  m_state->variables.numbers()[m_state->places[input]] = value;
}

void ExpressionEvaluator::setText(int variable, const QString& value) {
  const auto input = static_cast<std::size_t>(variable);
  assert(kindOf(m_state->inputs[input]) == VariableKind::text);
  m_state->setText(input, value);
}

void ExpressionEvaluator::startRow() {
  m_state->startRow();
}

QString ExpressionEvaluator::displayText(int variable) const {
  const auto input = static_cast<std::size_t>(variable);
  const std::size_t place = m_state->places[input];
  if (kindOf(m_state->inputs[input]) != VariableKind::text) {
    return shortestText(m_state->variables.numbers()[place]);
  }
  const TextCell& cell = m_state->variables.text(place);
  return cell.isNull
             ? QString()
             : QString::fromUtf8(cell.bytes.data(), static_cast<qsizetype>(cell.bytes.size()));
}

QStringList ExpressionEvaluator::closingWarnings() const {
  return closingWarnings(messages::kFailedEvaluations);
}

QStringList ExpressionEvaluator::closingWarnings(const char* failedRows) const {
  QStringList warnings = m_state->binding.warnings(m_state->functions.dates);
  for (const auto& output : m_state->outputs) {
    warnings += warningsOfRun(output->name, output->expression->textArguments());
    if (output->wasTextCondition) {
      warnings += warningAboutTextCondition(output->name);
    }
  }
  const FailureCount& failures = m_state->failures;
  if (failures.count > 0) {
    warnings += QString::fromUtf8(failedRows)
                    .arg(QString::number(failures.count), failures.firstName,
                         QString::number(failures.firstRow, 'f', 0), failures.firstMessage);
  }
  return warnings;
}

}  // namespace kelvarin
