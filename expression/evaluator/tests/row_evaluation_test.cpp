// Rows loaded, evaluated and written.

#include "expression/evaluator/row_evaluation.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "base/null_number.h"
#include "expression/evaluator/tests/evaluator_fixture.h"
#include "host/contract/column_bytes.h"

namespace {
std::atomic<long long> allocationCount{0};
}

void* operator new(std::size_t size) {
  allocationCount.fetch_add(1, std::memory_order_relaxed);
  if (void* memory = std::malloc(size)) {
    return memory;
  }
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace kelvarin {
namespace {

TEST(RowEvaluation, TextsInFunctionsOfNumbersAreReportedWithTheirPosition) {
  TableRun run({"t", "a"}, "UF", {inputOf("t", 'U'), inputOf("a")});
  ASSERT_EQ(run.add(outputOf("\"é\" == t ? 1 : 0 + sqrt(t)")), QString());
  ASSERT_EQ(run.add(outputOf("isNull(t) + exp(a) + ln(2)")), QString());
  for (const char* text : {"é", "9", "x"}) {
    run.table.set(0, QString::fromUtf8(text));
    run.evaluator.rows.loadRow(run.table.row());
    EXPECT_EQ(run.evaluator.rows.evaluate(0), RowOutcome::ok);
    EXPECT_EQ(run.evaluator.rows.evaluate(1), RowOutcome::ok);
    run.evaluator.rows.advanceRow();
  }
  EXPECT_EQ(run.number(), 0.0);  // the library's answer
  EXPECT_EQ(run.evaluator.rows.closingWarnings(),
            QStringList{"Expression 'out': the function 'sqrt' at position 19 took its argument 1, "
                        "a text or an array, for 0 on 2 occasion(s), the first one on data row 1. "
                        "Write atof() around a text that is a number."});
  const ExpressionCheck check = run.evaluator.expressions.check(outputOf("sin(t)"));
  EXPECT_EQ(check.kind, ExpressionCheck::Kind::warning);
  EXPECT_EQ(check.text, QString());
  EXPECT_EQ(
      check.warnings,
      QStringList{"Expression 'out': the function 'sin' at position 0 takes its argument 1, a "
                  "text or an array, for 0. Write atof() around a text that is a number."});
  EXPECT_EQ(run.evaluator.expressions.check(outputOf("sin(atof(t))")).kind,
            ExpressionCheck::Kind::fine);
}

TEST(RowEvaluation, RowNumberCountsFromZeroAndSurvivesAssignment) {
  for (const char* expression : {"_n", "_n=_n+10"}) {
    TableRun run({"a"}, "F", {});
    ASSERT_EQ(run.add(outputOf(expression)), QString());
    run.next();
    const double first = run.number();
    run.next();
    EXPECT_EQ(run.number(), first + 1);
    EXPECT_EQ(run.evaluator.rows.rowNumber(), 2.0);
  }
  EvaluationOptions without;
  without.addN = false;
  TableRun run({"a"}, "F", {}, without);
  EXPECT_NE(run.add(outputOf("_n")), QString());
}

TEST(RowEvaluation, AnEmptyExpressionIsTheNullOfItsColumn) {
  TableRun run({"a"}, "F", {});
  unsigned char* text = nullptr;
  ASSERT_EQ(run.add(outputOf("", 'F')), QString());
  ASSERT_EQ(run.add(outputOf(" ", 'K')), QString());
  ASSERT_EQ(run.add(outputOf("", 'U')), QString());
  run.evaluator.rows.setTextTarget(2, &text);
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(run.next(i), RowOutcome::ok);
  }
  EXPECT_TRUE(isNullNumber(run.number(0)));
  EXPECT_TRUE(isNullKey(run.key(1)));
  EXPECT_TRUE(isNullText(text));
}

TEST(RowEvaluation, TextVariablesTakeTheShortestTextOfNumbersAndKeys) {
  TableRun run({"f", "k"}, "FK", {inputOf("f", 'U'), inputOf("k", 'U')});
  unsigned char* text = nullptr;
  ASSERT_EQ(run.add(outputOf("f//\"/\"//k", 'U')), QString());
  run.evaluator.rows.setTextTarget(0, &text);
  run.table.set(0, 0.1);
  run.table.setKey(1, 4000000000u);
  ASSERT_EQ(run.next(), RowOutcome::ok);
  EXPECT_EQ(textFromBytes(text), "0.1/4000000000");
  EXPECT_EQ(run.evaluator.expressions.inputValue(1).text, "4000000000");
  run.table.setNull(0);
  ASSERT_EQ(run.next(), RowOutcome::ok);
  EXPECT_TRUE(isNullText(text));
}

TEST(RowEvaluation, NumberVariablesTakeTextsThatAreNumbersAndWarnOnce) {
  TableRun run({"t"}, "U", {inputOf("t")});
  ASSERT_EQ(run.add(outputOf("t")), QString());
  const std::pair<const char*, double> cases[] = {
      {"12", 12.0},      {"  -1.5e3 ", -1500.0}, {"+7", 7.0},        {"inf", kInfinity},
      {"", kNullNumber}, {"12 km", kNullNumber}, {"x", kNullNumber}, {"1,5", kNullNumber}};
  for (const auto& [text, number] : cases) {
    run.table.set(0, QString::fromUtf8(text));
    ASSERT_EQ(run.next(), RowOutcome::ok);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(run.number()), std::bit_cast<std::uint64_t>(number))
        << text;
  }
  EXPECT_EQ(run.evaluator.rows.closingWarnings(),
            QStringList{"Column 't' is a text column used as a number: 3 value(s) were no numbers "
                        "and counted as missing, the first one on data row 5 (counted from 0)."});
}

TEST(RowEvaluation, CountsDatesThatCannotBeRead) {
  for (const int castToET2 : {0, 1}) {
    EvaluationOptions options;
    options.time.dateFormat = "yyyy-MM-dd";
    options.time.castToET2 = castToET2;
    options.time.referenceTime = "20000101 00:00:00";
    TableRun run({"d"}, "U", {inputOf("d", 'D')}, options);
    ASSERT_EQ(run.add(outputOf("1")), QString());
    run.table.setNull(0);
    ASSERT_EQ(run.next(), RowOutcome::ok);
    for (const char* text : {"2024-01-31", "", " ", "1999-12-31", "31/01/2024", "31/01/2024",
                             "2024-02-30", "2024-01-31"}) {
      run.table.set(0, QString(text));
      ASSERT_EQ(run.next(), RowOutcome::ok);
    }
    EXPECT_EQ(
        run.evaluator.rows.closingWarnings(),
        QStringList{
            QStringLiteral(
                "Column 'd' holds dates in the format 'yyyy-MM-dd': 3 value(s) could not be read "
                "and count as %1, the first one '31/01/2024' on data row 5 (counted from 0).")
                .arg(castToET2 == 0 ? "missing" : "0")});
  }
}

TEST(RowEvaluation, NullKeysEnterAsTheOptionSays) {
  const double expected[] = {kNullNumber, 0.0};
  for (int mode = 0; mode < 3; ++mode) {
    EvaluationOptions options;
    options.keyCast.nullOnInput = mode;
    TableRun run({"k"}, "K", {inputOf("k")}, options);
    ASSERT_EQ(run.add(outputOf("k")), QString());
    run.table.setKey(0, 0xFFFFFFFE);
    if (mode == 2) {
      EXPECT_EQ(run.next(), RowOutcome::stop);
      EXPECT_EQ(run.evaluator.rows.lastFailure().kind, RowFailure::Kind::nullKey);
      EXPECT_EQ(run.evaluator.rows.lastFailure().name, "k");
      continue;
    }
    EXPECT_EQ(run.next(), RowOutcome::ok);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(run.number()),
              std::bit_cast<std::uint64_t>(expected[mode]));
  }
}

TEST(RowEvaluation, KeyResultsFollowBothCastModes) {
  struct Case {
    double number;
    int outOfRange;
    int fraction;
    RowOutcome outcome;
    std::uint32_t key;
  };
  const Case cases[] = {
      {kNullNumber, 2, 2, RowOutcome::ok, 0xFFFFFFFF},
      {4294967293.0, 2, 2, RowOutcome::ok, 4294967293u},
      {4294967294.0, 0, 2, RowOutcome::ok, 0},
      {4294967294.0, 1, 2, RowOutcome::ok, 0xFFFFFFFF},
      {4294967294.0, 2, 0, RowOutcome::stop, 0xFFFFFFFF},
      {-0.5, 0, 2, RowOutcome::ok, 0},
      {kNotANumber, 1, 0, RowOutcome::ok, 0xFFFFFFFF},
      {kInfinity, 2, 0, RowOutcome::stop, 0xFFFFFFFF},
      {2.7, 2, 0, RowOutcome::ok, 2},
      {2.7, 2, 1, RowOutcome::ok, 0xFFFFFFFF},
      {2.7, 0, 2, RowOutcome::stop, 0xFFFFFFFF},
      {-0.0, 2, 2, RowOutcome::ok, 0},
  };
  for (const Case& one : cases) {
    EvaluationOptions options;
    options.keyCast = {one.outOfRange, one.fraction, 0};
    options.abortWhenError = false;
    TableRun run({"a"}, "F", {inputOf("a")}, options);
    ASSERT_EQ(run.add(outputOf("a", 'K')), QString());
    run.table.set(0, one.number);
    EXPECT_EQ(run.next(), one.outcome) << one.number;
    EXPECT_EQ(run.key(), one.key) << one.number;
    if (one.outcome == RowOutcome::stop) {
      EXPECT_EQ(run.evaluator.rows.lastFailure().kind, RowFailure::Kind::keyCast);
      EXPECT_EQ(run.evaluator.rows.lastFailure().value, one.number);
    }
  }
}

TEST(RowEvaluation, ResultsTakeTheTypeOfTheirColumn) {
  TableRun run({"a"}, "F", {inputOf("a")});
  unsigned char* text = nullptr;
  ASSERT_EQ(run.add(outputOf("a/3", 'U')), QString());
  ASSERT_EQ(run.add(outputOf("\"x\"==\"x\"", 'F')), QString());
  ASSERT_EQ(run.add(outputOf("\"x\"", 'F')), QString());
  run.evaluator.rows.setTextTarget(0, &text);
  run.table.set(0, 1.0);
  ASSERT_EQ(run.next(0), RowOutcome::ok);
  EXPECT_EQ(textFromBytes(text), "0.3333333333333333");
  ASSERT_EQ(run.next(1), RowOutcome::ok);
  EXPECT_EQ(run.number(1), 1.0);
  EXPECT_EQ(run.next(2), RowOutcome::stop);
  EXPECT_EQ(run.evaluator.rows.lastFailure().error.message,
            "The expression evaluated to a String and a Number was expected");
}

TEST(RowEvaluation, AFailedRowLosesOnlyItsOwnOutputWhenRunsGoOn) {
  EvaluationOptions options;
  options.abortWhenError = false;
  TableRun run({"t"}, "U", {inputOf("t", 'U')}, options);
  ASSERT_EQ(run.add(outputOf("nvl(t, 1) + 1")), QString());
  ASSERT_EQ(run.add(outputOf("_n")), QString());
  run.table.set(0, QString("x"));
  EXPECT_EQ(run.next(0), RowOutcome::failed);
  EXPECT_TRUE(isNullNumber(run.number(0)));
  EXPECT_EQ(run.evaluator.rows.lastFailure().backend, BackendKind::string);
  EXPECT_EQ(run.evaluator.rows.lastFailure().name, "out");
  EXPECT_EQ(run.next(1), RowOutcome::ok);
  run.table.setNull(0);
  EXPECT_EQ(run.next(0), RowOutcome::ok);
  EXPECT_EQ(run.number(0), 2.0);
  const FailureCount& failures = run.evaluator.rows.failures();
  EXPECT_EQ(failures.count, 1);
  EXPECT_EQ(failures.firstName, "out");
  EXPECT_EQ(failures.firstRow, 0.0);
  EXPECT_TRUE(failures.firstMessage.startsWith("Can't evaluate"));
}

TEST(RowEvaluation, TruthFollowsIsTrue) {
  const std::pair<const char*, bool> cases[] = {
      {"0", false},      {"_null", false},     {"_nan", true},  {"_infinity", true},
      {"-1", true},      {"1>2", false},       {"\"\"", false}, {"\"0\"", true},
      {"_nullS", false}, {"\"a\"<\"b\"", true}};
  TableRun run({"a"}, "F", {});
  int index = 0;
  for (const auto& [expression, expected] : cases) {
    ASSERT_EQ(run.add(outputOf(expression), ResultUse::truth), QString());
    run.evaluator.rows.loadRow(run.table.row());
    bool isTrue = !expected;
    ASSERT_EQ(run.evaluator.rows.evaluateTruth(index++, isTrue), RowOutcome::ok);
    EXPECT_EQ(isTrue, expected) << expression;
  }
}

TEST(RowEvaluation, DateInputsEnterAsElapsedTimes) {
  struct Case {
    const char* date;
    bool emptyToNull;
    int castEarly;
    int castUnparsable;
    double elapsed;
  };
  const Case cases[] = {
      {"2000-01-02 12:00", true, 0, 0, 1.0},
      {"", true, 0, 1, kNullNumber},
      {"", false, 0, 0, 0.0},
      {"rubbish", true, 0, 0, kNullNumber},
      {"rubbish", true, 0, 1, 0.0},
      {"1999-12-31 23:59", true, 0, 0, kNullNumber},
      {"1999-12-31 23:59", true, 1, 0, 0.0},
  };
  for (const Case& one : cases) {
    EvaluationOptions options = withoutNative();
    options.time.referenceTime = "20000101 00:00:00";
    options.time.dateFormat = "yyyy-MM-dd hh:mm";
    options.time.elapsedTimeUnit = 3;
    options.time.emptyETToNull = one.emptyToNull;
    options.time.castToET1 = one.castEarly;
    options.time.castToET2 = one.castUnparsable;
    TableRun run({"d"}, "U", {inputOf("d", 'D')}, options);
    ASSERT_EQ(run.add(outputOf("d")), QString());
    EXPECT_EQ(run.evaluator.expressions.backend(0), BackendKind::fast);
    run.table.set(0, QString(one.date));
    ASSERT_EQ(run.next(), RowOutcome::ok);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(run.number()), std::bit_cast<std::uint64_t>(one.elapsed))
        << one.date;
  }
}

TEST(RowEvaluation, NumbersCostNoAllocationPerRow) {
  TableRun run({"a", "k"}, "FK", {inputOf("a"), inputOf("k")});
  ASSERT_EQ(run.add(outputOf("a*k+nvl(a,1)")), QString());
  ASSERT_EQ(run.add(outputOf("k+1", 'K')), QString());
  ASSERT_EQ(run.add(outputOf("a > _n"), ResultUse::truth), QString());
  run.table.set(0, 1.5);
  run.table.setKey(1, 3);
  bool isTrue = false;
  const auto oneRow = [&] {
    run.evaluator.rows.loadRow(run.table.row());
    run.evaluator.rows.evaluate(0);
    run.evaluator.rows.evaluate(1);
    run.evaluator.rows.evaluateTruth(2, isTrue);
    run.evaluator.rows.advanceRow();
  };
  oneRow();
  const long long before = allocationCount.load();
  for (int i = 0; i < 1000; ++i) {
    oneRow();
  }
  EXPECT_EQ(allocationCount.load(), before);
  EXPECT_EQ(run.number(0), 6.0);
}

}  // namespace
}  // namespace kelvarin
