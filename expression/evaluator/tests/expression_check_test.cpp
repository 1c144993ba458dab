// What a check answers, and which engine is chosen for which reason.

#include <gtest/gtest.h>

#include "expression/evaluator/expression_set.h"
#include "expression/evaluator/tests/evaluator_fixture.h"

namespace kelvarin {
namespace {

using CheckKind = ExpressionCheck::Kind;
using ErrorKind = ExpressionError::Kind;

InputVariable textSample(const char* name, const char* value) {
  InputVariable input = inputOf(name, 'U');
  input.text = QString::fromUtf8(value);
  return input;
}

TEST(ExpressionCheck, EvaluatesSamplesAndShowsTheEditorsTexts) {
  struct Case {
    const char* expression;
    char meta;  // ? for a condition
    CheckKind kind;
    ErrorKind error;
    const char* text;
    bool isCompiled;
  };
  const Case cases[] = {
      {"x+1", 'F', CheckKind::fine, ErrorKind::other, "", true},
      {"x+1", 'U', CheckKind::warning, ErrorKind::numberForText,
       "The expression evaluated to a Number and a String was expected", true},
      {"t", 'F', CheckKind::error, ErrorKind::textForNumber,
       "The expression evaluated to a String and a Number was expected", true},
      {"t", '?', CheckKind::warning, ErrorKind::other, "", true},
      {"toET(t)", 'F', CheckKind::error, ErrorKind::dateFormatUnknown,
       "Math parser error:\n  Date format is unknown", false},
      {"limit*2", 'F', CheckKind::fine, ErrorKind::other, "", true},
      {"city//\"!\"", 'U', CheckKind::fine, ErrorKind::other, "", true},
  };
  GlobalParameters parameters;
  parameters.setValue("limit", "2.5");
  parameters.setValue("city", "Brno");
  parameters.setValue("not a name", "1");
  ExpressionSet expressions;
  expressions.configure({}, {inputOf("x"), textSample("t", "12")}, &parameters, false);
  for (const Case& one : cases) {
    const bool isCondition = one.meta == '?';
    const ExpressionCheck check =
        expressions.check(outputOf(one.expression, isCondition ? 'F' : one.meta),
                          isCondition ? ResultUse::truth : ResultUse::column);
    EXPECT_EQ(check.kind, one.kind) << one.expression;
    EXPECT_EQ(check.text, one.text) << one.expression;
    EXPECT_EQ(check.error.kind, one.error) << one.expression;
    EXPECT_EQ(check.isCompiled(), one.isCompiled) << one.expression;
  }
  EXPECT_EQ(expressions.outputCount(), 0);
  EXPECT_EQ(expressions.check(outputOf("x+1")).value->number, 1.0);
}

TEST(ExpressionCheck, TokensHavePositionsInWhatTheUserWrote) {
  ExpressionSet expressions;
  expressions.configure({}, {inputOf("x")}, nullptr, false);
  const ExpressionCheck check = expressions.check(outputOf("\"é😀\"\n // foo", 'U'));
  EXPECT_EQ(check.text,
            "Undefined token \"foo\" found at position 10.\n  Error Token:foo\n  Error at "
            "position:10");
  EXPECT_EQ(check.error.token, "foo");
  EXPECT_EQ(check.error.position, 10);
  EXPECT_FALSE(check.isCompiled());
}

TEST(ExpressionCheck, StaysWithinBounds) {
  ExpressionSet expressions;
  expressions.configure({}, {inputOf("x"), textSample("t", "12345")}, nullptr, false);
  expressions.setBounds({.readsFiles = false, .textBytes = 12});
  EXPECT_EQ(expressions.check(outputOf("t//t", 'U')).kind, CheckKind::fine);
  EXPECT_EQ(expressions.check(outputOf("t//t//t", 'U')).kind, CheckKind::error);
  const ExpressionCheck file = expressions.check(outputOf("load(\"/proc/self/status\")", 'U'));
  ASSERT_TRUE(file.value);
  EXPECT_TRUE(file.value->isNull());
}

TEST(ExpressionCheck, KeepsWhatCompiledWhenAskedTo) {
  ExpressionSet expressions;
  expressions.configure({}, {inputOf("x")}, nullptr, false);
  EXPECT_EQ(expressions.checkAndAdd(outputOf("x +")).kind, CheckKind::error);
  EXPECT_EQ(expressions.outputCount(), 0);
  EXPECT_EQ(expressions.checkAndAdd(outputOf("x + 1")).kind, CheckKind::fine);
  EXPECT_EQ(expressions.outputCount(), 1);
  expressions.setNumber(0, 41.0);
  const auto made = expressions.evaluateOnce("x + 1 > 41");
  ASSERT_TRUE(made);
  EXPECT_EQ(made->number, 1.0);
  EXPECT_FALSE(expressions.evaluateOnce("x +"));
  EXPECT_EQ(expressions.outputCount(), 1);
}

TEST(ExpressionCheck, WarnsAboutTheReferenceTime) {
  EvaluationOptions options;
  options.time.addNow = true;
  options.time.referenceTime = "yesterday";
  ExpressionSet expressions;
  expressions.configure(options, {}, nullptr, false);
  const ExpressionCheck check = expressions.check(outputOf("_now > 0"));
  EXPECT_EQ(check.kind, CheckKind::warning);
  EXPECT_EQ(check.error.kind, ErrorKind::referenceTimeUnparsable);
  EXPECT_EQ(check.text,
            "Cannot parse Reference time. We will use 1970-01-01T00:00:00.000 as reference time.");
}

TEST(EngineChoice, SaysWhatForcedASlowerEngine) {
  using Reason = EngineChoice::Reason;
  struct Case {
    const char* expression;
    BackendKind engine;
    const char* token;
    int position;
  };
  const Case cases[] = {
      {"x * 2", BackendKind::native, "", -1},
      {"2 + (x = 3)", BackendKind::fast, "=", 7},
      {"x + strlen(t)", BackendKind::string, "strlen", 4},
      {"x + (t == \"a\")", BackendKind::string, "t", 5},
      {"1 + isNull(\"é\")", BackendKind::string, "isNull", 4},
      {"x + größe + Ελλάς", BackendKind::string, "Ελλάς", 12},
  };
  ExpressionSet expressions;
  expressions.configure(
      {}, {inputOf("x"), textSample("t", "a"), inputOf("größe"), inputOf("Ελλάς")}, nullptr, false);
  for (const Case& one : cases) {
    const ExpressionCheck check = expressions.check(outputOf(one.expression));
    ASSERT_TRUE(check.isCompiled()) << one.expression;
    EXPECT_EQ(check.engine->engine, one.engine) << one.expression;
    EXPECT_EQ(check.engine->reason,
              one.engine == BackendKind::native ? Reason::fastest : Reason::token)
        << one.expression;
    EXPECT_EQ(check.engine->token.toStdString(), one.token) << one.expression;
    EXPECT_EQ(check.engine->position, one.position) << one.expression;
  }
  EXPECT_EQ(expressions.check(outputOf("x", 'U')).engine->reason, Reason::textResult);

  EvaluationOptions withoutNative;
  withoutNative.useJIT = false;
  expressions.configure(withoutNative, {inputOf("x")}, nullptr, false);
  EXPECT_EQ(expressions.check(outputOf("x")).engine->reason, Reason::nativeIsOff);
  expressions.configure({}, {inputOf("x")}, nullptr, true);
  EXPECT_EQ(expressions.check(outputOf("x")).engine->reason, Reason::observed);
  expressions.configure({}, {inputOf("x")}, nullptr, false);
  expressions.requireBackend(BackendKind::fast);
  EXPECT_EQ(expressions.check(outputOf("x")).engine->reason, Reason::required);
}

TEST(EngineChoice, HasALabelForEditors) {
  EXPECT_STREQ(editorLabel(std::nullopt), "??? parser");
  EXPECT_STREQ(editorLabel(BackendKind::native), "Fastest parser");
  EXPECT_STREQ(editorLabel(BackendKind::fast), "Fast parser");
  EXPECT_STREQ(editorLabel(BackendKind::string), "String parser");
}

}  // namespace
}  // namespace kelvarin
