// Reads a columnar file by units, which are decoded on any thread.
//
// Used by block_reader.h and by the reading action.
// Threads: next() on one at a time. Units are parsed on any thread while this object lives.
// Errors: events; never logs, never throws.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "columnar/reader/block_unit.h"
#include "columnar/reader/chunk_reader.h"
#include "host/contract/partial_source.h"

namespace kelvarin {

class BlockUnits {
 public:
  // False: the block is skipped without being read. Asked by next().
  using WantsBlock = std::function<bool(const GelFile& file, const BlockInfo& block)>;

  // `columns` are indices of GelFile::columns(), in the order of the output rows. The error is the
  // path of a side file that cannot be opened. `file` outlives the object. Damage outside of `part`
  // is no event.
  static Result<std::unique_ptr<BlockUnits>, std::string> open(
      const GelFile& file, const std::vector<std::size_t>& columns, WantsBlock wantsBlock = {},
      const TablePart& part = {});

  // Null at the end. `form` is that of texts in blocks that it begins.
  std::unique_ptr<BlockUnit> next(TextForm form = TextForm::made);
  // How the file ends, when next() has returned null: a last event.
  const ReadEvent& end() const { return m_end; }
  // How many units a full block makes.
  std::size_t unitsOfBlock() const;

 private:
  BlockUnits(const GelFile& file, const std::vector<std::size_t>& columns,
             std::unique_ptr<ChunkReader> chunks, WantsBlock wantsBlock, const TablePart& part);

  void fill(BlockUnit& unit, TextForm form);
  void takeBlock(BlockUnit& unit, const BlockInfo& block, TextForm form);
  void addBlock(BlockUnit& unit, const BlockInfo& block, TextForm form);
  std::shared_ptr<BlockDecoding> begun(const BlockInfo& block, TextForm form);
  void addLostRows(BlockUnit& unit) const;
  void endWith(const ReadEvent& event);

  const GelFile& m_file;
  const std::unique_ptr<ChunkReader> m_chunks;
  const WantsBlock m_wantsBlock;
  const std::shared_ptr<const TablePart> m_part;
  BlockDecoder m_decoder;
  BlockScan m_scan;
  std::int64_t m_rowsBefore = 0;  // of the part, in the blocks that were begun
  BlockUnit::Part m_nextPart;     // of a large block; none where it has no block
  bool m_isEnded = false;
  ReadEvent m_end;
};

}  // namespace kelvarin
