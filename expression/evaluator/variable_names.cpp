#include "expression/evaluator/variable_names.h"

#include <algorithm>

#include <QHash>

#include "expression/evaluator/messages.h"

namespace kelvarin {

namespace {

QString columnOf(const InputVariable& input) {
  return input.columns.isEmpty() ? input.name() : input.columns.last();
}

}  // namespace

Status<QString> checkNames(const std::vector<InputVariable>& inputs,
                           const EvaluationOptions& options) {
  const auto found = std::find_if(inputs.begin(), inputs.end(), [](const InputVariable& input) {
    return input.name() == QLatin1String("_n");
  });
  if (!options.addN || found == inputs.end()) {
    return Done{};
  }
  return Failure{messages::nameOfRowNumber(columnOf(*found))};
}

// A table of variables may have thousands: the first few are named, the others counted.
QStringList warningsAboutNames(const std::vector<InputVariable>& inputs) {
  constexpr int kMaxNamed = 5;
  QHash<QString, const InputVariable*> first;
  QStringList warnings;
  int count = 0;
  for (const InputVariable& input : inputs) {
    const QString name = input.name();
    const auto known = first.constFind(name);
    if (known == first.constEnd()) {
      first.insert(name, &input);
    } else if (++count <= kMaxNamed) {
      warnings += messages::nameTwice(name, columnOf(**known), columnOf(input));
    }
  }
  if (count > kMaxNamed) {
    warnings += messages::moreNamesTwice(count - kMaxNamed);
  }
  return warnings;
}

}  // namespace kelvarin
