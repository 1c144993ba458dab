#include "host/tables/csv/csv_indexer.h"

#include <random>

#include <gtest/gtest.h>

#include "host/tables/csv/csv_scanner.h"

namespace kelvarin {

namespace {

using Fields = std::vector<std::string>;

struct Records {
  std::vector<Fields> rows;
  std::vector<long long> lines;
  bool hasFault = false;
};

// What the scanner makes of a whole text, up to the first record that is none.
Records scanned(const std::string& text, const CsvDialect& dialect, std::size_t columnCount) {
  CsvScanner scanner(dialect, columnCount != 1, 1);
  Records records;
  const char* next = text.data();
  const char* end = next + text.size();
  while (scanner.scan(next, end) || scanner.finish()) {
    const CsvRecord& record = scanner.record();
    Fields fields = record.fields;
    const bool isFitted =
        fields.size() < columnCount ? dialect.areShortRowsFilled : dialect.areLongRowsCut;
    if (isFitted) {
      fields.resize(columnCount, "(missing)");
    }
    if (record.isQuoteOpen || fields.size() != columnCount) {
      records.hasFault = true;
      break;
    }
    records.rows.push_back(std::move(fields));
    records.lines.push_back(record.line);
  }
  return records;
}

Records indexed(CsvBlock& block, const std::string& text, const CsvDialect& dialect,
                std::size_t columnCount, bool isEnd, CsvIndex& index) {
  block.reserve(text.size() + CsvIndexer::spareBytes(dialect, columnCount), 0);
  std::copy(text.begin(), text.end(), block.bytes());
  index = CsvIndexer(dialect, columnCount).index(block, text.size(), isEnd);
  block.setRows(index.rowCount, columnCount);
  Records records;
  records.hasFault = index.hasFault;
  for (long long row = 0; row < index.rowCount; ++row) {
    Fields& fields = records.rows.emplace_back();
    records.lines.push_back(1 + block.linesBefore(row));
    for (std::size_t i = 0; i < columnCount; ++i) {
      const CsvField field = block.field(row, i);
      if (field.isQuoted && field.bytes.empty()) {
        fields.emplace_back("(missing)");
      } else if (field.isQuoted) {
        appendQuotedText(field.bytes, dialect.quote, fields.emplace_back());
      } else {
        fields.emplace_back(field.bytes);
      }
    }
  }
  return records;
}

// Texts in which quotes, separators and line ends meet often, also where words of bytes end.
std::string randomText(std::mt19937& random) {
  static constexpr std::string_view kPieces[] = {"a",    ",",  "\n",  "\r\n", "\"",
                                                 "\"\"", "\r", "bcd", "#"};
  static constexpr std::string_view kRows[] = {"x,y\n",
                                               "12.5,\"q,\n\"\"r\"\n",
                                               "\"\",\r\n",
                                               "#,\"\n",
                                               "p,q,r,s\n",
                                               "t\n",
                                               "0123456789012345678901234567890123456789,z\n"};
  std::string text;
  for (auto rows = random() % 6; rows > 0; --rows) {
    text += kRows[random() % std::size(kRows)];
  }
  for (auto pieces = random() % 12; pieces > 0; --pieces) {
    text += kPieces[random() % std::size(kPieces)];
  }
  return text;
}

CsvDialect randomDialect(std::mt19937& random) {
  CsvDialect dialect;
  dialect.hasQuote = random() % 5 != 0;
  dialect.hasComments = random() % 3 == 0;
  dialect.comment = '#';
  dialect.areShortRowsFilled = random() % 3 == 0;
  dialect.areLongRowsCut = random() % 3 == 0;
  return dialect;
}

}  // namespace

TEST(CsvIndexer, agreesWithTheScanner) {
  std::mt19937 random(17);
  CsvBlock block;
  for (int i = 0; i < 60000; ++i) {
    const std::string text = randomText(random);
    const CsvDialect dialect = randomDialect(random);
    const std::size_t columnCount = 1 + random() % 3;
    const Records expected = scanned(text, dialect, columnCount);
    CsvIndex index;
    const Records found = indexed(block, text, dialect, columnCount, true, index);
    ASSERT_EQ(found.rows, expected.rows) << ::testing::PrintToString(text);
    ASSERT_EQ(found.lines, expected.lines) << ::testing::PrintToString(text);
    ASSERT_EQ(found.hasFault, expected.hasFault) << ::testing::PrintToString(text);

    // Cut anywhere, the records before the cut are the same, and the rest can follow.
    const std::string start = text.substr(0, random() % (text.size() + 1));
    const Records first = indexed(block, start, dialect, columnCount, false, index);
    ASSERT_LE(first.rows.size(), expected.rows.size());
    ASSERT_FALSE(first.hasFault && !expected.hasFault) << ::testing::PrintToString(text);
    Records all = first;
    const Records rest =
        indexed(block, text.substr(index.bytesUsed), dialect, columnCount, true, index);
    all.rows.insert(all.rows.end(), rest.rows.begin(), rest.rows.end());
    ASSERT_EQ(all.rows, expected.rows)
        << ::testing::PrintToString(text) << " cut at " << start.size();
  }
}

TEST(CsvIndexer, countsLineEndsOfAnyKind) {
  const std::string text = "a\r\n\n\rb\r";
  EXPECT_EQ(countLineEnds(text.data(), text.size()), 4);
  EXPECT_EQ(countLineEnds(text.data(), 0), 0);
}

}  // namespace kelvarin
