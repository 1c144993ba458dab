// One fetched block that is being decoded.
//
// Threads that need its rows share the work: each decodes the next column that nobody has begun.
// Used by block_unit.cpp and table_recovery.cpp.
// Threads: decode() on any, many at once; columns() after it.
// Errors: ReadStatus; throws only std::bad_alloc.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <vector>

#include "columnar/reader/block_columns.h"
#include "columnar/reader/block_decoder.h"

namespace kelvarin {

class BlockDecoding {
 public:
  // `decoder` outlives it.
  BlockDecoding(BlockDecoder& decoder, FetchedBlock block, TextForm form = TextForm::made);
  // `firstRow` is the expected number of the block's first row among those that are read, below 0
  // where these begin later in the block. Values of whole blocks may be decoded to `targets`.
  BlockDecoding(BlockDecoder& decoder, FetchedBlock block, TextForm form, std::int64_t firstRow,
                std::shared_ptr<ValueTargets> targets);

  const FetchedBlock& block() const { return m_block; }
  std::int64_t firstRow() const { return m_firstRow; }
  // About as much memory as it will take, beside the targets.
  std::size_t byteCount() const;

  // Returns when all columns are decoded, or damage has been found: the worst of it.
  [[nodiscard]] ReadStatus decode();
  // Decoded where decode() has returned ok.
  const BlockColumns& columns() const { return m_columns; }

 private:
  void decodeColumns();
  void decodeColumn(std::size_t index);
  ReadStatus worstStatus() const;

  BlockDecoder& m_decoder;
  FetchedBlock m_block;
  const TextForm m_form;
  const std::int64_t m_firstRow;
  const std::shared_ptr<ValueTargets> m_targets;
  BlockColumns m_columns;
  std::vector<ReadStatus> m_statuses;  // of the columns
  std::atomic<std::size_t> m_nextColumn = 0;
  std::atomic<bool> m_isDamaged = false;  // the columns after those that are begun do not matter
  std::atomic<bool> m_isOutOfMemory = false;

  std::mutex m_mutex;  // guards what follows
  std::condition_variable m_finished;
  std::size_t m_columnsDone = 0;
  std::optional<ReadStatus> m_status;
};

}  // namespace kelvarin
