#include "cli/expression_options.h"

#include <algorithm>

#include "cli/messages.h"
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

}  // namespace

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

}  // namespace kelvarin
