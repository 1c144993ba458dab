// What a step debugger shows of a row: names and typed values, from the engine that evaluates.

#include <gtest/gtest.h>

#include "expression/evaluator/tests/evaluator_fixture.h"

namespace kelvarin {
namespace {

QString shown(const ExpressionValue& value) {
  if (value.isNull()) {
    return value.type == ExpressionValue::Type::text ? "null text" : "null";
  }
  switch (value.type) {
    case ExpressionValue::Type::text:
      return u'"' + value.text + u'"';
    case ExpressionValue::Type::boolean:
      return value.number != 0.0 ? "true" : "false";
    case ExpressionValue::Type::number:
      break;
  }
  return QString::number(value.number);
}

QStringList variablesOf(TableRun& run) {
  const RowEvaluation& rows = run.evaluator.rows;
  const std::vector<ShownVariable> variables = rows.shownVariables(run.table.row());
  std::vector<ExpressionValue> values;
  rows.showValues(run.table.row(), variables, values);
  QStringList lines;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ShownVariable& variable = variables[i];
    EXPECT_EQ(variable.isText, values[i].type == ExpressionValue::Type::text);
    const QString element =
        variable.element < 0 ? QString() : QStringLiteral("[%1]").arg(variable.element);
    const QString column =
        variable.column.isEmpty() ? QString() : QStringLiteral(" of ") + variable.column;
    lines += variable.name + element + column + QStringLiteral(" = ") + shown(values[i]);
  }
  return lines;
}

EvaluationOptions withClock() {
  EvaluationOptions options;
  options.time.addNow = options.time.addNowS = true;
  options.time.dateFormat = "yyyy";
  options.time.referenceTime = "20000101 00:00:00";
  return options;
}

TEST(RowVariables, HaveNamesTypesAndNullMarks) {
  std::vector<InputVariable> inputs{inputOf("a"), inputOf("k"), inputOf("t", 'U'),
                                    inputOf("d", 'D'), inputOf("n")};
  inputs[0].label = "x";
  TableRun run({"a", "k", "t", "d", "n"}, "FKUUU", inputs, withClock(), true);
  ASSERT_EQ(run.add(outputOf("x")), QString());
  run.table.set(0, 1.5);
  run.table.setKey(1, 0xFFFFFFFE);
  run.table.set(2, QString(""));
  run.table.set(3, QString("2000"));
  run.table.set(4, QString("12 km"));
  run.next();
  run.next();
  const QStringList lines = variablesOf(run);
  EXPECT_EQ(lines.mid(0, 6), (QStringList{"x of a = 1.5", "k of k = null", "t of t = \"\"",
                                          "d of d = 0", "n of n = null", "_n = 1"}));
  ASSERT_EQ(lines.size(), 8);
  EXPECT_TRUE(lines[6].startsWith("_now = ") && lines[7].startsWith("_nowS = \"20"));

  run.table.setNull(2);
  run.next();
  EXPECT_EQ(variablesOf(run)[2], "t of t = null text");
  // To look at a row counts nothing: two rows had a text that is no number before this one.
  EXPECT_TRUE(run.evaluator.rows.closingWarnings()[0].contains(": 3 value(s) were no numbers"));
}

TEST(RowVariables, AnAssignedValueIsThatOfTheExpression) {
  for (const bool isObserved : {false, true}) {  // on the Fast and on the String Parser
    TableRun run({"x", "t"}, "FU", {inputOf("x"), inputOf("t", 'U')}, {}, isObserved);
    ASSERT_EQ(run.add(outputOf("x = x + 1")), QString());
    ASSERT_EQ(run.add(outputOf("x * 10")), QString());
    ASSERT_EQ(run.add(outputOf("t = t // \"!\"", 'U')), QString());
    unsigned char* text = nullptr;
    run.evaluator.rows.setTextTarget(2, &text);
    for (const double x : {1.0, 5.0}) {
      run.table.set(0, x);
      run.table.set(1, QString("a"));
      run.evaluator.rows.loadRow(run.table.row());
      for (int output = 0; output < 3; ++output) {
        ASSERT_EQ(run.evaluator.rows.evaluate(output), RowOutcome::ok);
      }
      run.evaluator.rows.advanceRow();
      EXPECT_EQ(run.number(1), x * 10);
      EXPECT_EQ(variablesOf(run).mid(0, 2),
                (QStringList{QString("x of x = %1").arg(x + 1), "t of t = \"a!\""}));
      EXPECT_EQ(run.evaluator.expressions.inputValue(0).number, x);
    }
  }
}

TEST(RowVariables, OfARowThatFailedAreShownAsFarAsItCame) {
  TableRun run({"x", "t", "k"}, "FUK", {inputOf("x"), inputOf("t", 'U'), inputOf("k")}, {}, true);
  run.evaluator.clear();
  EvaluationOptions options;
  options.keyCast.nullOnInput = 2;
  run.evaluator.expressions.configure(options, {inputOf("x"), inputOf("t", 'U'), inputOf("k")},
                                      nullptr, true);
  ASSERT_TRUE(run.evaluator.expressions.bind(run.table.row(), asWritten));
  ASSERT_EQ(run.add(outputOf("(x = 7) + k")), QString());
  ASSERT_EQ(run.add(outputOf("(x = 8) + nvl(t, 1) + 1")), QString());
  ASSERT_EQ(run.add(outputOf("(x = 9)")), QString());
  const auto evaluateAll = [&run] {
    RowOutcome outcome = run.evaluator.rows.loadRow(run.table.row());
    for (int i = 0; i < 3 && outcome == RowOutcome::ok; ++i) {
      outcome = run.evaluator.rows.evaluate(i);
    }
    return outcome;
  };
  run.table.set(0, 1.0);
  run.table.setNull(1);
  run.table.setKey(2, 4);
  ASSERT_EQ(evaluateAll(), RowOutcome::ok);
  EXPECT_EQ(variablesOf(run)[0], "x of x = 9");
  run.evaluator.rows.advanceRow();

  run.table.set(1, QString("text"));
  ASSERT_EQ(evaluateAll(), RowOutcome::stop);
  EXPECT_EQ(variablesOf(run),
            (QStringList{"x of x = 8", "t of t = \"text\"", "k of k = 4", "_n = 1"}));
  run.evaluator.rows.advanceRow();

  run.table.setKey(2, 0xFFFFFFFE);  // stops at loading
  run.table.set(0, 3.0);
  ASSERT_EQ(evaluateAll(), RowOutcome::stop);
  EXPECT_EQ(run.evaluator.rows.lastFailure().kind, RowFailure::Kind::nullKey);
  EXPECT_EQ(variablesOf(run),
            (QStringList{"x of x = 3", "t of t = \"text\"", "k of k = null", "_n = 2"}));
}

TEST(RowVariables, OfAVectorEveryElementIsShown) {
  InputVariable vector = inputOf("v");
  vector.columns = {"v0", "v1", "v2"};
  vector.label = "v";
  vector.isVector = true;
  TableRun run({"v0", "v1", "v2", "x"}, "FFFF", {}, {}, true);
  run.evaluator.expressions.configure({}, {vector, inputOf("x")}, nullptr, true);
  ASSERT_TRUE(run.evaluator.expressions.bind(run.table.row(), asWritten, 3));
  ASSERT_EQ(run.add(outputOf("v = v * x")), QString());
  for (int i = 0; i < 4; ++i) {
    run.table.set(i, i + 1.0);
  }
  run.evaluator.rows.loadRow(run.table.row());
  for (int element = 0; element < 3; ++element) {
    ASSERT_EQ(run.evaluator.rows.loadElement(run.table.row(), element), RowOutcome::ok);
    ASSERT_EQ(run.evaluator.rows.evaluate(0), RowOutcome::ok);
  }
  EXPECT_EQ(variablesOf(run), (QStringList{"v[0] of v0 = 1", "v[1] of v1 = 2", "v[2] of v2 = 12",
                                           "x of x = 4", "_n = 0"}));
}

TEST(RowVariables, OfRowsThatAreCountedOnly) {
  TableRun run({"x"}, "F", {inputOf("missing"), inputOf("x")}, {}, true);
  EXPECT_NE(run.bindError, QString());
  run.table.set(0, 2.0);
  run.evaluator.rows.passRow();
  EXPECT_EQ(variablesOf(run), (QStringList{"x of x = 2", "_n = 0"}));
  run.evaluator.rows.passRow();
  EXPECT_EQ(variablesOf(run)[1], "_n = 1");
}

}  // namespace
}  // namespace kelvarin
