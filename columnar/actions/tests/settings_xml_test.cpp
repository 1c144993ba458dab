#include <gtest/gtest.h>

#include "columnar/actions/read_columnar_gel.h"
#include "columnar/actions/write_columnar_gel.h"
#include "host/testing/row_harness.h"

using kelvarin::ReadColumnarGel;
using kelvarin::WriteColumnarGel;
using kelvarin::testing::RowHarness;

TEST(ReadColumnarGelXml, DefaultsAreNotWritten) {
  EXPECT_EQ(RowHarness::of<ReadColumnarGel>("<ReadColumnarGel name='r'/>").saved(),
            "<ReadColumnarGel name='r' version='2.08'>\n"
            "  <CFilterRows>\n   <Expression></Expression>\n   <InputVars>\n   </InputVars>\n"
            "  </CFilterRows>\n</ReadColumnarGel>\n");
}

TEST(ReadColumnarGelXml, EverySettingIsAFixedPointInTheGivenOrder) {
  const std::string text =
      "<ReadColumnarGel name='r' version='2.3' fileNameFromPin='1' accurateProgressBar='0' "
      "readIncompleteFile='1' skipCorruptedBlocks='1' filterRows='1' abortIfMissing='0' "
      "nBlockForward='4' columnSelection='1' fileName='a&amp;b.cgel_kelvarin' timeOut='30' "
      "readAllColumns='0'>\n"
      "  <CFilterRows addN='0' addNow='1' elapsedTimeUnit='3'>\n"
      "   <Expression>k_max &lt; 5 &amp;&amp; low > 1</Expression>\n"
      "   <InputVars>\n"
      "    <CInputVar column='k'/>\n"
      "    <CInputVar column='t&lt;' varNameMax='high' varNameMin='low' varNameHasNull='gaps' "
      "isNumber='0' meta='K' valueMax='z' valueMin='a'/>\n"
      "    <CInputVar column='n' valueMax='2.5'/>\n"
      "   </InputVars>\n"
      "  </CFilterRows>\n"
      "  <ColumnsToRead><SL><S>k</S><S>n</S></SL></ColumnsToRead>\n"
      "</ReadColumnarGel>\n";
  EXPECT_EQ(RowHarness::of<ReadColumnarGel>(text).saved(), text);
}

TEST(ReadColumnarGel, ItsSettingsDecideItsPins) {
  const auto pins = [](const std::string& attributes) {
    return RowHarness::of<ReadColumnarGel>("<ReadColumnarGel name='r' " + attributes + "/>")
        .action()
        .inputPinCount();
  };
  EXPECT_EQ(pins(""), 0);
  EXPECT_EQ(pins("fileNameFromPin='1'"), 1);
  EXPECT_EQ(pins("columnSelection='2'"), 2);
  EXPECT_EQ(pins("columnSelection='1' fileNameFromPin='1'"), 1);
  // Not all columns means those that are listed, whatever columnSelection says.
  EXPECT_EQ(pins("columnSelection='2' readAllColumns='0'"), 0);
}

TEST(WriteColumnarGelXml, DefaultsAreNotWritten) {
  EXPECT_EQ(RowHarness::of<WriteColumnarGel>("<writeColumnarGel name='w'/>").saved(),
            "<writeColumnarGel name='w' version='3.19'>\n</writeColumnarGel>\n");
}

TEST(WriteColumnarGelXml, EverySettingIsAFixedPointInTheGivenOrder) {
  const std::string text =
      "<writeColumnarGel name='w' version='3.19' nThread='3' nRowsInBlock='100' columnStrategy='1' "
      "split='2' segmentSize='50' splitVar='s' testCol='c' testValue='&lt;1&gt;' deleteTimeOut='0' "
      "checkNameCollision='0' alwaysDelete='1' createDir='1' advancedNaming='1' writeAllRows='0' "
      "file='${dir}/&quot;+SplitVal+&quot;.cgel_kelvarin' replaceAtEnd='1'>\n"
      "  <ColumnStrategy><C n='b' s='1'/><C n='a&apos;' s='0'/></ColumnStrategy>\n"
      "</writeColumnarGel>\n";
  EXPECT_EQ(RowHarness::of<WriteColumnarGel>(text).saved(), text);
}

TEST(WriteColumnarGelXml, ASegmentSizeLosesItsFraction) {
  EXPECT_EQ(
      RowHarness::of<WriteColumnarGel>("<writeColumnarGel name='w' segmentSize='12.9'/>").saved(),
      "<writeColumnarGel name='w' version='3.19' segmentSize='12'>\n</writeColumnarGel>\n");
  EXPECT_EQ(
      RowHarness::of<WriteColumnarGel>("<writeColumnarGel name='w' segmentSize='1e30'/>").saved(),
      "<writeColumnarGel name='w' version='3.19'>\n</writeColumnarGel>\n");
}

TEST(ColumnarActions, AreEndpoints) {
  auto reader = RowHarness::of<ReadColumnarGel>("<ReadColumnarGel name='r'/>");
  EXPECT_EQ(reader.action().endpoint(), ActionItem::Endpoint::reader);
  EXPECT_FALSE(reader.action().writesFiles());

  auto writer = RowHarness::of<WriteColumnarGel>("<writeColumnarGel name='w'/>");
  EXPECT_EQ(writer.action().endpoint(), ActionItem::Endpoint::writer);
  EXPECT_TRUE(writer.action().writesFiles());
  EXPECT_EQ(writer.action().inputPinCount(), 1);
  EXPECT_EQ(writer.action().outputPinCount(), 0);
}
