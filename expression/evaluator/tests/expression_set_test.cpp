// Variables bound to columns, and expressions compiled for the engine that takes them.

#include "expression/evaluator/expression_set.h"

#include <atomic>
#include <ctime>
#include <thread>

#include <gtest/gtest.h>

#include "expression/evaluator/tests/evaluator_fixture.h"

namespace kelvarin {
namespace {

// Sanitizers slow the libraries down.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr double kMaxSeconds = 60.0;
#else
constexpr double kMaxSeconds = 2.0;
#endif

TEST(ExpressionSet, TakesTheFirstBackendThatCompiles) {
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

TEST(ExpressionSet, SaysWhatKeepsAnExpressionFromRunningByTheBatch) {
  struct Case {
    const char* expression;
    const char* token;  // empty: it runs by the batch
    int position;
  };
  const Case cases[] = {{"a*2", "", -1},
                        {"round(a)", "", -1},
                        {"strlen(t) + a", "", -1},
                        {"nvl2(t, 1, 2) > 1 and isNull(t)", "", -1},
                        {"nvl2(t, 1, isNull(t)) and 2 > a", "and", 22},
                        {"strlen(t // ftoa(rand1()))", "rand1", 17},
                        {"strlen(load(t))", "load", 7},
                        {"strlen(t) + (a = 3)", "=", 15},
                        {"strlen(a > 1 ? t : 2)", "?", 13},
                        {"isNull(t) + sqrt(t)", "sqrt", 12},
                        {"strlen(t) + (int)-3", "-", 17},
                        {"strlen(t) > 1 and t == 5", "==", 20},
                        {"max(strlen(t), a == 1)", "max", 0},
                        {"strlen(t)!", "!", 9}};
  for (const Case& one : cases) {
    TableRun run({"a", "t"}, "FU", {inputOf("a"), inputOf("t", 'U')});
    ASSERT_EQ(run.add(outputOf(one.expression)), QString()) << one.expression;
    const EngineChoice& engine = run.evaluator.expressions.output(0).engine;
    EXPECT_EQ(engine.takesBatches, *one.token == '\0') << one.expression;
    EXPECT_EQ(engine.batchRefusal.token.toStdString(), one.token) << one.expression;
    EXPECT_EQ(engine.batchRefusal.position, one.position) << one.expression;
  }
}

TEST(ExpressionSet, AnObserverForcesTheStringBackend) {
  TableRun run({"a"}, "F", {inputOf("a")}, {}, true);
  ASSERT_EQ(run.add(outputOf("a*2")), QString());
  EXPECT_EQ(run.evaluator.expressions.backend(0), BackendKind::string);
}

TEST(ExpressionSet, ARequiredBackendHasNoFallback) {
  TableRun run({"t"}, "U", {inputOf("t", 'U')});
  run.evaluator.expressions.requireBackend(BackendKind::fast);
  EXPECT_TRUE(run.add(outputOf("t", 'U')).contains("\"t\""));
  run.evaluator.expressions.requireBackend(BackendKind::string);
  EXPECT_EQ(run.add(outputOf("t", 'U')), QString());
}

TEST(ExpressionSet, ColumnsWinOverTheNamesOfLibraries) {
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

TEST(ExpressionSet, LabelsThatNoExpressionCanHoldDoNoHarm) {
  TableRun run({"a b", "1st", "", "x"}, "FFFF", {inputOf("a b"), inputOf("1st"), inputOf("x")},
               withoutNative());
  ASSERT_EQ(run.add(outputOf("x+1")), QString());
  EXPECT_EQ(run.evaluator.expressions.backend(0), BackendKind::fast);
  EXPECT_EQ(run.add(outputOf("x+1", 'U')), QString());
}

TEST(ExpressionSet, LineBreaksAreBlanksInEveryBackend) {
  for (const BackendKind kind : {BackendKind::fast, BackendKind::string}) {
    TableRun run({"x"}, "F", {inputOf("x")});
    run.evaluator.expressions.requireBackend(kind);
    ASSERT_EQ(run.add(outputOf("x\r\n\t+1")), QString());
    run.table.set(0, 2.0);
    run.next();
    EXPECT_EQ(run.number(), 3.0);
  }
}

TEST(ExpressionSet, MissingColumnsAndMixedTypesAreNamed) {
  EXPECT_EQ(TableRun({"a"}, "F", {inputOf("b")}).bindError, "Error: Column 'b' not found");
  InputVariable two = inputOf("a");
  two.columns = {"a", "t"};
  EXPECT_EQ(TableRun({"a", "t"}, "FU", {two}).bindError,
            "Error: Column 'a' and 't' must have the same type");
}

TEST(ExpressionSet, UnfriendlyExpressionsEndWithAMessageOrAValue) {
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
  EXPECT_TRUE(evaluator.expressions.check(outputOf(QByteArray(20100, '1').constData()))
                  .text.startsWith("The expression is too long: it has 20100 characters"));
}

TEST(ExpressionSet, EvaluatorsOfSeveralThreadsShareNothing) {
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
