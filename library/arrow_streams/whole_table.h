// A table whose rows leave together: as one array, of which each column lies in one piece.
//
// There are several where rows are missing in between, or texts need more offsets.
// Used by: the sink of streams.
// Threads: one at a time; tasks fill the columns meanwhile.
// Errors: std::bad_alloc.
#pragma once

#include <memory>
#include <vector>

#include "library/arrow_streams/whole_columns.h"

namespace kelvarin {

class WholeTable {
 public:
  WholeTable(std::shared_ptr<WholeColumns> columns, TextFormat texts);

  // Before the first batch.
  void begin(const TableColumns& columns);
  const BatchEncoder& encoder() const { return *m_columns; }
  // Takes the next rows, which the encoder has written or nobody has. Returns the arrays that are
  // complete.
  std::vector<OwnedArray> take(const RowBatch& batch, std::unique_ptr<EncodedBatch> encoded);
  // The last ones.
  std::vector<OwnedArray> end();

 private:
  // Packed texts of one column in the rows from the first on.
  struct PackedTexts {
    std::shared_ptr<unsigned char[]> offsets;
    std::shared_ptr<unsigned char[]> bytes;
    std::size_t size = 0;
    std::size_t capacity = 0;
  };
  // What of a column is known of the rows from the first on.
  struct Part {
    NullBits nulls;
    PackedTexts packed;
  };

  void append(const WrittenRows& written);
  void appendPacked(const WrittenRows& written, PackedTexts& all,
                    const WrittenRows::PackedTexts& texts) const;
  void grow(PackedTexts& texts, std::size_t least, const WrittenRows& written) const;
  bool hasSpaceForTexts(const WrittenRows& written) const;
  void finishArray(std::vector<OwnedArray>& arrays);
  std::unique_ptr<ExportedColumn> exported(std::size_t index);

  const std::shared_ptr<WholeColumns> m_columns;
  const TextFormat m_texts;
  ArrayMemory m_memory;       // of rows that leave by themselves
  std::vector<Part> m_parts;  // by column
  std::size_t m_first = 0;    // of the rows whose array is not complete
  std::size_t m_end = 0;
  bool m_isWhole = true;  // no rows are missing, nor have left
};

}  // namespace kelvarin
