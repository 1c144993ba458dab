#include "cli/expression_options.h"

#include <variant>

#include "cli/messages.h"

namespace kelvarin {

namespace {

using Place = std::variant<bool*, int*, QString*>;

struct Option {
  const char* name;
  Place place;
};

std::vector<Option> optionsOf(EvaluationOptions& options) {
  TimeParameters& time = options.time;
  return {{"addN", &options.addN},
          {"useJIT", &options.useJIT},
          {"abortWhenError", &options.abortWhenError},
          {"castToKey1", &options.keyCast.outOfRange},
          {"castToKey2", &options.keyCast.fraction},
          {"castToKey3", &options.keyCast.nullOnInput},
          {"addNow", &time.addNow},
          {"addNowS", &time.addNowS},
          {"seed", &time.seed},
          {"elapsedTimeUnit", &time.elapsedTimeUnit},
          {"dateFormatType", &time.dateFormatType},
          {"isUTC", &time.isUTC},
          {"emptyETToNull", &time.emptyETToNull},
          {"referenceTime", &time.referenceTime},
          {"dateFormat", &time.dateFormat},
          {"castToET1", &time.castToET1},
          {"castToET2", &time.castToET2}};
}

QString unknownOption(const QString& name, const std::vector<Option>& options) {
  QStringList names;
  for (const Option& option : options) {
    names.append(QLatin1String(option.name));
  }
  return program_messages::unknownExpressionOption(name, names.join(QLatin1String(", ")));
}

Status<QString> setOption(const Place& place, const NameValue& given) {
  if (QString* const* text = std::get_if<QString*>(&place)) {
    **text = given.value;
    return Done{};
  }
  bool isInteger = false;
  const int value = given.value.toInt(&isInteger);
  if (bool* const* flag = std::get_if<bool*>(&place)) {
    if (!isInteger || (value != 0 && value != 1)) {
      return Failure{program_messages::optionTakesFlag(given.name, given.value)};
    }
    **flag = value != 0;
    return Done{};
  }
  if (!isInteger) {
    return Failure{program_messages::optionTakesInteger(given.name, given.value)};
  }
  *std::get<int*>(place) = value;
  return Done{};
}

}  // namespace

Status<QString> applyExpressionOptions(const std::vector<NameValue>& values, EvaluationOptions& options) {
  const std::vector<Option> known = optionsOf(options);
  for (const NameValue& given : values) {
    const auto option = std::find_if(known.begin(), known.end(), [&given](const Option& candidate) {
      return given.name == QLatin1String(candidate.name);
    });
    if (option == known.end()) {
      return Failure{unknownOption(given.name, known)};
    }
    if (const auto set = setOption(option->place, given); !set) {
      return set;
    }
  }
  return Done{};
}

}  // namespace kelvarin
