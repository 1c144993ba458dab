// The result of reading a made file: rows by their number, and reported damage.
#pragma once

#include <map>
#include <optional>

#include <gtest/gtest.h>

#include "columnar/reader/block_reader.h"
#include "columnar/reader/tests/made_file.h"
#include "host/contract/batch_rows.h"
#include "host/testing/text_dictionaries.h"

namespace kelvarin::testing {

struct ReadResult {
  std::optional<OpenFailure::Problem> openProblem;
  std::map<std::uint64_t, Values> rows;
  // "corrupted 4-7", "truncated 8"
  std::vector<std::string> damage;
};

inline std::vector<Values> rowsOf(const RowBatchPointer& batch) {
  std::vector<Values> rows;
  for (const BatchColumn& column : batch->columns()) {
    EXPECT_TRUE(!column.dictionary().isThere() || matchesDictionary(column, batch->storedRows()));
  }
  std::vector<unsigned char*> values(batch->columnCount());
  BatchRows all;
  for (all.start(batch); all.rowsLeft() > 0;) {
    all.take(values.data());
    Values row;
    for (std::size_t i = 0; i < values.size(); ++i) {
      row.push_back(valueFromBytes(values[i], batch->column(i).type()));
    }
    rows.push_back(row);
  }
  return rows;
}

inline void readEvents(const GelFile& file, BlockReader& reader, ReadResult& result) {
  for (;;) {
    const ReadEvent event = reader.next();
    const std::string first = std::to_string(event.firstRow);
    switch (event.kind) {
      case ReadEvent::Kind::rows: {
        std::uint64_t row = event.firstRow;
        for (Values& values : rowsOf(event.batch)) {
          result.rows[row++] = std::move(values);
        }
        break;
      }
      case ReadEvent::Kind::corrupted:
        result.damage.push_back("corrupted " + first + "-" + std::to_string(event.lastRow));
        break;
      case ReadEvent::Kind::truncated:
        result.damage.push_back("truncated " + first);
        return;
      case ReadEvent::Kind::noMemory:
        result.damage.push_back("no memory in " + file.path());
        return;
      case ReadEvent::Kind::end:
        return;
    }
  }
}

// Columns in the order of the written rows, unless others are asked for.
inline ReadResult readRows(const MemoryFiles& files,
                           std::optional<std::vector<std::size_t>> columns = {},
                           const BlockReader::WantsBlock& wantsBlock = {},
                           const std::string& name = FileShape{}.name) {
  ReadResult result;
  const auto file = GelFile::open(name, IncompleteFiles::accept, files.opener());
  if (!file) {
    result.openProblem = file.error().problem;
    return result;
  }
  const GelFile& gelFile = **file;
  const auto chosen = columns.value_or(gelFile.columnsInRowOrder());
  auto reader = BlockReader::open(gelFile, chosen, wantsBlock);
  if (!reader) {
    result.damage.push_back("cannot open " + reader.error());
    return result;
  }
  readEvents(gelFile, **reader, result);
  return result;
}

}  // namespace kelvarin::testing
