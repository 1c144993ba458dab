// Every case line of expression/tests/cases on every back-end it names.
//
// The variables of all cases: x = 3.5, big = 1e300, nothing = null, t = "abc", empty = "", lost =
// the null text. Results: a number in its shortest form, null, nan (the engine's own), "text", or
// error: and a part of its message.

#include <gtest/gtest.h>

#include "base/null_number.h"
#include "expression/evaluator/expression_evaluator.h"
#include "expression/tests/case_file.h"

namespace kelvarin {
namespace {

std::string shown(const ExpressionValue& value) {
  if (value.type == ExpressionValue::Type::text) {
    return value.text.isNull() ? "null" : '"' + value.text.toStdString() + '"';
  }
  if (isNullNumber(value.number)) {
    return "null";
  }
  const bool isOtherNan =
      std::isnan(value.number) && std::bit_cast<std::uint64_t>(value.number) != kNotANumberBits;
  return isOtherNan ? "other nan" : shortestText(value.number).toStdString();
}

std::vector<InputVariable> variables() {
  std::vector<InputVariable> list(6);
  const char* names[] = {"x", "big", "nothing", "t", "empty", "lost"};
  for (std::size_t i = 0; i < list.size(); ++i) {
    list[i].label = QString::fromLatin1(names[i]);
    list[i].isNumber = i < 3;
  }
  return list;
}

TimeParameters timeParametersOf(const ExpressionCase& one) {
  TimeParameters time;
  time.seed = 1;
  for (const auto& [name, value] : one.timeParameters) {
    if (name == "referenceTime") {
      time.referenceTime = QString::fromStdString(value);
    } else if (name == "dateFormat") {
      time.dateFormat = QString::fromStdString(value);
    } else if (name == "elapsedTimeUnit") {
      time.elapsedTimeUnit = std::stoi(value);
    } else if (name == "castToET1") {
      time.castToET1 = std::stoi(value);
    } else if (name == "castToET2") {
      time.castToET2 = std::stoi(value);
    } else {
      ADD_FAILURE() << one.origin << ": unknown parameter " << name;
    }
  }
  return time;
}

std::string evaluateOn(BackendKind kind, const ExpressionCase& one) {
  ExpressionEvaluator evaluator;
  EvaluationOptions options;
  options.time = timeParametersOf(one);
  evaluator.expressions.configure(options, variables(), nullptr, false);
  evaluator.expressions.requireBackend(kind);
  OutputVariable output;
  output.name = QStringLiteral("out");
  output.expression = QString::fromStdString(one.expression);
  evaluator.expressions.prepareDateContext({output.expression});
  evaluator.expressions.setNumber(0, 3.5);
  evaluator.expressions.setNumber(1, 1e300);
  evaluator.expressions.setNumber(2, kNullNumber);
  evaluator.expressions.setText(3, QStringLiteral("abc"));
  evaluator.expressions.setText(4, QStringLiteral(""));
  evaluator.expressions.setText(5, QString());
  const auto compiled = evaluator.expressions.compile(output, ResultUse::anyValue);
  if (!compiled) {
    return "error: " + compiled.error().message.toStdString();
  }
  evaluator.start();
  std::string first;
  for (int row = 0; row < 2; ++row) {  // a second row finds values that the first one left behind
    evaluator.rows.startRow();
    if (evaluator.rows.evaluate(0) != RowOutcome::ok) {
      return "error: " + evaluator.rows.lastFailure().error.message.toStdString();
    }
    const std::string result = shown(evaluator.rows.value(0));
    if (row == 1 && result != first) {
      return first + " and on the second row " + result;
    }
    first = result;
  }
  return first;
}

bool isSame(const std::string& expected, const std::string& actual) {
  const std::string error = "error:";
  if (!expected.starts_with(error)) {
    return expected == actual;
  }
  const std::size_t part = expected.find_first_not_of(' ', error.size());
  return actual.starts_with(error) &&
         (part == std::string::npos || actual.find(expected.substr(part)) != std::string::npos);
}

// On processors that native code is not made for.
const char* const kNoNativeCode = "error: native code is not available";

BackendKind backendOf(char letter) {
  return letter == 'F'   ? BackendKind::native
         : letter == 'M' ? BackendKind::fast
                         : BackendKind::string;
}

TEST(Cases, EveryLineOnEveryBackend) {
  const std::vector<ExpressionCase> cases = readCases(CASE_FOLDER);
  ASSERT_GT(cases.size(), 50u);
  for (const ExpressionCase& one : cases) {
    for (const char letter : one.backends) {
      const BackendKind kind = backendOf(letter);
      const std::string actual = evaluateOn(kind, one);
      if (kind == BackendKind::native && actual == kNoNativeCode) {
        continue;
      }
      EXPECT_TRUE(isSame(one.result, actual))
          << one.origin << " on " << letter << ": " << one.expression << "\n  expected "
          << one.result << "\n  got      " << actual;
    }
  }
}

}  // namespace
}  // namespace kelvarin
