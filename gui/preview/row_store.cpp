#include "gui/preview/row_store.h"

#include <algorithm>
#include <utility>

namespace kelvarin {

namespace {

// What was read back for the screen.
constexpr std::size_t kLoadedCapacity = 16 << 20;
// Enough for a screen; what was wanted before it has been scrolled away.
constexpr std::size_t kWantedCapacity = 512;

}  // namespace

bool PreviewMemory::tryReserve(std::size_t bytes) {
  if (m_used.fetch_add(bytes) + bytes <= m_capacity) {
    return true;
  }
  m_used -= bytes;
  return false;
}

RowStore::RowStore(Columns columns, std::shared_ptr<PreviewMemory> memory, BackgroundQueue& loader)
    : m_columns(std::move(columns)),
      m_memory(std::move(memory)),
      m_loader(loader),
      m_file(QString()) {}

RowStore::~RowStore() {
  m_memory->release(m_reserved);
}

bool RowStore::append(const PinRows& rows) {
  PackedRows packed = packRows(rows);
  auto block = std::make_shared<Block>();
  block->firstRow = m_rowCount;
  block->rowCount = static_cast<long long>(rows.rowCount());
  block->columnStarts = std::move(packed.starts);
  if (m_memory->tryReserve(packed.bytes.size())) {
    m_reserved += packed.bytes.size();
    block->bytes = std::move(packed.bytes);
  } else {
    const std::lock_guard lock(m_fileMutex);
    if (!m_file.append(packed.bytes.data(), packed.bytes.size(), &block->offset)) {
      return false;
    }
  }
  const std::lock_guard lock(m_blocksMutex);
  m_rowCount += block->rowCount;
  m_blocks.push_back(std::move(block));
  return true;
}

QString RowStore::errorText() const {
  const std::lock_guard lock(m_fileMutex);
  return m_file.errorText();
}

PreviewValue RowStore::value(long long row, int column) {
  const std::shared_ptr<const Block> block = blockOf(row);
  ColumnBytes bytes = bytesInMemory(block, column);
  if (bytes == nullptr) {
    const std::lock_guard lock(m_loadedMutex);
    const auto found = m_loaded.find({block.get(), column});
    if (found == m_loaded.end()) {
      want(block, column);
      return {false, nullptr, nullptr};
    }
    bytes = found->second;
  }
  const auto index = static_cast<std::size_t>(row - block->firstRow);
  const MetaTypeColumn type = m_columns[static_cast<std::size_t>(column)].meta;
  return {true, packedValue(type, bytes.get(), index), std::move(bytes)};
}

void RowStore::setListener(std::function<void()> listener) {
  const std::lock_guard lock(m_loadedMutex);
  m_listener = std::move(listener);
}

bool RowStore::visit(int column, long long first, long long end, const Visitor& visitor) const {
  const MetaTypeColumn type = m_columns[static_cast<std::size_t>(column)].meta;
  for (long long row = first; row < end;) {
    const std::shared_ptr<const Block> block = blockOf(row);
    const ColumnBytes bytes = readBytes(block, column);
    if (bytes == nullptr) {
      return false;
    }
    const long long stop = std::min(end, block->firstRow + block->rowCount);
    for (; row < stop; ++row) {
      const auto index = static_cast<std::size_t>(row - block->firstRow);
      if (!visitor(row, packedValue(type, bytes.get(), index))) {
        return false;
      }
    }
  }
  return true;
}

bool RowStore::visit(int column, std::span<const std::uint32_t> rows,
                     const Visitor& visitor) const {
  const MetaTypeColumn type = m_columns[static_cast<std::size_t>(column)].meta;
  std::shared_ptr<const Block> block;
  ColumnBytes bytes;
  for (const std::uint32_t row : rows) {
    if (block == nullptr || row < block->firstRow || row >= block->firstRow + block->rowCount) {
      block = blockOf(row);
      bytes = readBytes(block, column);
    }
    if (bytes == nullptr) {
      return false;
    }
    const auto index = static_cast<std::size_t>(row - block->firstRow);
    if (!visitor(row, packedValue(type, bytes.get(), index))) {
      return false;
    }
  }
  return true;
}

std::shared_ptr<const RowStore::Block> RowStore::blockOf(long long row) const {
  const std::lock_guard lock(m_blocksMutex);
  const auto after = std::upper_bound(
      m_blocks.begin(), m_blocks.end(), row,
      [](long long wanted, const auto& block) { return wanted < block->firstRow; });
  return *(after - 1);
}

// Null when they are in the file. They share the life of the block.
RowStore::ColumnBytes RowStore::bytesInMemory(const std::shared_ptr<const Block>& block,
                                              int column) const {
  if (block->offset >= 0) {
    return nullptr;
  }
  return {block, block->bytes.data() + block->columnStarts[static_cast<std::size_t>(column)]};
}

RowStore::ColumnBytes RowStore::readBytes(const std::shared_ptr<const Block>& block,
                                          int column) const {
  if (ColumnBytes bytes = bytesInMemory(block, column); bytes != nullptr) {
    return bytes;
  }
  const auto index = static_cast<std::size_t>(column);
  const std::size_t start = block->columnStarts[index];
  auto bytes = std::make_shared<Bytes>(block->columnStarts[index + 1] - start);
  const std::lock_guard lock(m_fileMutex);
  if (!m_file.read(block->offset + static_cast<long long>(start), bytes->data(), bytes->size())) {
    return nullptr;
  }
  return {bytes, bytes->data()};
}

void RowStore::want(const std::shared_ptr<const Block>& block, int column) {
  const auto isSame = [&](const auto& wanted) {
    return wanted.first == block && wanted.second == column;
  };
  if (std::any_of(m_wanted.begin(), m_wanted.end(), isSame)) {
    return;
  }
  m_wanted.emplace_front(block, column);
  if (m_wanted.size() > kWantedCapacity) {
    m_wanted.pop_back();
  }
  if (!m_isLoading) {
    m_isLoading = true;
    m_loader.add([weak = weak_from_this()](const StopFlag&) -> BackgroundQueue::Report {
      if (const auto store = weak.lock(); store != nullptr) {
        store->loadWanted();
      }
      return nullptr;
    });
  }
}

// Where nothing can be read, the listener is not called: it would ask again at once.
void RowStore::loadWanted() {
  bool hasLoaded = false;
  while (const auto wanted = nextWanted()) {
    const auto& [block, column] = *wanted;
    const auto index = static_cast<std::size_t>(column);
    ColumnBytes bytes = readBytes(block, column);
    if (bytes != nullptr) {
      hasLoaded = true;
      keepLoaded({block.get(), column}, std::move(bytes),
                 block->columnStarts[index + 1] - block->columnStarts[index]);
    }
  }
  const std::lock_guard lock(m_loadedMutex);
  if (hasLoaded && m_listener != nullptr) {
    m_listener();
  }
}

std::optional<std::pair<std::shared_ptr<const RowStore::Block>, int>> RowStore::nextWanted() {
  const std::lock_guard lock(m_loadedMutex);
  if (m_wanted.empty() || m_listener == nullptr) {
    m_wanted.clear();
    m_isLoading = false;
    return std::nullopt;
  }
  auto wanted = m_wanted.front();
  m_wanted.pop_front();
  return wanted;
}

void RowStore::keepLoaded(const ColumnOfBlock& key, ColumnBytes bytes, std::size_t size) {
  const std::lock_guard lock(m_loadedMutex);
  m_loaded[key] = std::move(bytes);
  m_loadedInOrder.emplace_back(key, size);
  m_loadedSize += size;
  while (m_loadedSize > kLoadedCapacity && m_loadedInOrder.size() > 1) {
    m_loaded.erase(m_loadedInOrder.front().first);
    m_loadedSize -= m_loadedInOrder.front().second;
    m_loadedInOrder.pop_front();
  }
}

}  // namespace kelvarin
