#include "ui/language/part_evaluation.h"

#include <cstring>

#include <gtest/gtest.h>

#include "ui/language/shown_value.h"
#include "ui/language/tests/formula_fixture.h"

namespace kelvarin {
namespace {

PartValues evaluated(const Formula& formula) {
  return evaluateParts(formula, std::chrono::steady_clock::now() + std::chrono::seconds(10));
}
PartValues evaluated(const char* expression, char meta = 'F') {
  return evaluated(formulaOf(QString::fromUtf8(expression), meta));
}

const PartValue& partOf(const PartValues& made, const char* text) {
  for (std::size_t i = 0; i < made.tree.size(); ++i) {
    if (made.tree.textOf(i) == QLatin1String(text)) {
      return made.values[i];
    }
  }
  static const PartValue none;
  ADD_FAILURE() << "no part " << text;
  return none;
}

TEST(PartEvaluation, GivesEachPartItsValue) {
  const PartValues made = evaluated("strlen(s) > 2 ? x + 1 : x / 0");
  EXPECT_EQ(made.row, 0);
  EXPECT_EQ(partOf(made, "strlen(s)").value.number, 3.0);
  EXPECT_EQ(partOf(made, "strlen(s) > 2").value.type, ExpressionValue::Type::boolean);
  EXPECT_EQ(made.values.back().value.number, 2.0);
  EXPECT_TRUE(partOf(made, "x + 1").isUsed);
  EXPECT_FALSE(partOf(made, "x / 0").isUsed);
  EXPECT_FALSE(made.ofRun);
}

TEST(PartEvaluation, SaysWhereMissingValuesArise) {
  Formula formula = formulaOf(QStringLiteral("nvl(x, 0) + 2 * (x - 1)"));
  formula.current = {{QStringLiteral("x"), -1, {}, ExpressionValue::ofNumber(kNullNumber)}};
  const PartValues made = evaluated(formula);
  EXPECT_EQ(made.cause.toStdString(), "null because `x` is null");
  EXPECT_FALSE(partOf(made, "x - 1").isOrigin);
  EXPECT_TRUE(partOf(made, "x").isOrigin);

  EXPECT_EQ(evaluated("1 + sqrt(-x)").cause.toStdString(), "NaN because `sqrt(-x)` gives NaN");
  EXPECT_EQ(evaluated("x > 5 ? _null : 1").cause.toStdString(), "");
  EXPECT_EQ(evaluated("atof(s) * 2").cause.toStdString(), "null because `atof(s)` gives null");
}

TEST(PartEvaluation, MarksWhatMayDiffer) {
  const PartValues made = evaluated("rand(3) + (x = 2) + x + strlen(_uniqueID) + load(s) // s");
  EXPECT_TRUE(partOf(made, "rand(3)").mayDiffer);
  EXPECT_TRUE(partOf(made, "_uniqueID").mayDiffer);
  EXPECT_TRUE(partOf(made, "x").mayDiffer);
  EXPECT_FALSE(partOf(made, "s").mayDiffer);
  EXPECT_TRUE(partOf(made, "load(s)").mayDiffer);
  EXPECT_FALSE(partOf(made, "load(s)").hasValue());
}

TEST(PartEvaluation, ComparesWithTheEngineOfARun) {
  const PartValues same = evaluated("x * 2 > 1");
  ASSERT_TRUE(same.ofRun);
  EXPECT_EQ(same.ofRun->engine, BackendKind::native);
  EXPECT_FALSE(same.ofRun->differs);

  const PartValues refused = evaluated("isNuLL(x)");
  ASSERT_TRUE(refused.ofRun);
  EXPECT_FALSE(refused.values.back().hasValue());
  EXPECT_TRUE(refused.ofRun->differs);
}

// Long parts are computed from the values of their parts.
TEST(PartEvaluation, GivesLongPartsTheValuesThatTheyHaveAlone) {
  for (const char* term : {" - x / 3 ^ 2 * (x < 2 ? 5 : x)", " // (x > 1 ? \"a\" : s) // s",
                           " * isNull(x) == 0 + sqrt(x - 4)"}) {
    const QString start = term[1] == '/' ? QStringLiteral("s") : QStringLiteral("x");
    const PartValues made =
        evaluated(formulaOf(start + QString::fromLatin1(term).repeated(12), 'F'));
    ASSERT_TRUE(made.isComplete);
    for (std::size_t i = 0; i < made.tree.size(); ++i) {
      const PartValue alone = evaluated(formulaOf(made.tree.textOf(i))).values.back();
      const PartValue& part = made.values[i];
      ASSERT_EQ(part.hasValue(), alone.hasValue()) << made.tree.textOf(i).toStdString();
      EXPECT_EQ(part.value.type, alone.value.type) << made.tree.textOf(i).toStdString();
      EXPECT_EQ(std::memcmp(&part.value.number, &alone.value.number, sizeof(double)), 0);
      EXPECT_EQ(part.value.text, alone.value.text);
    }
  }
}

TEST(PartEvaluation, StopsAtItsDeadline) {
  const Formula formula = formulaOf(QStringLiteral("1") + QStringLiteral("+x").repeated(2'000));
  const PartValues made = evaluateParts(formula, std::chrono::steady_clock::now());
  EXPECT_FALSE(made.isComplete);
  EXPECT_EQ(made.values.size(), made.tree.size());
  EXPECT_FALSE(made.values.back().failure.isEmpty());
}

}  // namespace
}  // namespace kelvarin
