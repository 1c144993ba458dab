#include <gtest/gtest.h>

#include "actions/calculator/calculator.h"
#include "host/testing/row_harness.h"

using kelvarin::Calculator;
using kelvarin::testing::RowHarness;

namespace {

std::string saved(const std::string& xml) {
  return RowHarness::of<Calculator>(xml).saved();
}

// What one variable's element becomes.
std::string savedInput(const std::string& element) {
  const std::string text =
      saved("<Calculator name='c'><InputVars>" + element + "</InputVars></Calculator>");
  const std::size_t begin = text.find("<InputVars>\n") + 12;
  return text.substr(begin, text.find("  </InputVars>") - begin);
}

std::string savedOutput(const std::string& element) {
  const std::string text =
      saved("<Calculator name='c'><OutputVars>" + element + "</OutputVars></Calculator>");
  const std::size_t begin = text.find("<OutputVars>\n") + 13;
  return text.substr(begin, text.find("  </OutputVars>") - begin);
}

}  // namespace

TEST(CalculatorXml, InputVariablesReadWhatIsAbsentFromTheirColumn) {
  EXPECT_EQ(savedInput("<InputVar column='a' label='a' meta='U' isNumber='1' value='0'/>"),
            "    <InputVar column='a'/>\n");
  EXPECT_EQ(savedInput("<InputVar column='a' label=''/>"), "    <InputVar column='a'/>\n");
  EXPECT_EQ(savedInput("<InputVar label='v'><SL><S>one</S></SL></InputVar>"),
            "    <InputVar column='one' label='v'/>\n");
  EXPECT_EQ(savedInput("<InputVar/>"), "    <InputVar column=''/>\n");
  EXPECT_EQ(savedInput("<InputVar column='a' value='0.1' colour='red' isNumber='maybe'/>"),
            "    <InputVar column='a' value='0.1'/>\n");
}

TEST(CalculatorXml, OutputVariablesReadOlderForms) {
  EXPECT_EQ(savedOutput("<OutputVar name='o' expression='a &lt; 1'/>"),
            "    <OutputVar name='o'>a &lt; 1</OutputVar>\n");
  EXPECT_EQ(savedOutput("<OutputVar name='o' meta='K' isNumber='0'>\"x\"</OutputVar>"),
            "    <OutputVar name='o' meta='U'>\"x\"</OutputVar>\n");
  EXPECT_EQ(savedOutput("<OutputVar name='o' meta='U' isNumber='yes'>1</OutputVar>"),
            "    <OutputVar name='o'>1</OutputVar>\n");
  EXPECT_EQ(savedOutput("<OutputVar name='o'> </OutputVar>"),
            "    <OutputVar name='o'>_null</OutputVar>\n");
  EXPECT_EQ(savedOutput("<OutputVar name='o' meta='U'/>"),
            "    <OutputVar name='o' meta='U'>_nullS</OutputVar>\n");
}

TEST(CalculatorXml, ACloneIsTheSameAction) {
  auto h = RowHarness::of<Calculator>(
      "<Calculator name='c' seed='5'><OutputVars><OutputVar name='o'>a&amp;b]]></OutputVar>"
      "</OutputVars></Calculator>");
  const std::unique_ptr<ActionItem> copy(h.action().clone(&h.parameters()));
  ASSERT_NE(copy, nullptr);
  std::wostringstream text;
  copy->saveXML(text, "c");
  EXPECT_EQ(QString::fromStdWString(text.str()).toStdString(), h.saved());
}
