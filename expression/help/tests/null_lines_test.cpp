// The help's lines about missing values are true: each argument of each function is null in turn,
// the others as in the example, on every back-end that has the function.

#include <map>

#include <gtest/gtest.h>

#include "expression/help/language_entries.h"
#include "expression/help/tests/example_evaluation.h"

namespace kelvarin {
namespace {

using null_rules::kFirstCounts;
using null_rules::kGivesFalse;
using null_rules::kGivesNull;
using null_rules::kIsTested;
using null_rules::kUnreadableIsFalse;
using null_rules::kUnreadableIsNull;
using null_rules::kUnreadableMayBeZero;

constexpr BackendKind kBackends[] = {BackendKind::native, BackendKind::fast, BackendKind::string};

// Of the first call of the function in its example, without blanks around them.
std::vector<std::string> argumentsInExample(const LanguageEntry& entry) {
  const std::string example = entry.entry->example;
  const std::string head = entry.names.front() + "(";
  std::vector<std::string> arguments(1);
  int depth = 1;
  bool isQuoted = false;
  for (std::size_t i = example.find(head) + head.size(); i < example.size(); ++i) {
    const char c = example[i];
    isQuoted ^= c == '"' && example[i - 1] != '\\';
    depth += isQuoted ? 0 : (c == '(') - (c == ')');
    if (depth == 0) {
      break;
    }
    if (!isQuoted && depth == 1 && c == ',') {
      arguments.emplace_back();
    } else if (isQuoted || c != ' ') {
      arguments.back() += c;
    }
  }
  return arguments;
}

bool isText(const std::string& argument) {
  return argument.find('"') != std::string::npos;
}

std::string callWith(const std::string& name, std::vector<std::string> arguments, std::size_t index,
                     const char* argument) {
  arguments[index] = argument;
  std::string call = name + "(" + arguments.front();
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    call += ", " + arguments[i];
  }
  return call + ")";
}

void expectWhereverAccepted(const std::string& expression, const std::string& expected,
                            int castToET2 = 0) {
  int accepted = 0;
  for (const BackendKind kind : kBackends) {
    const std::string actual = evaluateExample(expression, kind, castToET2);
    if (!actual.starts_with(kRefused)) {
      ++accepted;
      EXPECT_EQ(actual, expected) << expression << " on " << backendLabel(kind);
    }
  }
  EXPECT_GT(accepted, 0) << expression;
}

struct NullLine {
  const char* text;
  std::vector<std::string> results;  // with each argument null in turn
};

// Of the functions that have more to say than that every null makes null, or every null 0.
const std::map<std::string, NullLine>& specialLines() {
  static const char* const isNumberLine =
      "The null text gives 1, as everything that is no text does.";
  static const char* const conversionLine =
      "A null, an empty or an unreadable date gives null, or 0 with castToET2.";
  static const std::map<std::string, NullLine> lines = {
      {"min", {kFirstCounts, {"null", "2", "1"}}},  // min(3, _null, 2), min(3, 1, _null)
      {"max", {kFirstCounts, {"null", "3", "3"}}},
      {"nvl", {kIsTested, {"5", "null"}}},
      {"nvl2", {kIsTested, {"2", "2", "null"}}},
      {"nanvl", {kIsTested, {"0", "null"}}},
      {"nanvl2", {kIsTested, {"2", "2", "null"}}},
      {"isNull", {kIsTested, {"1"}}},
      {"isNuLL", {kIsTested, {"1"}}},
      {"isMissing", {kIsTested, {"1"}}},
      {"finitevl", {"A null is not finite, so y is the result.", {"9", "null"}}},
      {"finitevl2", {"A null is not finite, so z is the result.", {"2", "null", "1"}}},
      {"isNan", {"A null is missing rather than not a number: 0.", {"0"}}},
      {"isFinite", {"A null is not finite: 0.", {"0"}}},
      {"isTrue", {"A null is not true: 0.", {"0"}}},
      {"sign", {"A null gives 0.", {"0"}}},
      {"isNumber", {isNumberLine, {"1"}}},
      {"isNumberStrict", {isNumberLine, {"1"}}},
      {"isInteger", {isNumberLine, {"1"}}},
      {"isIntegerStrict", {isNumberLine, {"1"}}},
      {"toET", {conversionLine, {"null"}}},
      {"toETF", {conversionLine, {"null"}}},
      {"hypot",
       {"With a null the result is null, but infinite beside an infinite argument.",
        {"null", "null"}}},
      {"pow",
       {"With a null the result is null, but pow(x, 0) and pow(1, y) are 1.", {"null", "null"}}},
  };
  return lines;
}

std::string expectedWithNull(const LanguageEntry& entry, std::size_t index) {
  const auto special = specialLines().find(entry.names.front());
  if (special != specialLines().end()) {
    EXPECT_STREQ(entry.entry->nulls, special->second.text) << entry.name;
    return special->second.results.at(index);
  }
  const char* const line = entry.entry->nulls;
  const bool isNull =
      line == kGivesNull || line == kUnreadableIsNull || line == kUnreadableMayBeZero;
  EXPECT_TRUE(isNull || line == kGivesFalse || line == kUnreadableIsFalse) << entry.name;
  return isNull ? "null" : "0";
}

TEST(NullLines, HoldForEachArgumentOfEachFunction) {
  for (const LanguageEntry& entry : languageEntries()) {
    if (entry.kind != HelpKind::function || entry.entry->nulls == nullptr) {
      continue;
    }
    const std::vector<std::string> arguments = argumentsInExample(entry);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      const char* const null = isText(arguments[i]) ? "_nullS" : "_null";
      expectWhereverAccepted(callWith(entry.names.front(), arguments, i, null),
                             expectedWithNull(entry, i));
    }
  }
}

TEST(NullLines, HoldForUnreadableDates) {
  int lines = 0;
  for (const LanguageEntry& entry : languageEntries()) {
    const char* const line = entry.entry->nulls;
    const bool isFalse = line == kUnreadableIsFalse;
    const bool mayBeZero = line == kUnreadableMayBeZero;
    if (!isFalse && !mayBeZero && line != kUnreadableIsNull) {
      continue;
    }
    ++lines;
    const std::vector<std::string> arguments = argumentsInExample(entry);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (!isText(arguments[i]) || arguments[i].find('-') == std::string::npos) {
        continue;  // no date
      }
      for (const char* const unreadable : {"\"garbage\"", "\"\""}) {
        const std::string call = callWith(entry.names.front(), arguments, i, unreadable);
        expectWhereverAccepted(call, isFalse ? "0" : "null", 0);
        expectWhereverAccepted(call, isFalse || mayBeZero ? "0" : "null", 1);
      }
    }
  }
  EXPECT_EQ(lines, 15);
}

TEST(NullLines, HoldForOperators) {
  for (const char* sign : {"+", "-", "*", "/", "^", "%", "&", "|", "<<", ">>"}) {
    expectWhereverAccepted(std::string("_null ") + sign + " 2", "null");
    expectWhereverAccepted(std::string("2 ") + sign + " _null", "null");
  }
  for (const char* expression :
       {"-(_null)", "_null^3", "pow(_null, 3)", "(int)_null", "(float)_null", "(_null){k}",
        "_nullS // \"a\"", "\"a\" // _nullS"}) {
    expectWhereverAccepted(expression, "null");
  }
  expectWhereverAccepted("_null == _null", "0");
  expectWhereverAccepted("_null <= 1", "0");
  for (const char* one : {"_null^0", "1^_null", "pow(_null, 0)", "pow(1, _null)"}) {
    expectWhereverAccepted(one, "1");
  }
  expectWhereverAccepted("hypot(_null, _infinity)", "inf");
  EXPECT_TRUE(evaluateExample("_null!", BackendKind::string).starts_with("failed: "));
}

TEST(NullLines, ANanThatIsNanDoesNotKnow) {
  for (const char* other : {"acos(2)", "asin(2)", "log10(0-1)"}) {
    expectWhereverAccepted(std::string("isNan(") + other + ")", "0");
    expectWhereverAccepted(std::string("nanvl(") + other + ", 7)", "7");
  }
}

}  // namespace
}  // namespace kelvarin
