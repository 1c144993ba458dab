#include <gtest/gtest.h>

#include "actions/filter_rows/filter_rows.h"
#include "actions/filter_rows/sampling.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {
namespace {

std::string saved(const std::string& xml) {
  return RowHarness::of<FilterRows>(xml).saved();
}

}  // namespace

TEST(FilterRowsXml, ReadsOlderLayouts) {
  const std::string text = saved(
      "<FilterRows name='f' Expression='a &gt; 1' truncate='maybe'>"
      "<InputVar column='a'/><InputVar column='b'/></FilterRows>");
  EXPECT_EQ(text,
            "<FilterRows name='f' version='2.08'>\n <Expression>a > 1</Expression>\n <InputVars>\n"
            "    <InputVar column='a'/>\n    <InputVar column='b'/>\n </InputVars>\n"
            "</FilterRows>\n");
  auto h = RowHarness::of<FilterRows>("<FilterRows name='f'><InputVar column='a'/></FilterRows>");
  EXPECT_EQ(h.init(), 0);
}

TEST(FilterRowsXml, ASamplingExpressionTurnsTruncationOn) {
  const std::string start = "<FilterRows name='f'><Expression>_n &lt; ";
  EXPECT_NE(saved(start + "500</Expression></FilterRows>").find(" truncate='1'>"),
            std::string::npos);
  EXPECT_EQ(saved(start + "0</Expression></FilterRows>").find("truncate"), std::string::npos);
}

TEST(FilterRowsXml, SettersLeaveWhatReadingWould) {
  const std::string text =
      "<FilterRows name='f' version='2.08' truncate='1' addN='0' abortWhenError='0' useJIT='0' "
      "addNow='1' seed='7' castToET2='1' comments='it&apos;s &lt;5&gt;'>\n"
      " <Expression>a &lt; 1 &amp;&amp; b > \"x'y\"</Expression>\n <InputVars>\n"
      "    <InputVar column='a'/>\n    <InputVar column='b' label='c' isNumber='0'/>\n"
      " </InputVars>\n</FilterRows>\n";
  auto read = RowHarness::of<FilterRows>(text);
  auto set = RowHarness::of<FilterRows>("<FilterRows name='f'/>");
  const auto& source = read.actionAs<FilterRows>();
  auto& target = set.actionAs<FilterRows>();
  target.setInputVariables(source.inputVariables());
  target.setOptions(source.options());
  target.setSettings(source.settings());
  EXPECT_EQ(set.saved(), text);

  // An editor asks whether to truncate, and the answer counts.
  FilterSettings sampling;
  sampling.expression = QStringLiteral("_n < 5");
  target.setSettings(sampling);
  EXPECT_FALSE(target.settings().truncate);

  FilterSettings odd;
  odd.comments = QStringLiteral("a\x1\r\nb");
  target.setSettings(odd);
  EXPECT_EQ(RowHarness::of<FilterRows>(set.saved()).actionAs<FilterRows>().settings().comments,
            target.settings().comments);
}

TEST(Sampling, OnlyALimitOnTheRowNumberQualifies) {
  EXPECT_EQ(sampleSizeOf("_n<100"), 100u);
  EXPECT_EQ(sampleSizeOf(" \t_n\n <  1 00 "), 100u);
  EXPECT_EQ(sampleSizeOf("_n<"), 0u);
  EXPECT_EQ(sampleSizeOf("_n<18446744073709551615"), 18446744073709551615u);
  for (const char* other :
       {"", "_N<1", "_n<=1", "_n<1e3", "_n<1 && a", "_n<-1", "n<1", "1>_n", "_n<1.5"}) {
    EXPECT_EQ(sampleSizeOf(other), std::nullopt) << other;
  }
}

}  // namespace kelvarin::testing
