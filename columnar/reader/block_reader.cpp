#include "columnar/reader/block_reader.h"

#include <utility>

namespace kelvarin {

Result<std::unique_ptr<BlockReader>, std::string> BlockReader::open(
    const GelFile& file, const std::vector<std::size_t>& columns, WantsBlock wantsBlock) {
  auto units = BlockUnits::open(file, columns, std::move(wantsBlock));
  if (!units) {
    return Failure{units.error()};
  }
  return std::unique_ptr<BlockReader>(new BlockReader(std::move(*units)));
}

ReadEvent BlockReader::next() {
  if (m_isEnded) {
    return {};
  }
  while (m_nextEvent == m_events.size()) {
    if (!readUnit()) {
      m_isEnded = true;
      return m_units->end();
    }
  }
  ReadEvent event = std::move(m_events[m_nextEvent++]);
  m_isEnded = event.isLast();
  return event;
}

bool BlockReader::readUnit() {
  const std::unique_ptr<BlockUnit> unit = m_units->next();
  if (unit == nullptr) {
    return false;
  }
  unit->parse();
  m_events = std::move(unit->events());
  m_nextEvent = 0;
  return true;
}

}  // namespace kelvarin
