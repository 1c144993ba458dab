// Decodes the chunks of one file's fetched blocks.
//
// Some blocks are compared with their statistics, which shows chunks of another table.
// Used by block_decoding.cpp.
// Threads: any, many at once.
// Errors: ReadStatus; never logs, throws only std::bad_alloc.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "columnar/reader/column_decoding.h"
#include "columnar/reader/fetched_block.h"

namespace kelvarin {

class BlockDecoder {
 public:
  // `columns` are those that the blocks are fetched with. `file` outlives the decoder.
  BlockDecoder(const GelFile& file, const std::vector<std::size_t>& columns);

  // Of the columns.
  const std::vector<MetaTypeColumn>& types() const { return m_types; }
  // Decodes one column. After any status but ok, `values` are unspecified.
  [[nodiscard]] ReadStatus decode(const FetchedBlock& block, std::size_t index, TextForm form,
                                  DecodedColumn& values);

 private:
  bool isToCompare(const FetchedBlock& block, MetaTypeColumn type) const;
  std::unique_ptr<ChunkDecoder> takeDecoder();
  void giveBack(std::unique_ptr<ChunkDecoder> decoder);

  const GelFile& m_file;
  std::vector<MetaTypeColumn> m_types;
  std::mutex m_mutex;
  std::vector<std::unique_ptr<ChunkDecoder>> m_idleDecoders;  // under m_mutex
};

}  // namespace kelvarin
