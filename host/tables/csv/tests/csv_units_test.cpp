// A file that is cut into units of any size has the rows and errors of one that is not cut.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "host/tables/csv/csv_batch_reader.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/value.h"

namespace kelvarin {

using testing::TableFolder;
using testing::Values;

namespace {

struct Reading {
  std::vector<Values> rows;
  std::string error;
  std::string said;
  int units = 0;
  std::size_t rowCount = 0;
};

void addRows(const RowBatch& batch, std::vector<Values>& rows) {
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t storedRow) {
    Values& values = rows.emplace_back();
    for (const BatchColumn& column : batch.columns()) {
      values.push_back(testing::valueFromBytes(column.value(storedRow), column.type()));
    }
  });
}

Reading reading(const std::string& path, const CsvDialect& dialect, std::size_t unitSize,
                bool isCountOnly = false) {
  Reading result;
  CsvFileSettings settings;
  settings.dialect = dialect;
  CsvBatchReader reader(QString::fromStdString(path), settings, {true, {}}, unitSize);
  if (isCountOnly) {
    reader.countOnly();
  }
  const auto columns = reader.open([] { return false; });
  result.error = columns ? "" : columns.error().toStdString();
  while (result.error.empty()) {
    const std::unique_ptr<TableUnit> unit = reader.readUnit();
    if (unit == nullptr) {
      break;
    }
    ++result.units;
    unit->parse();
    reader.accept(*unit);
    result.error = unit->failure().toStdString();
    if (unit->batch() != nullptr) {
      result.rowCount += unit->batch()->rowCount();
      addRows(*unit->batch(), result.rows);
    }
  }
  result.said = (reader.notes() + reader.warnings()).join(u'\n').toStdString();
  return result;
}

void expectSameRowsInUnitsOf(std::size_t unitSize, const std::string& path, const std::string& text,
                             const CsvDialect& dialect, const Reading& whole) {
  const Reading cut = reading(path, dialect, unitSize);
  const std::string where = ::testing::PrintToString(text) + " by " + std::to_string(unitSize);
  ASSERT_EQ(cut.rows, whole.rows) << where;
  ASSERT_EQ(cut.error, whole.error) << where;
  ASSERT_EQ(cut.said, whole.said) << where;
}

// Texts in which quotes, separators and line ends meet often, also where words of bytes end.
std::string randomText(std::mt19937& random) {
  static constexpr std::string_view kPieces[] = {"a",    ",",  "\n",  "\r\n", "\"",
                                                 "\"\"", "\r", "bcd", "#",    "\n#"};
  static constexpr std::string_view kRows[] = {"x,y\n",
                                               "12.5,\"q,\n\"\"r\"\n",
                                               "\"\",\r\n",
                                               "#,\"\n",
                                               "a\"b,c\"\n",
                                               "\"a\"b\",\"\r\n\"\r\n",
                                               "\n",
                                               "p,q\r",
                                               "0123456789012345678901234567890123456789,z\n"};
  std::string text = "n,m\n";
  for (auto rows = random() % 8; rows > 0; --rows) {
    text += kRows[random() % std::size(kRows)];
  }
  for (auto pieces = random() % 8; pieces > 0; --pieces) {
    text += kPieces[random() % std::size(kPieces)];
  }
  return text;
}

}  // namespace

TEST(CsvUnits, ofAnySizeHaveTheSameRows) {
  const TableFolder folder;
  const std::string texts[] = {
      "a,b\n1,x\n2,\"y\nz\"\n\n3,\"\"\"\"\r\n4,\"a\"\"\r\n\"\"b\",\n",
      "\xEF\xBB\xBF\"a\na\",b\r\n1,\"l\nl\n\"\r\n\r\n2,x\r\n3,y",
      "a\n1\n\n\"\"\n\r\n2\n\n",                     // one column: an empty line is a value
      "a,b\r1,2\r\r3,\"4\r5\"\r",                    // CR alone
      "a,b\n1,2\rx,y\r\n\r3,\"\n\"\r4,5",            // every line end
      "a,b\n1,st\"ray\n2,\"q\"t\"ail\n3,\"x\n\"\n",  // quotes that are none
      "a,b\n1,x\n2,y\n3,z,surplus\n4,v\n",           // rows before a bad record
      "a,b\n1,x\n2,\"never\nclosed\n3,y\n",
      "a,b\n1,x\n2,\xFFy\n3,z\n",
      "a,b\n" + std::string(300, '\n') + "1," + std::string(200, 'x') + "\n2\n",
  };
  for (const std::string& text : texts) {
    const std::string path = folder.write("t.csv", text);
    const Reading whole = reading(path, {}, 1000);
    for (std::size_t size = 1; size <= std::min<std::size_t>(text.size() + 1, 150); ++size) {
      expectSameRowsInUnitsOf(size, path, text, {}, whole);
    }
  }
  EXPECT_EQ(reading(folder.write("t.csv", texts[6]), {}, 1000).rows.size(), 2u);
}

TEST(CsvUnits, ofAnySizeHaveTheSameRowsAtRandom) {
  const TableFolder folder;
  std::mt19937 random(23);
  for (int i = 0; i < 1500; ++i) {
    const std::string text = randomText(random);
    const std::string path = folder.write(std::to_string(i), text);
    CsvDialect dialect;
    dialect.hasQuote = i % 5 != 0;
    dialect.hasComments = i % 3 == 0;
    dialect.comment = '#';
    dialect.areShortRowsFilled = i % 4 == 0;
    dialect.areLongRowsCut = i % 7 == 0;
    const Reading whole = reading(path, dialect, 1000);
    for (int j = 0; j < 4; ++j) {
      expectSameRowsInUnitsOf(1 + random() % 90, path, text, dialect, whole);
    }
  }
}

// What is counted are the rows that are read, up to a record that is none. What their values are
// makes no difference.
TEST(CsvUnits, areCountedAsTheyAreRead) {
  const TableFolder folder;
  std::mt19937 random(29);
  int faults = 0;
  for (int i = 0; i < 1500; ++i) {
    const std::string path = folder.write(std::to_string(i), randomText(random));
    CsvDialect dialect;
    dialect.hasQuote = i % 5 != 0;
    dialect.hasComments = i % 3 == 0;
    dialect.comment = '#';
    dialect.areShortRowsFilled = i % 4 == 0;
    dialect.areLongRowsCut = i % 2 == 0;
    dialect.skippedLines = i % 11 == 0 ? 2 : 0;
    dialect.hasHeader = i % 13 != 0;
    const Reading read = reading(path, dialect, 1000);
    const Reading counted = reading(path, dialect, 1 + random() % 90, true);
    ASSERT_EQ(counted.rowCount, read.rowCount) << folder.read(std::to_string(i));
    ASSERT_EQ(counted.error, read.error);
    faults += read.error.empty() ? 0 : 1;
  }
  EXPECT_GT(faults, 100);
  const std::string wrong = folder.write("t.csv", "a\n1\n\xFF\n");
  EXPECT_NE(reading(wrong, {}, 1000).error, "");
  EXPECT_EQ(reading(wrong, {}, 1000, true).error, "");
  EXPECT_EQ(reading(wrong, {}, 1000, true).rowCount, 2u);
}

TEST(CsvUnits, bytesThatAreNoTextAreFoundWhereverTheyAre) {
  const TableFolder folder;
  for (std::size_t size = 1; size <= 40; ++size) {
    for (std::size_t at = 0; at < size; ++at) {
      std::string text(size, 'x');
      text[at] = '\xFF';
      const std::string path = folder.write(std::to_string(100 * size + at), "a,b\n1," + text);
      ASSERT_NE(reading(path, {}, 1000).error.find("line 2, column 'b': the text is not UTF-8"),
                std::string::npos)
          << size << ' ' << at;
    }
  }
}

// What is cut at every record can be parsed by many.
TEST(CsvUnits, endWithTheLastWholeRecord) {
  const TableFolder folder;
  std::string text = "a,b\n";
  for (int i = 0; i < 1000; ++i) {
    text += "\"x,\n\"\"\",st\"ray\n";
  }
  const std::string path = folder.write("t.csv", text);
  const Reading cut = reading(path, {}, 160);
  EXPECT_EQ(cut.rows.size(), 1000u);
  EXPECT_EQ(cut.error, "");
  EXPECT_LT(cut.units, 125);
}

}  // namespace kelvarin
