#include "expression/evaluator/expression_evaluator.h"

#include <atomic>
#include <ctime>
#include <cstdlib>
#include <new>
#include <thread>

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

// Sanitizers slow the libraries down.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr double kMaxSeconds = 60.0;
#else
constexpr double kMaxSeconds = 2.0;
#endif

// Leaves native code out, so that the back-end of numbers is the Fast one.
EvaluationOptions withoutNative() {
  EvaluationOptions options;
  options.useJIT = false;
  return options;
}

TEST(Evaluator, TakesTheFirstBackendThatCompiles) {
  TableRun run({"a", "t", "größe", "Ελλάς"}, "FUFF",
               {inputOf("a"), inputOf("t", 'U'), inputOf("größe"), inputOf("Ελλάς")},
               withoutNative());
  EXPECT_EQ(run.add(outputOf("a*2")), QString());
  EXPECT_EQ(run.add(outputOf("isNull(t)")), QString());
  EXPECT_EQ(run.add(outputOf("a*2", 'U')), QString());
  EXPECT_EQ(run.add(outputOf("größe+1")), QString());
  EXPECT_EQ(run.add(outputOf("Ελλάς+1")), QString());
  EXPECT_EQ(run.evaluator.expressions.backend(0), BackendKind::fast);
  EXPECT_EQ(run.evaluator.expressions.backend(1), BackendKind::string);
  EXPECT_EQ(run.evaluator.expressions.backend(2), BackendKind::string);
  EXPECT_EQ(run.evaluator.expressions.backend(3), BackendKind::fast);
  EXPECT_EQ(run.evaluator.expressions.backend(4), BackendKind::string);
  run.table.set(2, 4.0);
  run.table.set(3, 6.0);
  EXPECT_EQ(run.next(3), RowOutcome::ok);
  EXPECT_EQ(run.number(3), 5.0);
  EXPECT_EQ(run.next(4), RowOutcome::ok);
  EXPECT_EQ(run.number(4), 7.0);
}

TEST(Evaluator, AnObserverForcesTheStringBackend) {
  TableRun run({"a"}, "F", {inputOf("a")}, {}, true);
  ASSERT_EQ(run.add(outputOf("a*2")), QString());
  EXPECT_EQ(run.evaluator.expressions.backend(0), BackendKind::string);
}

TEST(Evaluator, ARequiredBackendHasNoFallback) {
  TableRun run({"t"}, "U", {inputOf("t", 'U')});
  run.evaluator.expressions.requireBackend(BackendKind::fast);
  EXPECT_TRUE(run.add(outputOf("t", 'U')).contains("\"t\""));
  run.evaluator.expressions.requireBackend(BackendKind::string);
  EXPECT_EQ(run.add(outputOf("t", 'U')), QString());
}

TEST(Evaluator, TextsInFunctionsOfNumbersAreReportedWithTheirPosition) {
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
  EXPECT_EQ(check.warnings,
            QStringList{"Expression 'out': the function 'sin' at position 0 takes its argument 1, a "
                        "text or an array, for 0. Write atof() around a text that is a number."});
  EXPECT_EQ(run.evaluator.expressions.check(outputOf("sin(atof(t))")).kind,
            ExpressionCheck::Kind::fine);
}

TEST(Evaluator, RowNumberCountsFromZeroAndSurvivesAssignment) {
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

TEST(Evaluator, ColumnsWinOverTheNamesOfLibraries) {
  const QStringList names = {"e", "k", "sum", "min", "pi", "or", "order", "_null", "_pi", "sin"};
  std::vector<InputVariable> inputs;
  for (const QString& name : names) {
    inputs.push_back(inputOf(name.toUtf8().constData()));
  }
  for (const BackendKind kind : {BackendKind::fast, BackendKind::string}) {
    TableRun run(names, QString(names.size(), u'F'), inputs);
    run.evaluator.expressions.requireBackend(kind);
    for (int i = 0; i < names.size(); ++i) {
      run.table.set(i, 10.0 + i);
      ASSERT_EQ(run.add(outputOf((names[i] + "+1").toUtf8().constData())), QString()) << i;
      ASSERT_EQ(run.next(i), RowOutcome::ok);
      EXPECT_EQ(run.number(i), 11.0 + i) << names[i].toStdString();
    }
    // Used as a function, the library's stays.
    ASSERT_EQ(run.add(outputOf("min(3,2)+sin(0)")), QString());
    ASSERT_EQ(run.next(static_cast<int>(names.size())), RowOutcome::ok);
    EXPECT_EQ(run.number(static_cast<int>(names.size())), 2.0);
  }
}

TEST(Evaluator, LabelsThatNoExpressionCanHoldDoNoHarm) {
  TableRun run({"a b", "1st", "", "x"}, "FFFF", {inputOf("a b"), inputOf("1st"), inputOf("x")},
               withoutNative());
  ASSERT_EQ(run.add(outputOf("x+1")), QString());
  EXPECT_EQ(run.evaluator.expressions.backend(0), BackendKind::fast);
  EXPECT_EQ(run.add(outputOf("x+1", 'U')), QString());
}

TEST(Evaluator, LineBreaksAreBlanksInEveryBackend) {
  for (const BackendKind kind : {BackendKind::fast, BackendKind::string}) {
    TableRun run({"x"}, "F", {inputOf("x")});
    run.evaluator.expressions.requireBackend(kind);
    ASSERT_EQ(run.add(outputOf("x\r\n\t+1")), QString());
    run.table.set(0, 2.0);
    run.next();
    EXPECT_EQ(run.number(), 3.0);
  }
}

TEST(Evaluator, MissingColumnsAndMixedTypesAreNamed) {
  EXPECT_EQ(TableRun({"a"}, "F", {inputOf("b")}).bindError, "Error: Column 'b' not found");
  InputVariable two = inputOf("a");
  two.columns = {"a", "t"};
  EXPECT_EQ(TableRun({"a", "t"}, "FU", {two}).bindError,
            "Error: Column 'a' and 't' must have the same type");
}

TEST(Evaluator, AnEmptyExpressionIsTheNullOfItsColumn) {
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

TEST(Evaluator, TextVariablesTakeTheShortestTextOfNumbersAndKeys) {
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

TEST(Evaluator, NumberVariablesTakeTextsThatAreNumbersAndWarnOnce) {
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

TEST(Evaluator, CountsDatesThatCannotBeRead) {
  for (const int castToET2 : {0, 1}) {
    EvaluationOptions options;
    options.time.dateFormat = "yyyy-MM-dd";
    options.time.castToET2 = castToET2;
    options.time.referenceTime = "20000101 00:00:00";
    TableRun run({"d"}, "U", {inputOf("d", 'D')}, options);
    ASSERT_EQ(run.add(outputOf("1")), QString());
    EXPECT_TRUE(run.evaluator.batches.mustLoadRows());
    run.table.setNull(0);
    ASSERT_EQ(run.next(), RowOutcome::ok);
    for (const char* text : {"2024-01-31", "", " ", "1999-12-31", "31/01/2024", "31/01/2024",
                             "2024-02-30", "2024-01-31"}) {
      run.table.set(0, QString(text));
      ASSERT_EQ(run.next(), RowOutcome::ok);
    }
    EXPECT_EQ(run.evaluator.rows.closingWarnings(),
              QStringList{QStringLiteral(
                  "Column 'd' holds dates in the format 'yyyy-MM-dd': 3 value(s) could not be read "
                  "and count as %1, the first one '31/01/2024' on data row 5 (counted from 0).")
                              .arg(castToET2 == 0 ? "missing" : "0")});
  }
}

TEST(Evaluator, NullKeysEnterAsTheOptionSays) {
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

TEST(Evaluator, KeyResultsFollowBothCastModes) {
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

TEST(Evaluator, ResultsTakeTheTypeOfTheirColumn) {
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

TEST(Evaluator, AFailedRowLosesOnlyItsOwnOutputWhenRunsGoOn) {
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

TEST(Evaluator, TruthFollowsIsTrue) {
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

TEST(Evaluator, DateInputsEnterAsElapsedTimes) {
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

TEST(Evaluator, NumbersCostNoAllocationPerRow) {
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

TEST(Evaluator, UnfriendlyExpressionsEndWithAMessageOrAValue) {
  const std::vector<QString> expressions = {
      QString(10000, u'('),
      QString(4990, u'(') + "1" + QString(4990, u')'),
      QString(4990, u'{') + "1" + QString(4990, u'}'),
      QString("1+").repeated(12000) + "1",
      QString("-").repeated(9000) + "1",
      QString("x[").repeated(3000),
      QString("t//").repeated(3300) + "t",
      QString("sin(").repeated(1900) + "1" + QString(1900, u')'),
      QString("true&&").repeated(1600) + "true",
      QString("\"").repeated(9001),
      QString("?").repeated(9000),
      QString("1?").repeated(3000) + "1" + QString(":1").repeated(3000),
      QString::fromUtf8("x\0+1", 4),
      QString::fromUtf16(u"x + \xD800 + 1"),
      QString("\"a\\"),
      QString("t=t//t,").repeated(900) + "t",
      QString("(t=t//t)//").repeated(400) + "t",
      QString(5000, u'x') + "+1",
      QString("é").repeated(9000),
  };
  for (const QString& expression : expressions) {
    for (const char meta : {'F', 'U'}) {
      InputVariable text = inputOf("t", 'U');
      text.text = "abc";
      ExpressionEvaluator evaluator;
      evaluator.expressions.configure({}, {inputOf("x"), text}, nullptr, false);
      const std::clock_t start = std::clock();  // a busy machine is not slow code
      OutputVariable output = outputOf("", meta);
      output.expression = expression;
      const QString message = evaluator.expressions.check(output).text;
      const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
      EXPECT_LT(seconds, kMaxSeconds) << expression.left(30).toStdString();
      EXPECT_LT(message.size(), 2000);
    }
  }
  ExpressionEvaluator evaluator;
  evaluator.expressions.configure({}, {}, nullptr, false);
  EXPECT_TRUE(evaluator.expressions.check(outputOf(QByteArray(20100, '1').constData())).text
                  .startsWith("The expression is too long: it has 20100 characters"));
}

TEST(Evaluator, EvaluatorsOfSeveralThreadsShareNothing) {
  std::vector<std::thread> threads;
  std::atomic<int> wrong{0};
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&wrong, i] {
      TableRun run({"a", "t"}, "FU", {inputOf("a"), inputOf("t", 'U')});
      unsigned char* text = nullptr;
      run.add(outputOf("a*2"));
      run.add(outputOf("t//\"!\"", 'U'));
      run.add(outputOf("foo("));
      run.evaluator.rows.setTextTarget(1, &text);
      run.table.set(0, 1.0 * i);
      run.table.set(1, QString::number(i));
      for (int row = 0; row < 200; ++row) {
        const bool isRight = run.next(0) == RowOutcome::ok && run.number(0) == 2.0 * i &&
                             run.next(1) == RowOutcome::ok &&
                             textFromBytes(text) == std::to_string(i) + "!";
        wrong += isRight ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(wrong.load(), 0);
}

}  // namespace
}  // namespace kelvarin
