// Arrow streams, which have no table of their record batches at the end and come through pipes.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <thread>

#include <gtest/gtest.h>

#include "arrow/array/builder_binary.h"
#include "arrow/array/builder_primitive.h"
#include "arrow/table.h"
#include "arrow/type.h"
#include "host/tables/arrow/arrow_actions.h"
#include "host/tables/arrow/tests/typed_arrays.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/row_harness.h"

namespace kelvarin {

using testing::Format;
using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::TableFolder;

namespace {

constexpr int kRows = 500;
constexpr int kRowsInBatch = 200;

std::shared_ptr<arrow::Table> table() {
  arrow::DoubleBuilder numbers;
  arrow::StringBuilder texts;
  for (int row = 0; row < kRows; ++row) {
    EXPECT_TRUE(numbers.Append(row).ok());
    EXPECT_TRUE(texts.Append("text " + std::to_string(row)).ok());
  }
  return arrow::Table::Make(
      arrow::schema({arrow::field("n", arrow::float64()), arrow::field("t", arrow::utf8())}),
      {*numbers.Finish(), *texts.Finish()});
}

std::string bytesOf(const TableFolder& folder, Format format) {
  testing::writeFile(folder.path("made"), format, *table(), {.rowsInGroup = kRowsInBatch});
  return folder.read("made");
}

RowHarness source(const std::string& path, const std::string& action = "ReadArrow") {
  const std::string xml = "<" + action + " name='r' file='" + path + "'/>";
  return action == "ReadArrow" ? RowHarness::of<ReadArrow>(xml) : RowHarness::of<ReadParquet>(xml);
}

struct Outcome {
  std::size_t rows;
  Strings log;
};

Outcome read(const std::string& path) {
  auto harness = source(path);
  const std::size_t rows = harness.rows(0).size();
  harness.close();
  return {rows, harness.log()};
}

Outcome readThroughPipe(const TableFolder& folder, const std::string& bytes) {
  const std::string path = folder.path("pipe");
  EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
  std::thread writer([&] { folder.write("pipe", bytes); });
  const Outcome outcome = read(path);
  writer.join();
  EXPECT_EQ(::unlink(path.c_str()), 0);
  return outcome;
}

std::string written(const TableFolder& folder, const std::string& name,
                    const std::string& attributes = {}) {
  auto sink = RowHarness::of<WriteArrow>(
      "<WriteArrow name='w' file='" + folder.path(name) + "' " + attributes + "/>", "n:F k:K t:U");
  sink.push(Rows{{1.5, 7, "x"}, {nullptr, nullptr, nullptr}});
  sink.finish();
  EXPECT_EQ(sink.log(), Strings{});
  return folder.read(name);
}

bool isStream(const std::string& bytes) {
  return bytes.starts_with("\xFF\xFF\xFF\xFF");
}

}  // namespace

TEST(ArrowStreams, areToldByTheirBytes) {
  const TableFolder folder;
  for (const Format format : {Format::ipc, Format::stream}) {
    const std::string bytes = bytesOf(folder, format);
    auto harness = source(folder.write("t.arrow", bytes));
    EXPECT_EQ(harness.rows(0).back(), (testing::Values{kRows - 1, "text 499"}));
    EXPECT_EQ(harness.columns(0), "n:F t:U");
    const Outcome outcome = readThroughPipe(folder, bytes);
    EXPECT_EQ(outcome.rows, std::size_t{kRows});
    EXPECT_EQ(outcome.log, Strings{});
  }
}

TEST(ArrowStreams, theNameOrTheAttributeSaysWhatIsWritten) {
  const TableFolder folder;
  EXPECT_TRUE(isStream(written(folder, "a.arrows")));
  EXPECT_TRUE(isStream(written(folder, "b.arrow", "format='stream'")));
  EXPECT_FALSE(isStream(written(folder, "c.arrows", "format='file'")));
  EXPECT_FALSE(isStream(written(folder, "d.arrow")));
  EXPECT_EQ(testing::tableOfFile(folder.path("a.arrows"), Format::stream)->num_rows(), 2);
  for (const std::string name : {"a.arrows", "b.arrow", "c.arrows", "d.arrow"}) {
    auto harness = source(folder.path(name));
    EXPECT_EQ(harness.rows(0), (Rows{{1.5, 7, "x"}, {nullptr, nullptr, nullptr}})) << name;
    EXPECT_EQ(harness.log(), Strings{});
  }
  auto wrong = RowHarness::of<WriteArrow>(
      "<WriteArrow name='w' file='" + folder.path("e.arrow") + "' format='flight'/>", "n:F");
  EXPECT_NE(wrong.init(), 0);
  EXPECT_EQ(wrong.log(), Strings{"error: The attribute format='flight' must be file, stream or "
                                 "empty."});
}

// At every byte of the schema and of the first batch, then here and there.
TEST(ArrowStreams, cutOnesFailOrSayThatTheyEndEarly) {
  const TableFolder folder;
  const std::string good = bytesOf(folder, Format::stream);
  int ended = 0;
  for (std::size_t size = 1; size < good.size(); size += size < 600 ? 1 : 97) {
    const Outcome outcome = read(folder.write("t", good.substr(0, size)));
    ASSERT_EQ(outcome.log.size(), 1u) << "cut at " << size;
    const bool isEnd = outcome.log[0].find("ends without its end mark") != std::string::npos;
    EXPECT_EQ(isEnd, outcome.log[0].starts_with("warning")) << outcome.log[0];
    EXPECT_EQ(outcome.rows % kRowsInBatch, 0u);
    ended += isEnd ? 1 : 0;
  }
  EXPECT_EQ(ended, 1);  // behind the schema, where rows begin
  const Outcome cut = read(folder.write("t", good.substr(0, good.size() - 1'000)));
  EXPECT_EQ(cut.rows, std::size_t{2 * kRowsInBatch});
  EXPECT_NE(cut.log.at(0).find("record batch 3: "), std::string::npos) << cut.log[0];
}

TEST(ArrowStreams, changedBytesAndForgedSizesAreFailures) {
  const TableFolder folder;
  const std::string good = bytesOf(folder, Format::stream);
  for (std::size_t at = 0; at < good.size(); at += at < 900 ? 1 : 199) {
    std::string bad = good;
    bad[at] = static_cast<char>(bad[at] ^ 0xFF);
    auto harness = source(folder.write("t", bad));
    harness.rows(0);
    EXPECT_TRUE(!harness.hasFailed() || !harness.log().empty()) << "flipped at " << at;
  }
  // A schema of 2 GB that does not come, from a file and through a pipe.
  const std::string claim("\xFF\xFF\xFF\xFF\xF8\xFF\xFF\x7F short", 14);
  EXPECT_EQ(read(folder.write("t", claim)).log.size(), 1u);
  EXPECT_EQ(readThroughPipe(folder, claim).log.size(), 1u);
}

TEST(ArrowStreams, whatIsNoneIsSaid) {
  const TableFolder folder;
  const auto reason = [&](const std::string& bytes) {
    const Outcome outcome = read(folder.write("t", bytes));
    return outcome.log.size() == 1 ? outcome.log[0].substr(outcome.log[0].rfind(": ") + 2)
                                   : std::string();
  };
  EXPECT_EQ(reason(""), "there is nothing in it");
  EXPECT_EQ(reason(std::string("FEA1\0\0\0\0", 8)),
            "it is a Feather file of version 1, which is not read; write it again as version 2, "
            "which is an Arrow file");
  EXPECT_EQ(reason("n,t\n1,one\n"), "it is neither an Arrow file nor an Arrow stream");
  auto parquet = source("/dev/null", "ReadParquet");
  parquet.rows(0);
  EXPECT_NE(parquet.log().at(0).find("cannot come through a pipe"), std::string::npos);
}

TEST(ArrowStreams, bytesBehindTheEndAreSaid) {
  const TableFolder folder;
  const std::string stream = bytesOf(folder, Format::stream);
  const Outcome outcome = read(folder.write("t", stream + stream));
  EXPECT_EQ(outcome.rows, std::size_t{kRows});
  EXPECT_EQ(outcome.log, Strings{"warning: The Arrow stream ends " + std::to_string(stream.size()) +
                                 " bytes before the end of the file '" + folder.path("t") +
                                 "'; what follows was not read. Streams are not joined by writing "
                                 "one behind the other."});
}

// Before the schema, and among the record batches.
TEST(ArrowStreams, aStopEndsTheWaitForAPipe) {
  const TableFolder folder;
  const std::string good = bytesOf(folder, Format::stream);
  for (const std::size_t size : {std::size_t{0}, std::size_t{700}}) {
    const std::string path = folder.path("pipe");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const int pipe = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(::write(pipe, good.data(), size), static_cast<ssize_t>(size));
    auto harness = source(path);
    harness.init();
    std::thread stop([&] { harness.action().wakeAll(); });
    EXPECT_EQ(harness.rows(0), Rows{});
    EXPECT_EQ(harness.log(), Strings{});
    stop.join();
    ::close(pipe);
    EXPECT_EQ(::unlink(path.c_str()), 0);
  }
}

}  // namespace kelvarin
