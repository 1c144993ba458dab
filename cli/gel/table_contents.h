// What the main file of a columnar table says about it: rows, blocks with their statistics, and
// damage.
//
// Used by `kelvarin gel info`, `gel stats` and the commands that need the rows of a file that has
// no end yet.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "cli/console.h"
#include "cli/value_json.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

struct ColumnDescription {
  bool hasNull = false;
  Json low;  // null: there is no value
  Json high;
  Json size;  // null: only the chunk itself shows it
};

struct BlockDescription {
  std::uint64_t row = 0;
  std::uint64_t rows = 0;
  std::vector<ColumnDescription> columns;  // in the order of the rows
};

struct TableContents {
  std::uint64_t rows = 0;
  std::uint64_t blockCount = 0;
  std::vector<BlockDescription> blocks;  // when they are asked for
  struct Rows {
    std::uint64_t first;
    std::uint64_t last;
  };
  std::vector<Rows> lostRows;
  std::optional<std::uint64_t> cutAtRow;

  bool isDamaged() const { return !lostRows.empty() || cutAtRow; }
};

// The blocks are described only when `withBlocks` is set. The error is the path of a side file that
// cannot be opened.
Result<TableContents, std::string> contentsOf(const GelFile& file, bool withBlocks);

// Logs what is lost.
void reportDamage(const GelFile& file, const TableContents& contents, Console& console);

// How a column is stored, for people.
const char* storageWord(StorageCode code);

}  // namespace kelvarin
