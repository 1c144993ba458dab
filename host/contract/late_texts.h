// Texts of a column that are kept as what they were stored as, such as numbers of days or the bits
// of identifiers, until somebody needs them.
//
// A source may give such columns to a filter, which compares the texts as they are kept and has
// those of its rows made; everybody else gets columns with texts. Numbers that no expression needs
// may be kept so all the way to a sink that can write them as they are.
// Threads: any; read-only once they are made.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "base/export.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

class KELVARIN_CORE LateTexts {
 public:
  // Some of the texts.
  struct Rows {
    std::size_t first = 0;
    const std::uint32_t* selection = nullptr;  // counted from the first one; null: all texts
    std::size_t count = 0;
  };

  virtual ~LateTexts();
  // About as much memory as they take.
  virtual std::size_t byteCount() const = 0;
  // Appends texts of a column to an empty buffer and stores their positions, at their selected
  // indices. Returns the buffer, with its size in bytes.
  virtual std::shared_ptr<const unsigned char[]> make(const Rows& rows, std::uint32_t* positions,
                                                      std::size_t& size) const = 0;
  // Compares the bytes of each text with others: below 0 where it stands before, above 0 where it
  // stands behind. Null texts get what stands for them. `isEqualityOnly`: below may stand for
  // above, and above for below.
  virtual void compare(std::string_view bytes, bool isEqualityOnly, std::int8_t ofNull,
                       const Rows& rows, std::int8_t* orders) const = 0;
};

// Numbers of a column that are kept as another library has them.
class KELVARIN_CORE LateNumbers {
 public:
  virtual ~LateNumbers();
  // The column of `count` of them.
  virtual BatchColumn make(std::size_t first, std::size_t count) const = 0;
};

// The column with the texts or numbers of these rows; itself where they are not late. Stored rows
// that are not selected get any text.
KELVARIN_CORE BatchColumn columnWithTexts(const BatchColumn& column, std::size_t storedRows,
                                          const std::uint32_t* selection, std::size_t rowCount);
// The same for each column.
KELVARIN_CORE std::vector<BatchColumn> columnsWithTexts(const std::vector<BatchColumn>& columns,
                                                        std::size_t storedRows,
                                                        const std::uint32_t* selection,
                                                        std::size_t rowCount);
KELVARIN_CORE bool hasLateTexts(const RowBatch& batch);
// The batch itself where no column is late; null stays null.
KELVARIN_CORE RowBatchPointer withTexts(RowBatchPointer batch);

}  // namespace kelvarin
