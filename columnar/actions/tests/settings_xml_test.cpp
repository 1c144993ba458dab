#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "columnar/actions/read_columnar_gel.h"
#include "columnar/actions/write_columnar_gel.h"
#include "host/testing/row_harness.h"

using kelvarin::ReadColumnarGel;
using kelvarin::WriteColumnarGel;
using kelvarin::testing::RowHarness;

namespace {

std::string savedAction(const std::string& name) {
  std::ifstream file(KELVARIN_SAVED_ACTIONS "/" + name + ".xml");
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

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

TEST(ColumnarActions, SettersLeaveWhatReadingWould) {
  const std::string readerText = savedAction("ReadColumnarGel_all");
  auto reader = RowHarness::of<ReadColumnarGel>(readerText);
  auto setReader =
      RowHarness::of<ReadColumnarGel>("<ReadColumnarGel name='r' x='3' y='-4' disabled='1'/>");
  const auto& readFrom = reader.actionAs<ReadColumnarGel>();
  auto& readTo = setReader.actionAs<ReadColumnarGel>();
  readTo.setColumnsToRead(readFrom.columnsToRead());
  readTo.setBlockFilter(readFrom.blockFilter());
  readTo.setSettings(readFrom.settings());
  EXPECT_EQ(setReader.saved(), readerText);
  EXPECT_EQ(readTo.inputPinCount(), 1);
  auto fromPin = readTo.settings();
  fromPin.readAllColumns = true;
  fromPin.columnSelection = 2;
  readTo.setSettings(fromPin);
  EXPECT_EQ(readTo.inputPinCount(), 2);

  const std::string writerText = savedAction("writeColumnarGel_all");
  auto writer = RowHarness::of<WriteColumnarGel>(writerText);
  auto setWriter =
      RowHarness::of<WriteColumnarGel>("<writeColumnarGel name='w' x='3' y='-4' disabled='1'/>");
  setWriter.actionAs<WriteColumnarGel>().setColumnSets(
      writer.actionAs<WriteColumnarGel>().columnSets());
  setWriter.actionAs<WriteColumnarGel>().setSettings(
      writer.actionAs<WriteColumnarGel>().settings());
  EXPECT_EQ(setWriter.saved(), writerText);
}
