#include "expression/evaluator/constants.h"

#include <algorithm>

#include "expression/backends/expression_text.h"
#include "expression/evaluator/number_text.h"
#include "expression/functions/function_table.h"

namespace kelvarin {

namespace {

const QString kNow = QStringLiteral("_now");
const QString kNowText = QStringLiteral("_nowS");

NamedConstant constantOf(const ConstantLine& line, const GlobalParameters* parameters) {
  const bool isText = line.text != nullptr;
  return {QString::fromLatin1(line.name), line.backends, isText, line.number,
          isText ? line.text(parameters) : QString()};
}

NamedConstant constantOf(const QString& name, const QString& text) {
  if (const auto number = numberOfWholeText(text.toStdString())) {
    return {name, kInAll, false, *number, {}};
  }
  return {name, kInString, true, 0.0, text.isNull() ? QStringLiteral("") : text};
}

}  // namespace

std::vector<NamedConstant> constantsOf(const GlobalParameters* parameters) {
  const QMap<QString, QString> values =
      parameters == nullptr ? QMap<QString, QString>() : parameters->values();
  std::vector<NamedConstant> constants;
  for (const ConstantLine& line : constantTable()) {
    if (!line.yieldsToParameters || !values.contains(QString::fromLatin1(line.name))) {
      constants.push_back(constantOf(line, parameters));
    }
  }
  for (auto value = values.begin(); value != values.end(); ++value) {
    if (isVariableName(value.key())) {
      constants.push_back(constantOf(value.key(), value.value()));
    }
  }
  return constants;
}

bool isCurrentTime(const NamedConstant& constant) {
  return constant.name == kNow || constant.name == kNowText;
}

bool differsByRun(const QString& constant) {
  const std::span<const ConstantLine> table = constantTable();
  return constant == kNow || constant == kNowText ||
         std::any_of(table.begin(), table.end(), [&](const ConstantLine& line) {
           return line.differsByRun && constant == QLatin1String(line.name);
         });
}

void setCurrentTime(std::vector<NamedConstant>& constants, const DateContext& dates) {
  std::erase_if(constants, isCurrentTime);
  if (dates.parameters().addNow) {
    constants.push_back({kNow, kInAll, false, dates.currentElapsedTime(), {}});
  }
  if (dates.parameters().addNowS) {
    constants.push_back({kNowText, kInString, true, 0.0, dates.currentDateString()});
  }
}

}  // namespace kelvarin
