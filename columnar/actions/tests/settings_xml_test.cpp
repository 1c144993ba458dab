#include <gtest/gtest.h>

#include "columnar/actions/read_columnar_gel.h"
#include "columnar/actions/write_columnar_gel.h"
#include "host/testing/row_harness.h"

using kelvarin::ReadColumnarGel;
using kelvarin::WriteColumnarGel;
using kelvarin::testing::RowHarness;

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
