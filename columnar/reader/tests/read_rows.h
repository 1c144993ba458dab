// The result of reading a made file: rows by their number, and reported damage.
#pragma once

#include <map>
#include <optional>

#include "columnar/reader/block_reader.h"
#include "columnar/reader/tests/made_file.h"

namespace kelvarin::testing {

struct ReadResult {
  std::optional<OpenFailure::Problem> openProblem;
  std::map<std::uint64_t, Values> rows;
  // "corrupted 4-7", "truncated 8"
  std::vector<std::string> damage;
};

inline std::vector<Values> rowsOf(DecodedBlock& block, const std::vector<MetaTypeColumn>& types) {
  std::vector<Values> rows;
  std::vector<unsigned char*> values(types.size());
  while (block.takeRow(values.data())) {
    Values row;
    for (std::size_t i = 0; i < types.size(); ++i) {
      row.push_back(valueFromBytes(values[i], types[i]));
    }
    rows.push_back(row);
  }
  return rows;
}

inline void readEvents(const GelFile& file, BlockReader& reader,
                       const std::vector<MetaTypeColumn>& types, ReadResult& result) {
  for (std::unique_ptr<DecodedBlock> spare;;) {
    ReadEvent event = reader.next(std::move(spare));
    const std::string first = std::to_string(event.firstRow);
    switch (event.kind) {
      case ReadEvent::Kind::block: {
        std::uint64_t row = event.firstRow;
        for (Values& values : rowsOf(*event.block, types)) {
          result.rows[row++] = std::move(values);
        }
        spare = std::move(event.block);
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
  std::vector<MetaTypeColumn> types;
  for (const std::size_t column : chosen) {
    types.push_back(gelFile.meta(column).type());
  }
  auto reader = BlockReader::open(gelFile, chosen, wantsBlock);
  if (!reader) {
    result.damage.push_back("cannot open " + reader.error());
    return result;
  }
  readEvents(gelFile, **reader, types, result);
  return result;
}

}  // namespace kelvarin::testing
