#include "ui/language/formula_check.h"

#include <gtest/gtest.h>

#include "ui/language/shown_value.h"
#include "ui/language/tests/formula_fixture.h"

namespace kelvarin {
namespace {

using CheckKind = ExpressionCheck::Kind;

FormulaAnswer checked(const Formula& formula, CheckDepth depth = CheckDepth::evaluated) {
  return checkFormula(formula, depth, std::chrono::steady_clock::now() + std::chrono::seconds(10));
}
FormulaAnswer checked(const char* expression, char meta = 'F') {
  return checked(formulaOf(QString::fromUtf8(expression), meta));
}

std::string valuesOf(const FormulaAnswer& answer) {
  QStringList values;
  for (const FormulaValue& value : answer.values) {
    values += value.failure.isEmpty() ? shownValue(value.value).text : QStringLiteral("failed");
  }
  return values.join(u'|').toStdString();
}

std::string applied(const char* expression, const QuickFix& fix) {
  return QString::fromUtf8(expression).replace(fix.start, fix.size, fix.replacement).toStdString();
}

TEST(FormulaCheck, ShowsTypeEngineAndValues) {
  const FormulaAnswer number = checked("x * 2");
  EXPECT_EQ(number.check.kind, CheckKind::fine);
  EXPECT_EQ(number.resultType.toStdString(), "number");
  EXPECT_EQ(number.engine.toStdString(), "Fastest parser");
  EXPECT_EQ(valuesOf(number), "2|null|6");

  const FormulaAnswer text = checked("s // \"!\"", 'U');
  EXPECT_EQ(text.resultType.toStdString(), "text");
  EXPECT_EQ(text.engine.toStdString(), "String parser, because the result is a text");
  EXPECT_EQ(valuesOf(text), "one!|null|\u00B7three !");

  const FormulaAnswer slower = checked("strlen(s) + x");
  EXPECT_EQ(slower.engine.toStdString(),
            "String parser, because the Fast parser does not take 'strlen'");
  EXPECT_EQ(valuesOf(slower), "4|null|10");

  Formula filter = formulaOf(QStringLiteral("x > 2"));
  filter.use = ResultUse::truth;
  EXPECT_EQ(valuesOf(checked(filter)), "false|false|true");

  EXPECT_EQ(valuesOf(checked("_n")), "0|1|2");
  EXPECT_EQ(valuesOf(checked("x * 1.5", 'K')), "failed|null|failed");
}

TEST(FormulaCheck, ReplacesGraphParameters) {
  Formula formula = formulaOf(QStringLiteral("toET(\"2000-01-02\") + limit"));
  formula.parameters.setValue("limit", "10");
  formula.parameters.setValue("format", "yyyy-MM-dd");
  formula.options.time.dateFormat = QStringLiteral("${format}");
  formula.options.time.referenceTime = QStringLiteral("20000101 00:00:00");
  formula.options.time.elapsedTimeUnit = 3;
  EXPECT_EQ(valuesOf(checked(formula)), "11|11|11");
}

TEST(FormulaCheck, PlacesFaultsAndOffersFixes) {
  struct Case {
    const char* expression;
    qsizetype start;
    qsizetype size;
    const char* fixed;  // by the first fix; empty: none
    const char* column;
  };
  const Case cases[] = {
      {"1 + X", 4, 1, "1 + x", ""},
      {"ifnull(x, 0)", 0, 6, "nvl(x, 0)", ""},
      {"2 * flor(x)", 4, 4, "2 * floor(x)", ""},
      {"x * unit_price", 4, 10, "x * unit_price", "unit price"},
      {"1 + unit price", 4, 4, "1 + unit_price", "unit price"},
      {"1,5 * x", 1, 1, "1.5 * x", ""},
      {"s == 'one'", 5, 5, "s == \"one\"", ""},
      {"(x + 1", 5, 1, "(x + 1)", ""},
      {"s // \"abc", 5, 4, "s // \"abc\"", ""},
      {"x + * 2", 4, 1, "", ""},
  };
  for (const Case& one : cases) {
    const FormulaAnswer answer = checked(one.expression);
    EXPECT_EQ(answer.check.kind, CheckKind::error) << one.expression;
    EXPECT_FALSE(answer.message.isEmpty()) << one.expression;
    EXPECT_EQ(answer.faultStart, one.start) << one.expression;
    EXPECT_EQ(answer.faultSize, one.size) << one.expression;
    const QString label = answer.fixes.empty() ? QString() : answer.fixes.front().label;
    const std::string fixed =
        answer.fixes.empty() ? "" : applied(one.expression, answer.fixes.front());
    EXPECT_EQ(fixed, one.fixed) << one.expression << ": " << label.toStdString();
    EXPECT_EQ(answer.fixes.empty() ? "" : answer.fixes.front().columnToBind.toStdString(),
              one.column);
  }
}

TEST(FormulaCheck, WarnsAndSaysWhatCannotBeShown) {
  const FormulaAnswer assigned = checked("x = 2");
  EXPECT_EQ(assigned.check.kind, CheckKind::warning);
  ASSERT_EQ(assigned.fixes.size(), 1U);
  EXPECT_EQ(applied("x = 2", assigned.fixes.front()), "x == 2");

  const FormulaAnswer loaded = checked("load(\"/dev/zero\") // s", 'U');
  EXPECT_EQ(loaded.check.kind, CheckKind::fine);
  EXPECT_TRUE(loaded.message.contains(QLatin1String("'load'")));
  EXPECT_TRUE(loaded.values.empty());

  const FormulaAnswer native = checked("isNuLL(x)");
  ASSERT_TRUE(native.debuggerFix);
  EXPECT_EQ(applied("isNuLL(x)", *native.debuggerFix), "isNull(x)");
  EXPECT_TRUE(native.debuggerNote.contains(QLatin1String("isNull")));

  Formula clock = formulaOf(QStringLiteral("_now - x"));
  EXPECT_TRUE(checked(clock).message.contains(QLatin1String("add '_now' as input var")));
  clock.options.time.addNow = true;
  EXPECT_TRUE(checked(clock).check.isCompiled());

  Formula gone = formulaOf(QStringLiteral("x + 1"));
  gone.columns.columns.erase(gone.columns.columns.begin());
  EXPECT_TRUE(checked(gone).message.contains(QLatin1String("'x'")));
}

TEST(FormulaCheck, CompilesOnlyWhileAnEvaluationIsStuck) {
  const Formula wrong = formulaOf(QStringLiteral("x + unknown"));
  EXPECT_EQ(checked(wrong, CheckDepth::compiledOnly).check.kind, CheckKind::error);
  const FormulaAnswer right = checked(formulaOf(QStringLiteral("x + 1")), CheckDepth::compiledOnly);
  EXPECT_EQ(right.engine.toStdString(), "Fastest parser");
  EXPECT_FALSE(right.isComplete);
  EXPECT_TRUE(right.values.empty());
}

TEST(FormulaCheck, OutlivesHostileExpressions) {
  const QString manyBrackets = QString(10'000, u'(') + u'1' + QString(10'000, u')');
  QString doubled = QStringLiteral("s // s");
  for (int i = 0; i < 9; ++i) {
    doubled = QStringLiteral("(%1) // (%1)").arg(doubled);
  }
  Formula large = formulaOf(QStringLiteral("strlen(") + doubled + u')');
  large.rows.reset();
  large.variables[1].text = QString(1'000'000, u'a');
  const QStringList hostile = {
      manyBrackets,
      QString(4'900, u'{'),
      QStringLiteral("{eye(1000), eye(1000), eye(1000)}"),
      QStringLiteral("eye(2147483648)"),
      QStringLiteral("9007199254740992!"),
      QString(5'000, u'-') + u'1',
      QStringLiteral("1") + QStringLiteral("+1").repeated(4'900),
      QStringLiteral("1") + QStringLiteral(" ? 1 : 1").repeated(1'000),
      QStringLiteral("max(") + QStringLiteral("max(").repeated(2'000),
  };
  for (const QString& expression : hostile) {
    const auto start = std::chrono::steady_clock::now();
    (void)checked(formulaOf(expression));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1))
        << expression.first(std::min<qsizetype>(expression.size(), 40)).toStdString();
  }
  const FormulaAnswer answer = checked(large);
  EXPECT_EQ(answer.check.kind, CheckKind::error);
  EXPECT_TRUE(answer.message.contains(QLatin1String("67108864"))) << answer.message.toStdString();
}

TEST(FormulaCheck, EvaluatesParts) {
  Formula formula = formulaOf(QStringLiteral("2 * (x + 1) + rand(5)"));
  PartAnswer part = evaluatePart(formula, 5, 5);
  EXPECT_EQ(part.start, 5);
  EXPECT_EQ(part.size, 5);
  EXPECT_TRUE(part.isRowKnown);
  EXPECT_EQ(part.value.value.number, 2.0);
  EXPECT_FALSE(part.mayDiffer);
  EXPECT_TRUE(evaluatePart(formula, 12, 0).mayDiffer);

  formula.current = {{QStringLiteral("x"), 2, {}, ExpressionValue::ofNumber(41.0)},
                     {QStringLiteral("x"), 3, {}, ExpressionValue::ofNumber(0.0)}};
  EXPECT_EQ(evaluatePart(formula, 5, 5).value.value.number, 42.0);

  formula.current.clear();
  formula.rows.reset();
  formula.variables[0].number = 6.0;
  part = evaluatePart(formula, 5, 5);
  EXPECT_EQ(part.value.value.number, 7.0);
  EXPECT_FALSE(part.isRowKnown);
}

TEST(ShownValue, TellsMissingAndBlankValuesApart) {
  const std::shared_ptr<const PinRows> rows = threeRows();
  const auto shown = [&](std::size_t row, std::size_t column) {
    return shownValue(*rows, row, column).text.toStdString();
  };
  EXPECT_EQ(shown(0, 2), "2.5");
  EXPECT_EQ(shown(1, 0), "null");
  EXPECT_EQ(shown(1, 1), "null");
  EXPECT_EQ(shown(2, 2), "NaN");
  EXPECT_EQ(shown(2, 1), "\u00B7three\u00B7");
  EXPECT_EQ(shownValue(*rows, 2, 1).whole.toStdString(), " three ");
  EXPECT_FALSE(shownValue(*rows, 2, 1).isMarked());
  EXPECT_EQ(shownValue(ExpressionValue::ofText("")).text.toStdString(), "(empty)");
  EXPECT_TRUE(shownValue(ExpressionValue::ofText("")).isMarked());
  EXPECT_EQ(shownValue(ExpressionValue::ofText("a b\n")).text.toStdString(), "a b\u21B5");
  EXPECT_EQ(shownValue(ExpressionValue::ofNumber(0.1)).text.toStdString(), "0.1");
}

}  // namespace
}  // namespace kelvarin
