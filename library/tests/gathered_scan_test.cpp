// Scans whose rows come at once have the rows of scans that come batch by batch.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <random>
#include <thread>

#include "arrow/array/builder_binary.h"
#include "arrow/array/builder_primitive.h"
#include "arrow/compare.h"
#include "host/tables/files/tests/table_folder.h"
#include "library/tests/arrow_streams.h"

namespace kelvarin {
namespace {

using testing::Call;
using testing::Pulled;

#ifdef __SANITIZE_THREAD__  // which takes fifty times as long
constexpr int kTables = 2;
constexpr int kRowsOfLarge = 60'000;
#else
constexpr int kTables = 12;
constexpr int kRowsOfLarge = 400'000;
#endif

// Words of other lengths and scripts, some of which do not fit into a view.
std::string textOf(unsigned value) {
  static const char* const kWords[] = {"",
                                       "Bonn",
                                       "K\xC3\xB6ln",
                                       "exactly twelv",
                                       "twelve bytes",
                                       "a text that fits into no view at all"};
  const std::string word = kWords[value % 6];
  return value % 5 == 0 ? word + std::to_string(value) : word;
}

// Columns of all types, counted, random, repeated and missing.
std::shared_ptr<arrow::RecordBatch> randomRows(int rows, std::mt19937& random) {
  arrow::DoubleBuilder counted;
  arrow::DoubleBuilder numbers;
  arrow::UInt32Builder keys;
  arrow::StringBuilder texts;
  arrow::StringBuilder same;
  const auto nullShare = random() % 3;
  const auto distinct = random() % 2 == 0 ? 3u : 100'000u;
  for (int row = 0; row < rows; ++row) {
    const unsigned value = static_cast<unsigned>(random()) % distinct;
    const bool isNull = random() % 4 < nullShare;
    const double number = value % 17 == 0 ? std::nan("") : value / 8.0;
    EXPECT_TRUE(counted.Append(row).ok());
    EXPECT_TRUE((isNull ? numbers.AppendNull() : numbers.Append(number)).ok());
    EXPECT_TRUE((isNull ? keys.AppendNull() : keys.Append(value)).ok());
    EXPECT_TRUE((isNull ? texts.AppendNull() : texts.Append(textOf(value))).ok());
    EXPECT_TRUE(same.Append("one text for all rows").ok());
  }
  const auto schema =
      arrow::schema({arrow::field("counted", arrow::float64()), arrow::field("n", arrow::float64()),
                     arrow::field("k", arrow::uint32()), arrow::field("t", arrow::utf8()),
                     arrow::field("same", arrow::utf8())});
  return arrow::RecordBatch::Make(
      schema, rows,
      {*counted.Finish(), *numbers.Finish(), *keys.Finish(), *texts.Finish(), *same.Finish()});
}

class GatheredScanTest : public ::testing::Test {
 protected:
  void write(const std::shared_ptr<arrow::RecordBatch>& rows, int rowsInBlock) {
    kelvarin_write_options options = KELVARIN_WRITE_OPTIONS_INIT;
    options.rows_in_block = rowsInBlock;
    ArrowArrayStream stream = testing::streamOf({rows});
    Call error;
    ASSERT_EQ(kelvarin_write(m_path.c_str(), &stream, &options, nullptr, &error), KELVARIN_OK)
        << error.message();
  }
  kelvarin_table open() const {
    kelvarin_table table{};
    EXPECT_EQ(kelvarin_table_open(m_path.c_str(), nullptr, &table, nullptr), KELVARIN_OK);
    return table;
  }
  static Pulled scan(kelvarin_table table, kelvarin_scan_options options, bool isGathered) {
    options.gathers_rows = isGathered ? 1 : 0;
    ArrowArrayStream stream;
    Call error;
    if (kelvarin_table_scan(table, &options, &stream, &error) != KELVARIN_OK) {
      return {nullptr, error.message()};
    }
    return testing::pulled(stream);
  }
  // How many batches the gathered rows come in, which are those of a stream.
  static std::size_t batchesOf(kelvarin_table table, const kelvarin_scan_options& options) {
    const Pulled expected = scan(table, options, false);
    const Pulled gathered = scan(table, options, true);
    EXPECT_EQ(gathered.failure, expected.failure);
    EXPECT_TRUE(
        gathered.table->Equals(*expected.table, arrow::EqualOptions::Defaults().nans_equal(true)))
        << "threads=" << options.threads << " text_format=" << options.text_format;
    return gathered.batches;
  }
  // Calls it with the options for any number of threads and each form of texts.
  static void forEachForm(const std::function<void(kelvarin_scan_options)>& check) {
    for (const int threads : {1, 2, 4}) {
      for (const int format : {KELVARIN_TEXT_VIEWS, KELVARIN_TEXT_UTF8, KELVARIN_TEXT_LARGE}) {
        kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
        options.threads = threads;
        options.text_format = format;
        check(options);
      }
    }
  }
  // Changes a byte of the file with the chunks, in the middle of each such part of it.
  void damage(int parts) {
    const std::string name = std::filesystem::path(m_path).stem().string() + ".000.cs_kelvarin";
    std::string bytes = m_folder.read(name);
    for (int part = 0; part < parts; ++part) {
      bytes[bytes.size() * static_cast<std::size_t>(2 * part + 1) /
            static_cast<std::size_t>(2 * parts)] ^= 0x10;
    }
    m_folder.write(name, bytes);
  }

  testing::TableFolder m_folder;
  std::string m_path = m_folder.path("t.cgel_kelvarin");
};

TEST_F(GatheredScanTest, RandomTablesComeInOneBatch) {
  std::mt19937 random(23);
  for (int i = 0; i < kTables; ++i) {
    const int rows = 1 + static_cast<int>(random() % 30'000);
    write(randomRows(rows, random), 1 + static_cast<int>(random() % 9'000));
    const kelvarin_table table = open();
    forEachForm([&](kelvarin_scan_options options) {
      EXPECT_EQ(batchesOf(table, options), 1u);
      options.first_row = static_cast<std::int64_t>(random()) % rows;
      options.end_row =
          options.first_row + static_cast<std::int64_t>(random()) % (rows - options.first_row + 1);
      options.row_number_column = "_n";
      EXPECT_EQ(batchesOf(table, options), options.first_row < options.end_row ? 1u : 0u);
    });
    EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
  }
}

// Large enough for large pages, several pieces of texts and more units than are in work at once.
TEST_F(GatheredScanTest, LargeTablesComeInOneBatch) {
  std::mt19937 random(29);
  write(randomRows(kRowsOfLarge, random), kRowsOfLarge / 20);
  const kelvarin_table table = open();
  forEachForm(
      [&](const kelvarin_scan_options& options) { EXPECT_EQ(batchesOf(table, options), 1u); });
  const char* columns[] = {"t", "counted"};
  kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
  options.columns = columns;
  options.column_count = 2;
  const std::string filter = "counted_min % " + std::to_string(kRowsOfLarge / 10) + " == 0";
  options.block_filter = filter.c_str();
  options.first_row = kRowsOfLarge / 8 + 1;
  EXPECT_EQ(batchesOf(table, options), 1u);
  options.batch_rows = kRowsOfLarge / 13;
  EXPECT_GT(batchesOf(table, options), 1u);
  EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
}

// Too many texts for a dictionary, some of which rows share: together they take more than these.
TEST_F(GatheredScanTest, RowsMayShareLongTexts) {
  for (const int size : {60, 3'000}) {
    arrow::StringBuilder texts;
    for (int row = 0; row < 12'000; ++row) {
      const int within = row % 60;
      const bool isShared = within >= 20 && within < 40;
      ASSERT_TRUE(texts
                      .Append(isShared ? std::string(static_cast<std::size_t>(size), 'x')
                                       : "v" + std::to_string(row))
                      .ok());
    }
    write(arrow::RecordBatch::Make(arrow::schema({arrow::field("t", arrow::utf8())}), 12'000,
                                   {*texts.Finish()}),
          60);
    const kelvarin_table table = open();
    forEachForm([&](kelvarin_scan_options options) {
      batchesOf(table, options);
      options.first_row = 24;
      options.end_row = 36;
      batchesOf(table, options);
    });
    EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
  }
}

TEST_F(GatheredScanTest, DamagedRowsAreLeftOut) {
  std::mt19937 random(31);
  std::size_t batches = 0;
  for (const int rowsInBlock : {100, 2'000, 7'000}) {
    write(randomRows(60'000, random), rowsInBlock);
    damage(3);
    const kelvarin_table table = open();
    forEachForm([&](kelvarin_scan_options options) {
      options.skips_damage = 1;
      batches = std::max(batches, batchesOf(table, options));
      options.skips_damage = 0;
      const Pulled failed = scan(table, options, true);
      EXPECT_NE(failed.failure.find("corrupted"), std::string::npos) << failed.failure;
    });
    EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
  }
  EXPECT_GT(batches, 1u);
}

// What was known of the file when it was opened need not hold any more.
TEST_F(GatheredScanTest, AFileThatWasReplacedIsReadAsItIs) {
  std::mt19937 random(37);
  write(randomRows(5'000, random), 1'000);
  const kelvarin_table table = open();
  for (const int rows : {1, 4'999, 5'001, 90'000}) {
    write(randomRows(rows, random), 1'000);
    forEachForm([&](const kelvarin_scan_options& options) { batchesOf(table, options); });
  }
  EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
}

TEST_F(GatheredScanTest, ItIsStoppedInTheMiddle) {
  std::mt19937 random(41);
  write(randomRows(200'000, random), 2'000);
  const kelvarin_table table = open();
  bool wasStopped = false;
  for (int i = 0; i < 40; ++i) {
    kelvarin_scan_options options = KELVARIN_SCAN_OPTIONS_INIT;
    options.gathers_rows = 1;
    options.threads = 1 + i % 3;
    ASSERT_EQ(kelvarin_stop_new(&options.stop), KELVARIN_OK);
    ArrowArrayStream stream;
    ASSERT_EQ(kelvarin_table_scan(table, &options, &stream, nullptr), KELVARIN_OK);
    std::jthread stopper([&] {
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 5'000));
      kelvarin_stop_request(options.stop);
    });
    ArrowArray batch{};
    const int status = stream.get_next(&stream, &batch);
    if (status == 0) {
      EXPECT_EQ(batch.length, 200'000);
      batch.release(&batch);
    } else {
      EXPECT_EQ(status, ECANCELED);
      wasStopped = true;
    }
    stopper.join();
    stream.release(&stream);
    EXPECT_EQ(kelvarin_stop_close(options.stop), KELVARIN_OK);
  }
  EXPECT_TRUE(wasStopped);
  EXPECT_EQ(kelvarin_table_close(table), KELVARIN_OK);
}

}  // namespace
}  // namespace kelvarin
