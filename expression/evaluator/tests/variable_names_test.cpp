// Which variable a name means, and whose value an assignment changes.

#include "expression/evaluator/variable_names.h"

#include <gtest/gtest.h>

#include "expression/evaluator/tests/evaluator_fixture.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {
namespace {

TEST(Assignments, AnAssignmentIsSeenByItsOwnExpressionOnly) {
  // Native code, the Fast Parser, which assigns first, and the String Parser.
  for (const bool isObserved : {false, true}) {
    TableRun run({"a", "t"}, "FU", {inputOf("a"), inputOf("t", 'U')}, {}, isObserved);
    for (const char* expression : {"(a=5)+a", "a*10", "isNull(t)+(a=7)+a", "a*100", "nvl(a,0)"}) {
      ASSERT_EQ(run.add(outputOf(expression)), QString());
    }
    ASSERT_EQ(run.add(outputOf("(t=\"changed\")", 'U')), QString());
    ASSERT_EQ(run.add(outputOf("t", 'U')), QString());
    unsigned char* changed = nullptr;
    unsigned char* text = nullptr;
    run.evaluator.rows.setTextTarget(5, &changed);
    run.evaluator.rows.setTextTarget(6, &text);
    run.table.set(1, QString("row"));
    for (const double a : {1.0, 2.0}) {
      run.table.set(0, a);
      run.evaluator.rows.loadRow(run.table.row());
      const double expected[] = {10.0, 10 * a, 14.0, 100 * a, a};
      for (int i = 0; i < 7; ++i) {
        ASSERT_EQ(run.evaluator.rows.evaluate(i), RowOutcome::ok);
        if (i < 5) {
          EXPECT_EQ(run.number(i), expected[i]) << i << " observed " << isObserved;
        }
      }
      EXPECT_EQ(textFromBytes(changed), "changed");
      EXPECT_EQ(textFromBytes(text), "row");
      EXPECT_EQ(run.evaluator.expressions.inputValue(0).number, a);
      run.evaluator.rows.advanceRow();
    }
  }
}

TEST(VariableNames, OfTwoVariablesWithOneNameTheFirstIsSeen) {
  InputVariable number = inputOf("a");
  InputVariable text = inputOf("t", 'U');
  number.label = text.label = "x";
  for (const bool isObserved : {false, true}) {
    TableRun numberFirst({"a", "t"}, "FU", {number, text}, {}, isObserved);
    TableRun textFirst({"a", "t"}, "FU", {text, number}, {}, isObserved);
    for (TableRun* run : {&numberFirst, &textFirst}) {
      run->table.set(0, 2.0);
      run->table.set(1, QString("12345"));
    }
    ASSERT_EQ(numberFirst.add(outputOf("x+1")), QString());
    ASSERT_EQ(textFirst.add(outputOf("strlen(x)")), QString());
    EXPECT_EQ(numberFirst.next(), RowOutcome::ok);
    EXPECT_EQ(textFirst.next(), RowOutcome::ok);
    EXPECT_EQ(numberFirst.number(), 3.0);
    EXPECT_EQ(textFirst.number(), 5.0);
    EXPECT_EQ(textFirst.add(outputOf("x+1")), QString());
    EXPECT_EQ(textFirst.evaluator.expressions.backend(1),
              BackendKind::string);  // a text plus a number
  }
}

TEST(VariableNames, NamesThatHideEachOtherAreReported) {
  const auto inputs = [](const QStringList& columns, const char* label) {
    std::vector<InputVariable> list;
    for (const QString& column : columns) {
      list.push_back(inputOf(column.toUtf8().constData()));
      list.back().label = label;
    }
    return list;
  };
  EXPECT_EQ(warningsAboutNames(inputs({"a", "b"}, "x")),
            QStringList{"The variable 'x' is defined twice, by column 'a' and by column 'b': "
                        "expressions see the first one. Give the other a label of its own."});
  EXPECT_EQ(warningsAboutNames(inputs({"a", "b"}, "")), QStringList());
  const QStringList many = warningsAboutNames(inputs(QStringList(100, "c"), "x"));
  EXPECT_EQ(many.size(), 6);
  EXPECT_EQ(many.last(), "94 more variable(s) are defined twice.");

  EvaluationOptions withoutNumber;
  withoutNumber.addN = false;
  EXPECT_FALSE(checkNames(inputs({"a"}, "_n"), {}));
  EXPECT_FALSE(checkNames(inputs({"_n"}, ""), {}));
  EXPECT_TRUE(checkNames(inputs({"a"}, "_n"), withoutNumber));
}

}  // namespace
}  // namespace kelvarin
