// Rows that a producer knows together before it publishes them one by one.
//
// A source that reads in batches offers each batch when it begins, and actions that compute ahead
// pass on what they have. A consumer may look at the numbers and keys of the rows to come and
// compute for many of them at once; it then takes every row in its turn. Where the whole chain
// above a consumer knows its rows ahead, the consumer may take many together instead, column by
// column. An offer is no promise of an end: the run may stop before its last row. Values stay where
// they are until a row after the offer's last one is asked for.
// Threads: the engine thread.
#pragma once

#include <cstddef>
#include <cstdint>

class RowsInHand {
 public:
  virtual ~RowsInHand() = default;

  // The address of the contiguous values of `count` rows from row `first` on; `buffer` is filled
  // and returned where they are not contiguous yet. Null where the column's values come row by row
  // only, which is so for all rows of a run. The column is one of numbers.
  virtual const double* numbers(int column, std::size_t first, std::size_t count,
                                double* buffer) const = 0;
  // The same for a column of keys.
  virtual const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                                    std::uint32_t* buffer) const = 0;
  // The same for a column of texts, as the addresses of their bytes.
  virtual const unsigned char* const* texts(int /*column*/, std::size_t /*first*/,
                                            std::size_t /*count*/,
                                            const unsigned char** /*buffer*/) const {
    return nullptr;
  }
};

// A part of an offer: the row that was taken last, and those that come after it.
struct RowsAhead {
  const RowsInHand* rows = nullptr;
  std::size_t first = 0;    // the index among all rows of the offer
  std::size_t count = 0;    // 0: nothing is known ahead
  bool canBeTaken = false;  // together, see InputPin::take()

  const double* numbers(int column, std::size_t begin, std::size_t size, double* buffer) const {
    return rows->numbers(column, first + begin, size, buffer);
  }
  const std::uint32_t* keys(int column, std::size_t begin, std::size_t size,
                            std::uint32_t* buffer) const {
    return rows->keys(column, first + begin, size, buffer);
  }
  const unsigned char* const* texts(int column, std::size_t begin, std::size_t size,
                                    const unsigned char** buffer) const {
    return rows->texts(column, first + begin, size, buffer);
  }
};
