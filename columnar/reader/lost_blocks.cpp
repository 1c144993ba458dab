#include "columnar/reader/lost_blocks.h"

#include <algorithm>

namespace kelvarin {

namespace {

// Chunks of columns of one of these kinds look alike; ascending and descending keys do, too.
struct Kind {
  GelType type;
  StorageCode storage;
};
constexpr Kind kKinds[] = {{GelType::key, StorageCode::key},
                           {GelType::key, StorageCode::ascendingKey},
                           {GelType::number, StorageCode::raw},
                           {GelType::text, StorageCode::raw}};

unsigned bitOf(const GelColumn& column) {
  switch (column.type) {
    case GelType::key:
      return column.storage == StorageCode::key ? 1 : 2;
    case GelType::number:
      return 4;
    case GelType::text:
      break;
  }
  return 8;
}

}  // namespace

LostBlocks::LostBlocks(const GelFile& file, std::vector<SideFile>& sides, const DescriptorGap& gap)
    : m_file(file), m_sides(sides) {
  for (std::size_t i = 0; i < sides.size(); ++i) {
    m_runs.push_back(findRuns(sides[i], gap.sides[i]));
    m_isAtTableEnd = !gap.sides[i].end.has_value();
  }
  countBlocks(gap);
  listBlocks();
}

LostBlocks::Runs LostBlocks::findRuns(SideFile& side, const DescriptorGap::Side& gap) {
  const std::uint64_t size = side.source->size();
  const std::uint64_t limit = std::min(gap.end.value_or(size), size);
  const bool hasBlockAtEnd = gap.end ? *gap.end == limit : m_file.isComplete();
  Runs runs;
  Run run{.chain = side.finder->follow(gap.begin, limit),
          .first = gap.isLastChunk ? 1u : 0u,
          .isCountedFromBegin = true};
  for (;;) {
    const bool isAtEnd = hasBlockAtEnd && run.chain.end == limit;
    const std::uint64_t searchFrom = run.chain.end + 1;
    if (!run.isCountedFromBegin) {
      const auto first = firstOfBlock(side, run.chain, isAtEnd);
      run.first = first.value_or(run.chain.size());
    }
    run.reachesEnd = isAtEnd && run.chain.size() >= run.first &&
                     (run.chain.size() - run.first) % side.columnCount == 0;
    const bool hasMore = run.chain.end < limit;
    runs.push_back(std::move(run));
    const auto next =
        hasMore ? side.finder->search(searchFrom, limit) : std::optional<std::uint64_t>();
    if (!next) {
      m_hasDamage |= hasMore && hasBlockAtEnd;
      m_hasUnfinished |= hasMore && !hasBlockAtEnd;
      return runs;
    }
    m_hasDamage = true;
    run = Run{.chain = side.finder->follow(*next, limit)};
  }
}

// Which chunk of a chain that was found after damage is the first one of a block.
std::optional<std::size_t> LostBlocks::firstOfBlock(SideFile& side, const ChunkChain& chain,
                                                    bool hasEnd) {
  constexpr std::size_t kRounds = 3;
  std::vector<unsigned> kinds;
  for (std::size_t i = 0; i < std::min(chain.size(), kRounds * side.columnCount); ++i) {
    kinds.push_back(kindsOf(side.finder->bytes(chain.begins[i], chain.endOf(i))));
  }
  std::optional<std::size_t> found;
  for (std::size_t first = 0; first < side.columnCount; ++first) {
    const std::size_t column = (side.columnCount - first) % side.columnCount;
    const bool isPossible =
        (!hasEnd || chain.size() % side.columnCount == first) && fits(kinds, side, column);
    if (isPossible && found) {
      return std::nullopt;
    }
    if (isPossible) {
      found = first;
    }
  }
  return found;
}

// Whether the chunks can belong to the columns from `column` on, an index in the set.
bool LostBlocks::fits(const std::vector<unsigned>& kinds, const SideFile& side,
                      std::size_t column) const {
  for (const unsigned kind : kinds) {
    const GelColumn& expected = m_file.column(side.firstColumn + column % side.columnCount);
    // A chunk that does not decode as any kind is damaged, or belongs to the last block.
    if (kind != 0 && (kind & bitOf(expected)) == 0) {
      return false;
    }
    ++column;
  }
  return true;
}

unsigned LostBlocks::kindsOf(Bytes chunk) {
  unsigned kinds = 0;
  for (const Kind& kind : kKinds) {
    GelColumn column;
    column.type = kind.type;
    column.storage = kind.storage;
    const ReadStatus status =
        decodeColumn(m_decoder, column, chunk, m_file.rowsInBlock(), m_scratch);
    kinds |= status == ReadStatus::ok ? bitOf(column) : 0;
  }
  return kinds;
}

// A set without damage shows the number of blocks; otherwise the header may have it.
void LostBlocks::countBlocks(const DescriptorGap& gap) {
  m_blockCount = gap.blockCount;
  bool isCounted = false;
  for (std::size_t i = 0; i < m_sides.size(); ++i) {
    const Run& run = m_runs[i].front();
    if (!run.isCountedFromBegin || !run.reachesEnd) {
      continue;
    }
    const std::uint64_t count = run.blockCount(m_sides[i].columnCount);
    if (isCounted && count != m_blockCount) {
      m_hasDamage = true;  // the side files are not of one table
      m_blockCount.reset();
      m_runs.assign(m_sides.size(), {});
      return;
    }
    m_blockCount = count;
    isCounted = true;
  }
}

void LostBlocks::listBlocks() {
  if (m_sides.size() == 1) {
    const std::size_t columns = m_sides[0].columnCount;
    for (const Run& run : m_runs[0]) {
      for (std::size_t i = 0; i < run.blockCount(columns); ++i) {
        m_firstChunks.push_back({&run, run.first + i * columns});
      }
    }
    return;
  }
  // Numbers that no set can reach are not tried: the header may claim any number of blocks.
  std::uint64_t maxAtBegin = 0;
  std::uint64_t maxAtEnd = 0;
  for (std::size_t i = 0; i < m_runs.size(); ++i) {
    if (!m_runs[i].empty()) {
      const std::size_t columns = m_sides[i].columnCount;
      maxAtBegin = std::max(maxAtBegin, m_runs[i].front().blockCount(columns));
      maxAtEnd = std::max(maxAtEnd, m_runs[i].back().blockCount(columns));
    }
  }
  const std::uint64_t end = m_blockCount.value_or(maxAtBegin);
  const std::uint64_t endOfBegin = std::min(end, maxAtBegin);
  listNumbers(0, endOfBegin);
  listNumbers(std::max(endOfBegin, end - std::min(end, maxAtEnd)), end);
}

void LostBlocks::listNumbers(std::uint64_t first, std::uint64_t end) {
  for (std::uint64_t number = first; number < end; ++number) {
    std::vector<FirstChunk> firstChunks;
    for (std::size_t i = 0; i < m_sides.size(); ++i) {
      if (const auto found = find(i, number)) {
        firstChunks.push_back(*found);
      }
    }
    if (firstChunks.size() == m_sides.size()) {
      m_firstChunks.insert(m_firstChunks.end(), firstChunks.begin(), firstChunks.end());
    } else {
      m_hasUnfinished |= !m_blockCount;
    }
  }
}

// The blocks of the first run are counted from its begin, those of the last run from its end.
std::optional<LostBlocks::FirstChunk> LostBlocks::find(std::size_t side,
                                                       std::uint64_t number) const {
  const Runs& runs = m_runs[side];
  const std::size_t columns = m_sides[side].columnCount;
  if (runs.empty()) {
    return std::nullopt;
  }
  if (number < runs.front().blockCount(columns)) {
    return FirstChunk{&runs.front(), runs.front().first + number * columns};
  }
  const std::uint64_t inLast = runs.back().blockCount(columns);
  if (!m_blockCount || !runs.back().reachesEnd || number + inLast < *m_blockCount) {
    return std::nullopt;
  }
  return FirstChunk{&runs.back(), runs.back().first + (number + inLast - *m_blockCount) * columns};
}

bool LostBlocks::next(Block& block) {
  if (m_nextFirstChunk == m_firstChunks.size()) {
    return false;
  }
  block.chunks.assign(m_file.columns().size(), {});
  for (std::size_t i = 0; i < m_sides.size(); ++i) {
    add(block, i, m_firstChunks[m_nextFirstChunk + i]);
  }
  m_nextFirstChunk += m_sides.size();
  block.isLast = m_isAtTableEnd && m_nextFirstChunk == m_firstChunks.size();
  return true;
}

void LostBlocks::add(Block& block, std::size_t side, const FirstChunk& first) const {
  const SideFile& file = m_sides[side];
  const ChunkChain& chain = first.run->chain;
  for (std::size_t i = 0; i < file.columnCount; ++i) {
    block.chunks[file.firstColumn + i] = {chain.begins[first.chunk + i],
                                          chain.endOf(first.chunk + i)};
  }
}

}  // namespace kelvarin
