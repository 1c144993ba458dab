// Memory of the values that are made for the arrays of a stream.
//
// Whoever reads a stream bit by bit releases arrays soon, and the next ones get their memory.
// Whoever keeps all of them needs ever more of it, and the system takes its time to hand it out
// page by page. So beyond some megabytes of a column that are kept, its memory comes in large
// pages, some of which are kept for later streams. Each column has its own, so that what is left of
// a table keeps no other column's.
// Used by: exported_batch.cpp, exported_texts.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>

namespace kelvarin {

class ArrayMemory {
 public:
  // Unset bytes, aligned for every type, which may outlive this object.
  template <typename Value>
  std::shared_ptr<Value[]> allocate(std::size_t column, std::size_t count) {
    const std::shared_ptr<void> bytes = allocateBytes(column, count * sizeof(Value));
    return {bytes, static_cast<Value*>(bytes.get())};
  }
  // For an array, values that lie in memory of the heap, which `owner` keeps: they stay there where
  // little of the column is kept, else they are copied while they are in the processor's cache.
  template <typename Value>
  std::shared_ptr<const Value[]> keep(std::size_t column, std::shared_ptr<const void> owner,
                                      const Value* values, std::size_t count) {
    const std::shared_ptr<const void> bytes =
        keepBytes(column, std::move(owner), values, count * sizeof(Value));
    return {bytes, static_cast<const Value*>(bytes.get())};
  }

 private:
  using ByteCount = std::atomic<std::size_t>;
  class Piece;
  struct Column {
    std::shared_ptr<ByteCount> kept = std::make_shared<ByteCount>(0);
    std::shared_ptr<const Piece> piece;  // the last one
    std::size_t used = 0;                // of it
  };

  std::shared_ptr<void> allocateBytes(std::size_t column, std::size_t size);
  std::shared_ptr<const void> keepBytes(std::size_t column, std::shared_ptr<const void> owner,
                                        const void* bytes, std::size_t size);
  Column& columnAt(std::size_t column);
  static std::shared_ptr<void> smallBytes(const Column& column, std::size_t size);
  static std::shared_ptr<void> partOfPiece(Column& column, std::size_t size);

  std::mutex m_mutex;  // guards what follows
  std::deque<Column> m_columns;
};

}  // namespace kelvarin
