#include <gtest/gtest.h>

#include "actions/calculator/calculator.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {
namespace {

std::string saved(const std::string& xml) {
  return RowHarness::of<Calculator>(xml).saved();
}

// What the elements inside of the list become.
std::string savedIn(const std::string& list, const std::string& elements) {
  const std::string text =
      saved("<Calculator name='c'><" + list + ">" + elements + "</" + list + "></Calculator>");
  const std::size_t begin = text.find("<" + list + ">\n") + list.size() + 3;
  return text.substr(begin, text.find("  </" + list + ">") - begin);
}

}  // namespace

TEST(CalculatorXml, VariablesReadWhatIsAbsentAndOlderForms) {
  const struct {
    const char* list;
    std::string element;
    std::string written;
  } cases[] = {
      {"InputVars", "<InputVar column='a' label='a' meta='U' isNumber='1' value='0'/>",
       "<InputVar column='a'/>"},
      {"InputVars", "<InputVar column='a' label=''/>", "<InputVar column='a'/>"},
      {"InputVars", "<InputVar label='v'><SL><S>one</S></SL></InputVar>",
       "<InputVar column='one' label='v'/>"},
      {"InputVars", "<InputVar/>", "<InputVar column=''/>"},
      {"InputVars", "<InputVar column='a' value='0.1' colour='red' isNumber='maybe'/>",
       "<InputVar column='a' value='0.1'/>"},
      {"OutputVars", "<OutputVar name='o' expression='a &lt; 1'/>",
       "<OutputVar name='o'>a &lt; 1</OutputVar>"},
      {"OutputVars", "<OutputVar name='o' meta='K' isNumber='0'>\"x\"</OutputVar>",
       "<OutputVar name='o' meta='U'>\"x\"</OutputVar>"},
      {"OutputVars", "<OutputVar name='o' meta='U' isNumber='yes'>1</OutputVar>",
       "<OutputVar name='o'>1</OutputVar>"},
      {"OutputVars", "<OutputVar name='o'> </OutputVar>", "<OutputVar name='o'>_null</OutputVar>"},
      {"OutputVars", "<OutputVar name='o' meta='U'/>",
       "<OutputVar name='o' meta='U'>_nullS</OutputVar>"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(savedIn(c.list, c.element), "    " + c.written + "\n");
  }
}

TEST(CalculatorXml, SettersLeaveWhatReadingWould) {
  const std::string text =
      "<Calculator name='c' version='2.08' castToKey1='0' castToKey2='1' castToKey3='2' addN='0' "
      "abortWhenError='0' useJIT='0' addNow='1' addNowS='1' seed='42' elapsedTimeUnit='0' "
      "dateFormatType='5' isUTC='0' emptyETToNull='0' referenceTime='20000101 00:00:00' "
      "dateFormat='d&apos;&#10;' castToET1='1' castToET2='1'>\n  <InputVars>\n"
      "    <InputVar column='a&lt;b' label='x' label2='second' value='1.25'/>\n"
      "    <InputVar column='t' isNumber='0' meta='D' value='a text'/>\n"
      "    <InputVar label='v'><SL><S>c1</S><S>c&amp;2</S></SL></InputVar>\n"
      "  </InputVars>\n  <OutputVars>\n"
      "    <OutputVar name='n' meta='K' isInput='1' update='1' notes='why?'>a&lt;b &amp;&amp; c>\"'"
      "</OutputVar>\n    <OutputVar name='NewVar' meta='U'></OutputVar>\n"
      "  </OutputVars>\n</Calculator>\n";
  auto read = RowHarness::of<Calculator>(text);
  auto set = RowHarness::of<Calculator>("<Calculator name='c'/>");
  const auto& source = read.actionAs<Calculator>();
  auto& target = set.actionAs<Calculator>();
  target.setInputVariables(source.inputVariables());
  target.setOptions(source.options());
  target.setOutputVariables(source.outputVariables());
  EXPECT_EQ(set.saved(), text);

  InputVariable unnamed;
  unnamed.columns = {"t"};
  unnamed.isNumber = false;
  unnamed.number = 5;  // of no use to a text
  target.setInputVariables({unnamed});
  EXPECT_EQ(target.inputVariables().front().label, "t");
  EXPECT_EQ(target.inputVariables().front().number, 0.0);
  target.setOutputVariables({});
  ASSERT_EQ(target.outputVariables().size(), 1u);
  EXPECT_EQ(target.outputVariables().front().name, "NewVar");
}

TEST(CalculatorXml, WhatAnEditorHasSetIsNoLongerInTheGraphFile) {
  auto h = RowHarness::of<Calculator>(
      "<Calculator name='c'>\n<OutputVars><OutputVar name='o'>1</OutputVar></OutputVars>\n"
      "</Calculator>",
      "a:F");
  OutputVariable nameless;
  nameless.expression = "1";
  h.actionAs<Calculator>().setOutputVariables({nameless, nameless});
  EXPECT_NE(h.init(), 0);
  ASSERT_EQ(h.log().size(), 2u);
  EXPECT_NE(h.log()[1].find("number 2 (counted from 1) has no name"), std::string::npos);
}

TEST(CalculatorXml, TheErrorFlagLastsUntilTheNextRun) {
  auto h = RowHarness::of<Calculator>("<Calculator name='c'/>", "a:F");
  auto& action = h.actionAs<Calculator>();
  action.setErrorFlag(true);
  EXPECT_TRUE(action.hasFailed());
  action.setErrorFlag(false);
  EXPECT_FALSE(action.hasFailed());
  action.setErrorFlag(true);
  h.init();
  EXPECT_FALSE(action.hasFailed());
}

}  // namespace kelvarin::testing
