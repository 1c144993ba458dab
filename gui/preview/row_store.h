// The rows of one pin as they arrive: in memory as long as all previews together may keep them
// there, the others in a temporary file without a name, which nothing survives.
//
// Threads: append() on the thread of the request; value() and setListener() on the user-interface
// thread; the file is read on the queue's thread and on those that visit.
// Errors: errorText() says why rows could not be kept or read back.
#pragma once

#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <optional>

#include "gui/preview/background_queue.h"
#include "gui/preview/packed_rows.h"
#include "gui/preview/preview_rows.h"
#include "host/engine/spill_file.h"

namespace kelvarin {

// How many bytes all stores that share it may keep in memory. Threads: any.
class PreviewMemory {
 public:
  explicit PreviewMemory(std::size_t capacity) : m_capacity(capacity) {}
  bool tryReserve(std::size_t bytes);
  void release(std::size_t bytes) { m_used -= bytes; }

 private:
  const std::size_t m_capacity;
  std::atomic<std::size_t> m_used{0};
};

class RowStore final : public PreviewRows, public std::enable_shared_from_this<RowStore> {
 public:
  // `loader` outlives its use: whoever ends it drops the store's listener before.
  RowStore(Columns columns, std::shared_ptr<PreviewMemory> memory, BackgroundQueue& loader);
  ~RowStore() override;

  // False when they cannot be kept.
  bool append(const PinRows& rows);
  QString errorText() const;

  const Columns& columns() const override { return m_columns; }
  long long rowCount() const override { return m_rowCount; }
  PreviewValue value(long long row, int column) override;
  void setListener(std::function<void()> listener) override;
  bool visit(int column, long long first, long long end, const Visitor& visitor) const override;
  bool visit(int column, std::span<const std::uint32_t> rows,
             const Visitor& visitor) const override;

 private:
  using Bytes = std::vector<unsigned char>;
  struct Block {
    long long firstRow = 0;
    long long rowCount = 0;
    std::vector<std::size_t> columnStarts;
    Bytes bytes;            // empty: they are in the file
    long long offset = -1;  // in the file
  };
  using ColumnOfBlock = std::pair<const Block*, int>;
  // The bytes of one column of a block.
  using ColumnBytes = std::shared_ptr<const unsigned char>;

  std::shared_ptr<const Block> blockOf(long long row) const;
  ColumnBytes bytesInMemory(const std::shared_ptr<const Block>& block, int column) const;
  ColumnBytes readBytes(const std::shared_ptr<const Block>& block, int column) const;
  void want(const std::shared_ptr<const Block>& block, int column);
  void loadWanted();
  std::optional<std::pair<std::shared_ptr<const Block>, int>> nextWanted();
  void keepLoaded(const ColumnOfBlock& key, ColumnBytes bytes, std::size_t size);

  const Columns m_columns;
  const std::shared_ptr<PreviewMemory> m_memory;
  BackgroundQueue& m_loader;
  std::atomic<long long> m_rowCount{0};
  std::size_t m_reserved = 0;

  mutable std::mutex m_blocksMutex;
  std::vector<std::shared_ptr<const Block>> m_blocks;

  mutable std::mutex m_fileMutex;
  mutable SpillFile m_file;

  std::mutex m_loadedMutex;  // guards what follows
  std::map<ColumnOfBlock, ColumnBytes> m_loaded;
  std::deque<std::pair<ColumnOfBlock, std::size_t>> m_loadedInOrder;
  std::size_t m_loadedSize = 0;
  std::deque<std::pair<std::shared_ptr<const Block>, int>> m_wanted;  // the last one first
  bool m_isLoading = false;
  std::function<void()> m_listener;
};

}  // namespace kelvarin
