#include "columnar/actions/block_filter_evaluation.h"

#include <QStringDecoder>

#include "columnar/actions/messages.h"
#include "columnar/actions/sortable_dates.h"
#include "expression/errors/error_texts.h"
#include "expression/errors/expression_mark.h"
#include "expression/errors/messages.h"
#include "expression/functions/called_functions.h"
#include "expression/help/expression_hint.h"

namespace kelvarin {

namespace {

// The order of inputsOf().
enum InputOfVariable { kMaximum, kMinimum, kHasNull, kInputsOfVariable };

VariableKind kindOfBounds(const BlockVariable& variable) {
  InputVariable bound;
  bound.isNumber = variable.isNumber;
  bound.meta = variable.meta;
  return kindOf(bound);
}

QString numberText(double number) {
  return isNullNumber(number) ? QString() : shortestText(number);
}

QString qStringOf(const std::string& text) {
  return text.empty() ? QStringLiteral("") : QString::fromStdString(text);
}

// In expressions, bytes that are no UTF-8 become replacement characters, which sort differently.
// Overlong forms are such bytes, too.
bool isUtf8(const std::string& bytes) {
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString text = decoder(QByteArrayView(bytes));
  return !decoder.hasError() && text.toUtf8() == QByteArrayView(bytes);
}

bool isFalse(const ExpressionValue& value) {
  if (value.type == ExpressionValue::Type::text) {
    return !value.text.isNull() && value.text.isEmpty();
  }
  return value.number == 0.0;
}

}  // namespace

void BlockFilterEvaluation::expandNames(const ActionItem& action) {
  const auto expand = [&action](QString& text) { text = action.expandString(text); };
  for (BlockVariable& variable : m_filter.variables) {
    expand(variable.column);
    expand(variable.maximumName);
    expand(variable.minimumName);
    expand(variable.hasNullName);
  }
  expand(m_filter.time.referenceTime);
  expand(m_filter.time.dateFormat);
}

Status<QString> BlockFilterEvaluation::compile(const ActionItem& action, QString& warning) {
  expandNames(action);
  m_error = {};
  EvaluationOptions options;
  options.addN = false;  // a block has two row numbers
  options.time = m_filter.time;
  const std::vector<InputVariable> variables = inputsOf(m_filter);
  bool hasDates = false;
  for (const InputVariable& variable : variables) {
    hasDates |= kindOf(variable) == VariableKind::date;
  }
  m_evaluator.expressions.configure(options, variables, action.globalParameters(), false);
  m_dates.configure(m_filter.time);
  // The evaluator returns the same status.
  (void)prepareDates(m_dates, {m_filter.expression}, hasDates);
  switch (m_evaluator.expressions.prepareDateContext({m_filter.expression})) {
    case DateStatus::ready:
      warning = m_evaluator.expressions.dateFormatAdvice();
      break;
    case DateStatus::referenceTimeUnparsable:
      warning = columnar_messages::filterReferenceUnparsable();
      break;
    case DateStatus::dateFormatUnknown:
      return Failure{columnar_messages::dateFormatUnknown()};
  }
  OutputVariable output;
  output.name = QStringLiteral("CFilterRows");
  output.expression =
      m_filter.expression.trimmed().isEmpty() ? QStringLiteral("1") : m_filter.expression;
  const auto failure = [](const QString& text) {
    return Failure{columnar_messages::filterFailed(text)};
  };
  if (!action.mustComputeFull()) {
    const ExpressionCheck check = m_evaluator.expressions.check(output, ResultUse::anyValue);
    const bool isGood = check.kind != ExpressionCheck::Kind::error;
    m_error = isGood ? ExpressionError{} : check.error;
    return isGood ? Status<QString>(Done{}) : failure(check.text);
  }
  const Status<ExpressionError> compiled =
      m_evaluator.expressions.compile(output, ResultUse::anyValue);
  if (!compiled) {
    m_error = compiled.error();
    return failure(errorTextWithPosition(m_error));
  }
  m_evaluator.start();
  return Done{};
}

QStringList BlockFilterEvaluation::explanations() const {
  if (m_error.message.isEmpty()) {
    return {};
  }
  HintNames names;
  names.variables = variableNames();
  QStringList explanations{messages::here() + u'\n' +
                           markedExpression(m_filter.expression, m_error)};
  explanations.back().replace(u'\n', QStringLiteral("\n    "));
  if (const QString hint = expressionHint(m_error, m_filter.expression, names); !hint.isEmpty()) {
    explanations += hint;
  }
  return explanations;
}

Status<QString> BlockFilterEvaluation::bindTo(const GelFile& file) {
  m_columns.clear();
  for (const BlockVariable& variable : m_filter.variables) {
    const QString& name = variable.column;
    const std::string wanted = name.toStdString();
    std::size_t column = 0;
    while (column < file.columns().size() && file.column(column).name != wanted) {
      ++column;
    }
    if (column == file.columns().size()) {
      return Failure{columnar_messages::filterColumnMissing(name)};
    }
    // Texts are not in the order of the numbers that they may look like.
    if (file.column(column).type == GelType::text &&
        kindOfBounds(variable) == VariableKind::number) {
      return Failure{columnar_messages::filterColumnIsText(name)};
    }
    m_columns.push_back(column);
  }
  return Done{};
}

bool BlockFilterEvaluation::wantsBlock(const GelFile& file, const BlockInfo& block) {
  if (!loadVariables(file, block)) {
    return true;
  }
  m_evaluator.rows.startRow();
  return m_evaluator.rows.evaluate(0) != RowOutcome::ok || !isFalse(m_evaluator.rows.value(0));
}

QStringList BlockFilterEvaluation::variableNames() const {
  QStringList names;
  for (const InputVariable& input : inputsOf(m_filter)) {
    names += input.name();
  }
  return names;
}

std::vector<ExpressionValue> BlockFilterEvaluation::variableValues(const GelFile& file,
                                                                   const BlockInfo& block) {
  std::vector<ExpressionValue> values;
  if (!loadVariables(file, block)) {
    return values;
  }
  const auto count = static_cast<int>(inputsOf(m_filter).size());
  for (int input = 0; input < count; ++input) {
    values.push_back(m_evaluator.expressions.inputValue(input));
  }
  return values;
}

bool BlockFilterEvaluation::loadVariables(const GelFile& file, const BlockInfo& block) {
  int input = 0;
  for (std::size_t i = 0; i < m_columns.size(); ++i, input += kInputsOfVariable) {
    BlockStatistics statistics;
    const BlockVariable& variable = m_filter.variables[i];
    if (!readStatistics(file, block, m_columns[i], statistics) || !holds(variable, statistics)) {
      return false;
    }
    if (!setBound(input + kMaximum, variable, statistics.high) ||
        !setBound(input + kMinimum, variable, statistics.low)) {
      return false;
    }
    m_evaluator.expressions.setNumber(input + kHasNull, statistics.hasNull ? 1.0 : 0.0);
  }
  if (m_filter.addRowNumbers) {
    m_evaluator.expressions.setNumber(input, static_cast<double>(block.firstRow));
    m_evaluator.expressions.setNumber(input + 1, static_cast<double>(block.lastRow()));
  }
  return true;
}

bool BlockFilterEvaluation::holds(const BlockVariable& variable,
                                  const BlockStatistics& statistics) const {
  if (statistics.isUnknown) {
    return false;
  }
  const bool isText = std::holds_alternative<std::string>(statistics.low);
  const bool isNumber = std::holds_alternative<double>(statistics.low);
  switch (kindOfBounds(variable)) {
    case VariableKind::text:
      return !isNumber || statistics.low == statistics.high;
    case VariableKind::date:
      return !isText || sortsAsText(m_dates.format(), m_filter.time.isUTC);
    default:
      return true;
  }
}

bool BlockFilterEvaluation::setBound(int input, const BlockVariable& variable, const Bound& bound) {
  const double* number = std::get_if<double>(&bound);
  const std::string* text = std::get_if<std::string>(&bound);
  if (kindOfBounds(variable) == VariableKind::text) {
    m_evaluator.expressions.setText(input, text != nullptr     ? qStringOf(*text)
                                           : number != nullptr ? numberText(*number)
                                                               : QString());
    return true;
  }
  double value = number != nullptr ? *number : kNullNumber;
  bool isDate = true;
  if (text != nullptr) {
    const QString date = QString::fromStdString(*text);
    isDate = m_dates.instantOf(date).has_value();
    value = m_dates.toElapsedTime(date);
  }
  m_evaluator.expressions.setNumber(input, value);
  return text == nullptr || (isDate && !isNullNumber(value));
}

bool BlockFilterEvaluation::readStatistics(const GelFile& file, const BlockInfo& block,
                                           std::size_t column, BlockStatistics& statistics) {
  const DescriptorLayout& layout = file.descriptorLayout();
  switch (file.column(column).type) {
    case GelType::key: {
      KeyStatistics keys;
      if (!layout.readStatistics(block.descriptor, column, keys)) {
        return false;
      }
      statistics.hasNull = keys.hasNull;
      if (keys.hasValues()) {
        statistics.low = static_cast<double>(keys.low);
        statistics.high = static_cast<double>(keys.high);
      }
      return true;
    }
    case GelType::number: {
      NumberStatistics numbers;
      if (!layout.readStatistics(block.descriptor, column, numbers)) {
        return false;
      }
      statistics.hasNull = numbers.hasNull;
      if (numbers.hasValues) {
        statistics.low = numbers.low;
        statistics.high = numbers.high;
      }
      statistics.isUnknown = numbers.hasNotANumber;
      return true;
    }
    case GelType::text:
      break;
  }
  TextStatistics texts;
  if (!layout.readStatistics(block.descriptor, column, texts)) {
    return false;
  }
  statistics.hasNull = texts.hasNull;
  if (const auto low = texts.lowerBound()) {
    statistics.low = *low;
  }
  const auto high = texts.upperBound();
  if (high) {
    statistics.high = *high;
  }
  statistics.isUnknown =
      texts.high.has_value() && !(high && isUtf8(texts.low->text) && isUtf8(texts.high->text));
  return true;
}

}  // namespace kelvarin
