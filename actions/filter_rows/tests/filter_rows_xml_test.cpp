#include <gtest/gtest.h>

#include "actions/filter_rows/filter_rows.h"
#include "actions/filter_rows/sampling.h"
#include "host/testing/row_harness.h"

using kelvarin::FilterRows;
using kelvarin::sampleSizeOf;
using kelvarin::testing::RowHarness;

namespace {

std::string saved(const std::string& xml) {
  return RowHarness::of<FilterRows>(xml).saved();
}

}  // namespace

TEST(FilterRowsXml, ReadsOlderLayouts) {
  const std::string text = saved(
      "<FilterRows name='f' Expression='a &gt; 1' truncate='maybe'><Expression>ignored</Expression>"
      "<InputVar column='a'/><InputVar column='b'/></FilterRows>");
  EXPECT_EQ(text,
            "<FilterRows name='f' version='2.08'>\n <Expression>a > 1</Expression>\n <InputVars>\n"
            "    <InputVar column='a'/>\n    <InputVar column='b'/>\n </InputVars>\n"
            "</FilterRows>\n");
  auto h = RowHarness::of<FilterRows>("<FilterRows name='f'><InputVar column='a'/></FilterRows>");
  EXPECT_EQ(h.init(), 0);
}

TEST(FilterRowsXml, ASamplingExpressionTurnsTruncationOn) {
  EXPECT_NE(saved("<FilterRows name='f'><Expression>_n &lt; 500</Expression></FilterRows>")
                .find(" truncate='1'>"),
            std::string::npos);
  EXPECT_EQ(saved("<FilterRows name='f'><Expression>_n &lt; 0</Expression></FilterRows>")
                .find("truncate"),
            std::string::npos);
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
