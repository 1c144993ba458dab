#include "actions/calculator_vectorized/calculator_vectorized.h"

#include <gtest/gtest.h>

#include "host/testing/row_harness.h"

using kelvarin::CalculatorVectorized;
using kelvarin::testing::RowHarness;

TEST(CalculatorVectorized, ANewOutputHasANameExpression) {
  const std::string text =
      "<CalculatorVectorized name='v' version='2.08'>\n  <InputVars>\n  </InputVars>\n"
      "  <OutputVars>\n    <OutputVar name='&quot;NewVar_&quot;//_n'></OutputVar>\n"
      "  </OutputVars>\n</CalculatorVectorized>\n";
  EXPECT_EQ(RowHarness::of<CalculatorVectorized>("<CalculatorVectorized name='v'/>").saved(), text);
  EXPECT_EQ(RowHarness::of<CalculatorVectorized>(text).saved(), text);
}

TEST(CalculatorVectorized, HasTheParametersAndPinsOfTheCalculator) {
  const std::string text =
      "<CalculatorVectorized name='v' version='2.08' castToKey1='1' useJIT='0' seed='3'>\n"
      "  <InputVars>\n    <InputVar column='a' label='x'/>\n  </InputVars>\n"
      "  <OutputVars>\n    <OutputVar name='v//\"_x\"' meta='K'>v+x</OutputVar>\n  </OutputVars>\n"
      "</CalculatorVectorized>\n";
  auto h = RowHarness::of<CalculatorVectorized>(text);
  EXPECT_NE(h.saved().find("name='v//&quot;_x&quot;' meta='K'>v+x<"), std::string::npos);
  EXPECT_EQ(h.action().inputPinCount(), 2);
  EXPECT_EQ(h.action().outputPinCount(), 1);
  bool reason = false;
  EXPECT_EQ(h.action().canRunInParallel({}, &reason), 0);
  EXPECT_TRUE(reason);
}

TEST(CalculatorVectorized, SaysThatItCannotRun) {
  auto h = RowHarness::of<CalculatorVectorized>("<CalculatorVectorized name='speeds'/>", "a:F");
  EXPECT_NE(h.init(), 0);
  ASSERT_EQ(h.log().size(), 1u);
  EXPECT_NE(h.log()[0].find("error: CalculatorVectorized 'speeds': running this action is not "
                            "available in this version"),
            std::string::npos);
}
