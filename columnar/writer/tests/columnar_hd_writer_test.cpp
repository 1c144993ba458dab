#include "columnar/writer/columnar_hd_writer.h"

#include <fstream>
#include <iterator>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "columnar/codecs/descriptor_record.h"
#include "columnar/format/file_names.h"
#include "host/testing/fake_input_pin.h"
#include "host/testing/full_disk.h"

namespace kelvarin {

namespace {

using testing::FakeInputPin;
using testing::FullDisk;
using testing::Values;
using RunningState = GlobalParameters::RunningState;
using ByteList = std::vector<unsigned char>;

ByteList contentOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class Folder {
 public:
  std::string file(const char* name) const { return m_folder.filePath(name).toStdString(); }

 private:
  QTemporaryDir m_folder;
};

// A table whose columns differ in every way, with a broken bit of everything.
FakeInputPin wideTable(int rows) {
  FakeInputPin pin(testing::columnsFromText("k:K n:F t:U m:F s:U"));
  pin.setSortOrder({SortInfos(0, SortType::numberAscending)});
  for (int i = 0; i < rows; ++i) {
    pin.push({i, i % 7 == 0 ? Values{nullptr}[0] : testing::Value(i / 4.0),
              "text " + std::to_string(i % 50), 1.0 / (i + 1), std::string(i % 30, 'x')});
  }
  return pin;
}

struct Options {
  int rowsInBlock = 100;
  QHash<QString, int> sets;
  int threads = 2;
};

// False when a row or the end was refused.
bool writeAll(ColumnarHDWriter& writer, FakeInputPin& pin, const std::string& file,
              const Options& options, RunningState state = RunningState::running) {
  GlobalParameters parameters;
  if (!writer.openHD(QString::fromStdString(file), options.rowsInBlock, options.sets, &parameters,
                     options.threads)) {
    return false;
  }
  bool isTaken = true;
  while (const OneRow* row = isTaken ? pin.next() : nullptr) {
    isTaken = writer.writeToHD(row);
  }
  return writer.closeHD(state) && isTaken;
}

std::vector<ByteList> filesOf(const std::string& main, int sets) {
  std::vector<ByteList> files = {contentOf(main)};
  for (int set = 0; set < sets; ++set) {
    files.push_back(contentOf(sideFileName(main, set)));
  }
  return files;
}

// What the whole table takes of a disk.
long long sizeOnDisk(const std::string& file, FakeInputPin pin, const Options& options) {
  constexpr long long kPlenty = 1'000'000;
  const FullDisk largeDisk(kPlenty);
  ColumnarHDWriter writer;
  EXPECT_TRUE(writeAll(writer, pin, file, options));
  return kPlenty - largeDisk.bytesLeft();
}

const QHash<QString, int> kThreeSets = {{"k", 0}, {"n", 2}, {"t", 1}, {"m", 2}, {"s", 0}};

}  // namespace

TEST(ColumnarHDWriter, GoldenFile) {
  const Folder folder;
  const std::string file = folder.file("g.cgel_kelvarin");
  FakeInputPin pin(testing::columnsFromText("n:F k:K"));
  pin.push({1.5, 7});
  pin.push({2.5, nullptr});
  ColumnarHDWriter writer;
  ASSERT_TRUE(writeAll(writer, pin, file, {.rowsInBlock = 5, .sets = {}, .threads = 1}));

  const ByteList side = contentOf(folder.file("g.000.cs_kelvarin"));
  const ByteList main = contentOf(file);
  // The key's chunk: checksum, Snappy's length and tag, the number of packed keys, 6 bytes for 7
  // and the null, 2 of padding. The number's chunk: the same head, encoding, 11 bytes and 2 codes
  // of 4 bits.
  ASSERT_EQ(side.size(), 18u + 19u);
  EXPECT_EQ(ByteList(side.begin() + 4, side.begin() + 18),
            (ByteList{12, 11 << 2, 0, 0, 0, 0, 0x87, 0x7F, 0x7F, 0x7F, 0x7F, 0x8F, 0, 0}));
  EXPECT_EQ(ByteList(side.begin() + 18 + 4, side.end()),
            (ByteList{13, 12 << 2, 1, 1, 4, 0, 15, 0, 0, 0, 0, 0, 0, 0, 0xA0}));
  const ByteList head = {
      0x40, 0xF4, 0x59, 0x00, 1, 86 - 9, 0, 0, 0,            // complete, length of the rest
      2,    0,    0,    0,    0, 0,      0, 0, 2, 0, 0, 0};  // rows, columns
  EXPECT_EQ(ByteList(main.begin(), main.begin() + 21), head);
  const ByteList rest = {
      47, 0, 0, 0,                                                  // the raw descriptors
      18, 0, 0, 0, 19,  0, 0, 0, 20, 0, 0, 0, 40, 0, 0, 0,          // slots
      5,  0, 0, 0, 1,                                               // rows in a block, sets
      1,  0, 0, 0, 'K', 0, 0, 0, 0,  0, 0, 0, 1,  0, 0, 0, 'k', 1,  // the key before the number
      0,  0, 0, 0, 'F', 0, 0, 0, 0,  0, 0, 0, 1,  0, 0, 0, 'n', 0};
  EXPECT_EQ(ByteList(main.begin() + 25, main.begin() + 86), rest);

  const auto record = Bytes(main).subspan(86);
  const DescriptorRecordHead recordHead{loadPacked<std::uint32_t>(record.data()),
                                        loadPacked<std::uint32_t>(record.data() + 4)};
  EXPECT_EQ(recordHead.payloadSize + 8, loadPacked<std::uint32_t>(main.data() + 21));
  ASSERT_EQ(record.size(), 8 + recordHead.payloadSize + 8);
  ByteBuffer descriptors;
  ASSERT_EQ(decodeDescriptorRecord(recordHead, record.subspan(8), 47, 47, descriptors),
            ReadStatus::ok);
  const ByteList descriptor = {
      2,  0, 0, 0,                                   // rows
      0,  0, 0, 0, 0, 0, 0,    0,                    // the block in the side file
      0,  0, 0, 0, 1, 7, 0,    0,    0, 7, 0, 0, 0,  // position, has nulls, low, high
      18, 0, 0, 0, 0, 1,                             // position, no nulls, has values
      0,  0, 0, 0, 0, 0, 0xF8, 0x3F, 0, 0, 0, 0, 0, 0, 4, 0x40};
  EXPECT_EQ(ByteList(descriptors.data(), descriptors.data() + descriptors.size()), descriptor);
  EXPECT_EQ(loadPacked<std::uint64_t>(main.data() + main.size() - 8), kEndMarker);
}

// The blocks are large enough for helpers, and there are more sets than threads, or fewer.
TEST(ColumnarHDWriter, TheBytesDoNotDependOnWhoEncodesAColumn) {
  const Folder folder;
  const std::string file = folder.file("h.cgel_kelvarin");
  for (const QHash<QString, int>& sets : {QHash<QString, int>(), kThreeSets}) {
    std::vector<ByteList> alone;
    for (const int threads : {1, 2, 3, 8}) {
      FakeInputPin pin = wideTable(10'000);
      ColumnarHDWriter writer;
      ASSERT_TRUE(
          writeAll(writer, pin, file, {.rowsInBlock = 3000, .sets = sets, .threads = threads}));
      const std::vector<ByteList> files = filesOf(file, 3);
      alone = threads == 1 ? files : alone;
      EXPECT_EQ(files, alone) << threads << " threads";
    }
  }
}

TEST(ColumnarHDWriter, OnlyANormalEndMakesAFileComplete) {
  const Folder folder;
  const std::string file = folder.file("e.cgel_kelvarin");
  for (const RunningState state : {RunningState::endedNormally, RunningState::running,
                                   RunningState::stoppedByUser, RunningState::failed}) {
    FakeInputPin pin = wideTable(250);
    ColumnarHDWriter writer;
    EXPECT_TRUE(writeAll(writer, pin, file, {}, state));
    const bool isNormal = state == RunningState::endedNormally || state == RunningState::running;
    const ByteList main = contentOf(file);
    EXPECT_EQ(main[4], isNormal ? 1 : 0);
    EXPECT_EQ(loadPacked<std::uint64_t>(main.data() + 9), 250u);
    EXPECT_EQ(loadPacked<std::uint64_t>(main.data() + main.size() - 8), kEndMarker);
  }
  {
    FakeInputPin pin = wideTable(250);
    ColumnarHDWriter writer;
    GlobalParameters parameters;
    ASSERT_TRUE(writer.openHD(QString::fromStdString(file), 100, {}, &parameters, 1));
    while (const OneRow* row = pin.next()) {
      ASSERT_TRUE(writer.writeToHD(row));
    }
  }
  EXPECT_EQ(contentOf(file)[4], 0);
}

TEST(ColumnarHDWriter, LimitsAreCheckedBeforeAnythingIsWritten) {
  const Folder folder;
  const std::string file = folder.file("l.cgel_kelvarin");
  const auto kindOf = [&](const Options& options, const std::string& columns) {
    FakeInputPin pin(testing::columnsFromText(columns));
    pin.push(Values(static_cast<std::size_t>(testing::columnsFromText(columns).columnCount()),
                    testing::Value(nullptr)));
    ColumnarHDWriter writer;
    EXPECT_FALSE(writeAll(writer, pin, file, options));
    EXPECT_TRUE(contentOf(file).empty());
    return writer.failure().kind;
  };
  using Kind = WriteFailure::Kind;
  EXPECT_EQ(kindOf({.rowsInBlock = 0, .sets = {}}, "a:F"), Kind::tooLarge);
  EXPECT_EQ(kindOf({.rowsInBlock = 2'000'000'000, .sets = {}}, "a:F"), Kind::tooLarge);
  EXPECT_EQ(kindOf({.rowsInBlock = 5, .sets = {{"a", 255}}}, "a:F"), Kind::tooLarge);
  EXPECT_EQ(kindOf({.rowsInBlock = 5, .sets = {{"b", 0}}}, "a:F"), Kind::noColumns);
  std::string wide;
  for (int i = 0; i < 30000; ++i) {
    wide += "c" + std::to_string(i) + ":U ";
  }
  EXPECT_EQ(kindOf({.rowsInBlock = 5, .sets = {}}, wide), Kind::tooLarge);
}

TEST(ColumnarHDWriter, AFullDiskLosesNothingWhenSpaceIsFreed) {
  const Folder folder;
  const std::string wanted = folder.file("w.cgel_kelvarin");
  const std::string file = folder.file("d.cgel_kelvarin");
  const Options options{.rowsInBlock = 100, .sets = kThreeSets};
  const long long size = sizeOnDisk(wanted, wideTable(450), options);
  const auto wantedFiles = filesOf(wanted, 3);
  // Every write stops half-way, or after a byte, or before its first one.
  for (long long bytesLeft = 0; bytesLeft < size; bytesLeft += 97) {
    FullDisk disk(bytesLeft);
    std::atomic<int> asked = 0;
    ColumnarHDWriter writer([&](const QString&, int missing) {
      const int time = ++asked;
      disk.freeBytes(time % 3 == 0 ? missing : time % 3 == 1 ? missing / 2 : 1);
      return true;
    });
    FakeInputPin again = wideTable(450);
    EXPECT_TRUE(writeAll(writer, again, file, options));
    EXPECT_GT(asked, 0);
    EXPECT_EQ(filesOf(file, 3), wantedFiles) << bytesLeft;
  }
}

TEST(ColumnarHDWriter, GivingUpOnAFullDiskEndsWithAnIncompleteFileAndItsName) {
  const Folder folder;
  const std::string file = folder.file("d.cgel_kelvarin");
  const Options options{.rowsInBlock = 100, .sets = kThreeSets};
  const long long size = sizeOnDisk(file, wideTable(2000), options);
  for (long long bytesLeft = 0; bytesLeft < size; bytesLeft += size / 17) {
    FullDisk disk(bytesLeft);
    ColumnarHDWriter writer([](const QString&, int) { return false; });
    FakeInputPin pin = wideTable(2000);
    EXPECT_FALSE(writeAll(writer, pin, file, options));
    EXPECT_EQ(writer.failure().kind, WriteFailure::Kind::cannotWrite);
    EXPECT_TRUE(writer.failure().file.contains(".c")) << writer.failure().file.toStdString();
    const ByteList main = contentOf(file);
    EXPECT_TRUE(main.size() < 5 || main[4] == 0);
  }
}

TEST(ColumnarHDWriter, APreviewListsTheRecordsAndEndsWithTheLast) {
  const Folder folder;
  PinOutDataPreview preview;
  FakeInputPin pin = wideTable(250);
  ColumnarHDWriter writer;
  writer.setPoDP(&preview);
  ASSERT_TRUE(writeAll(writer, pin, folder.file("p.cgel_kelvarin"), {}));
  EXPECT_TRUE(preview.isComplete());
  EXPECT_EQ(preview.columns().names(), QVector<QString>({"k", "n", "m", "t", "s"}));
  const auto entries = preview.entries();
  ASSERT_EQ(entries.size(), 2u);
  const int width = 4 + 5 * 5 + 8 + 8 + 2 * 17 + 2 * 164;
  EXPECT_EQ(entries[0].width, width);
  EXPECT_EQ(entries[0].rowCount, 0);
  EXPECT_EQ(entries[1], (PinOutDataPreview::Entry{0, 4, entries[0].offset + 3 * width}));
}

}  // namespace kelvarin
