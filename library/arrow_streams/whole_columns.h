// The columns of a whole table, each in one piece of memory, which tasks fill in any order.
//
// A source may write values of fixed size straight there; what lies elsewhere is copied. Texts too
// long for their views go to pieces of their own, and packed texts wait until all before them are
// there (whole_table.h).
// Threads: begin() before all others, which any may call at the same time for different rows.
// Errors: std::bad_alloc.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/spare_memory.h"
#include "host/contract/batch_steps.h"
#include "host/contract/value_targets.h"
#include "host/tables/files/batch_reader.h"
#include "library/arrow_streams/exported_batch.h"
#include "library/arrow_streams/text_pieces.h"
#include "library/arrow_streams/text_views.h"

namespace kelvarin {

// Rows that are where they belong.
struct WrittenRows final : EncodedBatch {
  // Of texts that are packed, one behind another.
  struct PackedTexts {
    std::span<const std::uint32_t> allEnds() const {
      return {reinterpret_cast<const std::uint32_t*>(ends.get()), count};
    }
    std::size_t size() const { return count == 0 ? 0 : allEnds().back(); }

    SpareBytes bytes;
    SpareBytes ends;  // a number of 32 bits for each text
    std::size_t count = 0;
  };
  struct Column {
    NullBits nulls;
    PackedTexts packed;
  };

  std::size_t first = 0;
  std::size_t count = 0;
  std::vector<Column> columns;
};

class WholeColumns final : public ValueTargets, public BatchEncoder {
 public:
  // For at most so many rows.
  WholeColumns(std::size_t mostRows, TextFormat texts);

  // False: there is no address space for them, and so nowhere to write.
  bool begin(const TableColumns& columns);

  std::size_t mostRows() const { return m_mostRows; }
  unsigned char* at(std::size_t column, std::size_t size, std::int64_t first,
                    std::size_t rows) override;
  // WrittenRows; null where it is not known which rows they are, or there is no space for them.
  std::unique_ptr<EncodedBatch> encode(const RowBatch& batch) const override;
  std::unique_ptr<EncodedBatch> encodeAt(const RowBatch& batch,
                                         std::int64_t firstRow) const override;

  struct Column {
    MetaTypeColumn type = MetaTypeColumn::number;
    std::size_t valueSize = 0;                // of a view, too; 0: texts that are packed
    std::shared_ptr<unsigned char[]> values;  // of all rows
    std::unique_ptr<TextPieces> pieces;       // of texts with views
  };
  const std::vector<Column>& columns() const { return m_columns; }

 private:
  bool hasTarget(std::int64_t firstRow, std::size_t rows) const;
  // False: the texts take too much.
  bool store(const RowBatch& batch, std::size_t index, WrittenRows& written) const;

  const std::size_t m_mostRows;
  const TextFormat m_texts;
  std::vector<Column> m_columns;
  std::atomic<bool> m_hasBegun = false;
};

}  // namespace kelvarin
