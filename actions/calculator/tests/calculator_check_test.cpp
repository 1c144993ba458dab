// The check of an output as an editor asks for it, without a run.

#include <gtest/gtest.h>

#include "actions/calculator/calculator.h"

namespace kelvarin {
namespace {

using Kind = ExpressionCheck::Kind;

OutputVariable outputOf(const QString& expression) {
  OutputVariable output;
  output.name = "${prefix}_total";
  output.expression = expression;
  return output;
}

TEST(CalculatorCheck, ReplacesParametersAndKnowsTheActionsVariablesAndOptions) {
  const auto xml = parseXml(
      "<Calculator name='c' addNow='1' referenceTime='${start}'><InputVars>"
      "<InputVar column='price' label='${prefix}_price' value='2'/>"
      "<InputVar column='city' isNumber='0' value='Brno'/></InputVars></Calculator>");
  ASSERT_TRUE(xml);
  GlobalParameters parameters;
  parameters.setValue("prefix", "net");
  parameters.setValue("start", "20000101 00:00:00");
  parameters.setValue("rate", "1.5");
  const Calculator calculator(*xml, &parameters);
  const auto check = [&calculator](const QString& expression, ResultUse use = ResultUse::column) {
    return calculator.check(outputOf(expression), use);
  };

  const ExpressionCheck fine = check("net_price * rate");
  EXPECT_EQ(fine.kind, Kind::fine);
  EXPECT_EQ(fine.engine->engine, BackendKind::native);
  EXPECT_EQ(fine.value->number, 3.0);
  EXPECT_EQ(check("_now > 0").kind, Kind::fine);

  const ExpressionCheck unknown = check("net_price * discount");
  EXPECT_EQ(unknown.kind, Kind::error);
  EXPECT_EQ(unknown.error.token, "discount");
  EXPECT_EQ(unknown.error.position, 12);
  EXPECT_FALSE(unknown.isCompiled());

  const ExpressionCheck assigned = check("net_price = 2");
  EXPECT_EQ(assigned.kind, Kind::warning);
  EXPECT_EQ(assigned.warnings,
            QStringList{"Expression 'net_total': '=' assigns; did you mean '=='?"});
  EXPECT_EQ(check("city", ResultUse::truth).warnings.size(), 1);
}

TEST(CalculatorCheck, ANameOfTheRowNumberIsAnError) {
  const auto xml = parseXml(
      "<Calculator name='c'><InputVars><InputVar column='a' label='_n'/></InputVars></Calculator>");
  ASSERT_TRUE(xml);
  const Calculator calculator(*xml, nullptr);
  const ExpressionCheck check = calculator.check(outputOf("1"), ResultUse::column);
  EXPECT_EQ(check.kind, Kind::error);
  EXPECT_TRUE(check.text.startsWith("Error: Column 'a' cannot have the label '_n'"));
}

}  // namespace
}  // namespace kelvarin
