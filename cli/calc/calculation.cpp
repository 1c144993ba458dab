#include "cli/calc/calculation.h"

#include <algorithm>

#include "cli/calc/messages.h"
#include "expression/backends/expression_text.h"
#include "expression/evaluator/expression_set.h"
#include "expression/help/language_entries.h"
#include "host/contract/missing_column.h"

namespace kelvarin {

namespace {

QSet<QString> namesOfLanguage() {
  QSet<QString> names{QStringLiteral("and"), QStringLiteral("or"), QStringLiteral("_n")};
  for (const LanguageEntry& entry : languageEntries()) {
    for (const std::string& name : entry.names) {
      names.insert(QString::fromStdString(name));
    }
  }
  return names;
}

// What no label may be called.
QSet<QString> takenNames(const std::vector<PinColumns::Column>& columns,
                         const GlobalParameters& parameters, const QStringList& expressions) {
  QSet<QString> names = namesOfLanguage();
  for (const PinColumns::Column& column : columns) {
    names.insert(column.name);
  }
  for (auto value = parameters.values().begin(); value != parameters.values().end(); ++value) {
    names.insert(value.key());
  }
  for (const QString& expression : expressions) {
    names |= valueNames(expression);
  }
  return names;
}

// The position of a name in an expression; -1 where it is not used.
int positionOfName(const QString& expression, const QString& name) {
  const ExpressionTokens tokens(expression);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (isFreeName(tokens.all(), i) && tokens.textAt(i) == name) {
      return static_cast<int>(positionOf(tokens[i]));
    }
  }
  return -1;
}

ExpressionFault withError(ExpressionFault fault, const QString& text, ExpressionError error) {
  fault.text = text;
  fault.error = std::move(error);
  return fault;
}

ExpressionFault aboutName(ExpressionFault fault, const QString& text, const QString& labelled,
                          const QString& name) {
  ExpressionError error;
  error.message = text;
  error.position = positionOfName(labelled, name);
  return withError(std::move(fault), text, error);
}

// Whether a run fails on its first row, or cannot begin. What only the sample values show is left
// to the rows.
bool isCertain(const ExpressionCheck& check, const EvaluationOptions& options) {
  const bool isOfEveryRow =
      check.error.kind == ExpressionError::Kind::textForNumber && options.abortWhenError;
  return !check.text.isEmpty() && (!check.isCompiled() || isOfEveryRow);
}

}  // namespace

Calculation::Calculation(const std::vector<PinColumns::Column>& columns,
                         const EvaluationOptions& options, const GlobalParameters& parameters,
                         const QStringList& expressions, const QStringList& dates)
    : m_options(options),
      m_parameters(parameters),
      m_dates(dates),
      m_labels(takenNames(columns, parameters, expressions)) {
  for (const PinColumns::Column& column : columns) {
    m_names += column.name;
    m_types.insert(column.name, column.meta);
  }
}

Status<ExpressionFault> Calculation::addOutput(const NamedExpression& output) {
  ExpressionFault fault{calc_messages::ofOutput(output.name), output.expression, {}, {}, {}};
  const auto labelled = m_labels.labelled(output.expression);
  if (!labelled) {
    return Failure{withError(fault, labelled.error().message, labelled.error())};
  }
  auto inputs = inputsOf(*labelled, fault);
  if (!inputs) {
    return Failure{inputs.error()};
  }
  OutputVariable variable;
  variable.name = output.name;
  variable.expression = *labelled;
  variable.meta = output.type.value_or(MetaTypeColumn::number);
  const ResultUse use = output.type ? ResultUse::column : ResultUse::anyValue;
  const ExpressionCheck check = checked(*inputs, variable, use);
  if (isCertain(check, m_options)) {
    fault.labelled = *labelled;
    return Failure{withError(fault, check.text, check.error)};
  }
  if (m_unused.contains(output.name)) {
    return Failure{withError(fault, calc_messages::outputTwice(), {})};
  }
  if (!output.type) {
    variable.meta = typeOf(*labelled, check);
  }
  take(std::move(*inputs), std::move(variable));
  return Done{};
}

Status<ExpressionFault> Calculation::addFilter(const QString& condition) {
  ExpressionFault fault{calc_messages::ofFilter(), condition, {}, {}, {}};
  const auto labelled = m_labels.labelled(condition);
  if (!labelled) {
    return Failure{withError(fault, labelled.error().message, labelled.error())};
  }
  auto inputs = inputsOf(*labelled, fault);
  if (!inputs) {
    return Failure{inputs.error()};
  }
  OutputVariable variable;
  variable.expression = *labelled;
  const ExpressionCheck check = checked(*inputs, variable, ResultUse::truth);
  if (isCertain(check, m_options)) {
    fault.labelled = *labelled;
    return Failure{withError(fault, check.text, check.error)};
  }
  m_filters.push_back({std::move(*inputs), *labelled});
  return Done{};
}

Status<QString> Calculation::checkDates() const {
  for (const QString& date : m_dates) {
    const auto type = m_types.constFind(date);
    if (type == m_types.constEnd()) {
      return Failure{calc_messages::ofDate(date) + missingColumnHint(date, m_names)};
    }
    if (*type != MetaTypeColumn::text) {
      return Failure{calc_messages::ofDate(date) + calc_messages::dateIsNumber()};
    }
  }
  return Done{};
}

// Words and names of the language stay what they are; in backquotes they are columns.
bool Calculation::isBound(const QString& name) const {
  const bool isWord = name == u"and" || name == u"or" || (m_options.addN && name == u"_n");
  return m_labels.isLabel(name) || (!isWord && m_types.contains(name));
}

Result<Calculation::Inputs, ExpressionFault> Calculation::inputsOf(const QString& labelled,
                                                                   ExpressionFault fault) {
  QStringList names(valueNames(labelled).values());
  std::ranges::sort(names, {},
                    [&labelled](const QString& name) { return positionOfName(labelled, name); });
  Inputs inputs;
  for (const QString& name : names) {
    if (!isBound(name)) {
      continue;
    }
    const QString column = m_labels.columnOf(name);
    const auto type = m_types.constFind(column);
    if (type == m_types.constEnd()) {
      return Failure{
          aboutName(std::move(fault), missingColumnHint(column, m_names), labelled, name)};
    }
    if (!m_labels.isLabel(name) && m_parameters.values().contains(name)) {
      return Failure{
          aboutName(std::move(fault), calc_messages::parameterIsColumn(name), labelled, name)};
    }
    InputVariable input;
    input.columns = QStringList{column};
    input.label = name;
    input.isNumber = *type != MetaTypeColumn::text;
    input.meta = !input.isNumber && m_dates.contains(column) ? MetaTypeColumn::date : input.meta;
    inputs.push_back(input);
    m_unused.remove(column);
  }
  return inputs;
}

// Elapsed times count from when actions count them that have no setting of it, which warn.
ExpressionCheck Calculation::checked(const Inputs& inputs, const OutputVariable& output,
                                     ResultUse use) {
  ExpressionSet expressions;
  expressions.configure(m_options, inputs, &m_parameters, false);
  ExpressionCheck check = expressions.check(output, use);
  QString& start = m_options.time.referenceTime;
  if (start.isEmpty() && check.error.kind == ExpressionError::Kind::referenceTimeUnparsable) {
    start = QStringLiteral("19700101 00:00:00");
    check = checked(inputs, output, use);
  }
  return check;
}

// A column alone keeps its type, keys included.
MetaTypeColumn Calculation::typeOf(const QString& labelled, const ExpressionCheck& check) const {
  const QString whole = labelled.trimmed();
  if (isBound(whole) && !m_dates.contains(m_labels.columnOf(whole))) {
    return m_types.value(m_labels.columnOf(whole));
  }
  const bool isText = check.value && check.value->type == ExpressionValue::Type::text;
  return isText ? MetaTypeColumn::text : MetaTypeColumn::number;
}

bool Calculation::needsCalculator(const Inputs& inputs, const QString& output) const {
  if (m_calculators.empty()) {
    return true;
  }
  const std::vector<OutputVariable>& last = m_calculators.back().outputs;
  return std::ranges::any_of(last, [&](const OutputVariable& made) {
    return made.name == output || std::ranges::any_of(inputs, [&made](const InputVariable& input) {
             return input.columns.first() == made.name;
           });
  });
}

void Calculation::take(Inputs inputs, OutputVariable output) {
  if (needsCalculator(inputs, output.name)) {
    m_calculators.emplace_back();
  }
  CalculatorPlan& calculator = m_calculators.back();
  for (InputVariable& input : inputs) {
    const bool isKnown = std::ranges::any_of(
        calculator.inputs,
        [&input](const InputVariable& known) { return known.label == input.label; });
    if (!isKnown) {
      calculator.inputs.push_back(std::move(input));
    }
  }
  output.update = m_types.contains(output.name);
  if (!output.update) {
    m_names += output.name;
  }
  m_types.insert(output.name, output.meta);
  m_unused.insert(output.name);
  calculator.outputs.push_back(std::move(output));
}

}  // namespace kelvarin
