#include "cli/expression_options.h"

#include <algorithm>

#include "cli/messages.h"
#include "cli/name_value.h"
#include "expression/backends/expression_text.h"
#include "expression/options/evaluation_attributes.h"

namespace kelvarin {

namespace {

using Option = Attribute<EvaluationOptions>;

QString nameOf(const Option& option) {
  return QString::fromUtf16(option.name);
}

QString unknownOption(const QString& name) {
  QStringList names;
  for (const Option& option : evaluationAttributes()) {
    names += nameOf(option);
  }
  return program_messages::unknownExpressionOption(name, names.join(QLatin1String(", ")));
}

Status<QString> setOption(const Option& option, const NameValue& given,
                          EvaluationOptions& options) {
  if (option.kind == AttributeKind::text) {
    option.set(options, given.value);
    return Done{};
  }
  bool isInteger = false;
  const int value = given.value.toInt(&isInteger);
  if (option.kind == AttributeKind::flag && (!isInteger || (value != 0 && value != 1))) {
    return Failure{program_messages::optionTakesFlag(given.name, given.value)};
  }
  if (!isInteger) {
    return Failure{program_messages::optionTakesInteger(given.name, given.value)};
  }
  option.set(options, QString::number(value));
  return Done{};
}

Status<QString> applyExpressionOptions(const std::vector<NameValue>& values,
                                       EvaluationOptions& options) {
  const EvaluationAttributes known = evaluationAttributes();
  for (const NameValue& given : values) {
    const auto option = std::ranges::find(known, given.name, nameOf);
    if (option == known.end()) {
      return Failure{unknownOption(given.name)};
    }
    if (const auto set = setOption(*option, given, options); !set) {
      return set;
    }
  }
  return Done{};
}

}  // namespace

void addExpressionOptions(CLI::App& command, std::vector<std::string>& options) {
  command.add_option("--opt", options, "an expression attribute of an action, for instance seed=7")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
}

Result<EvaluationOptions, QString> expressionOptions(const std::vector<std::string>& arguments,
                                                     const QStringList& expressions) {
  EvaluationOptions options;
  for (const QString& expression : expressions) {
    const QSet<QString> named = valueNames(expression);
    options.time.addNow |= named.contains(QStringLiteral("_now"));
    options.time.addNowS |= named.contains(QStringLiteral("_nowS"));
  }
  const auto values = splitNameValues("--opt", arguments);
  if (!values) {
    return Failure{values.error()};
  }
  if (const auto applied = applyExpressionOptions(*values, options); !applied) {
    return Failure{applied.error()};
  }
  return options;
}

}  // namespace kelvarin
