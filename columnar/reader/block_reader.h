// Reads the rows of a columnar file, batch after batch, on the caller's thread.
//
// Used by `kelvarin gel`.
// Errors: events; never logs, never throws.
#pragma once

#include "columnar/reader/block_units.h"

namespace kelvarin {

class BlockReader {
 public:
  using WantsBlock = BlockUnits::WantsBlock;

  // See BlockUnits::open().
  static Result<std::unique_ptr<BlockReader>, std::string> open(
      const GelFile& file, const std::vector<std::size_t>& columns, WantsBlock wantsBlock = {});

  // After the last event the events are `end`.
  ReadEvent next();

 private:
  explicit BlockReader(std::unique_ptr<BlockUnits> units) : m_units(std::move(units)) {}

  bool readUnit();

  const std::unique_ptr<BlockUnits> m_units;
  std::vector<ReadEvent> m_events;  // of the current unit
  std::size_t m_nextEvent = 0;
  bool m_isEnded = false;
};

}  // namespace kelvarin
