// Rows that a producer knows together before it hands them over one by one.
//
// A source that reads in batches offers each batch when it begins, and actions that compute ahead
// pass on what they have. A consumer may look at the numbers and keys of the rows to come and
// compute for many of them at once; it then takes every row in its turn. Where the whole chain
// above a consumer knows its rows ahead, the consumer may take many together instead, column by
// column. An offer is no promise of an end: the run may stop before its last row. Values stay where
// they are until a row behind the offer's last one is asked for. Threads: the engine thread.
#pragma once

#include <cstddef>
#include <cstdint>

class RowsInHand {
 public:
  virtual ~RowsInHand() = default;

  // The values of `count` rows from row `first` on, one behind the other: where they lie, or at
  // `room`, filled with them. Null where the column's values come row by row only, which is so for
  // all rows of a run. The column is one of numbers.
  virtual const double* numbers(int column, std::size_t first, std::size_t count,
                                double* room) const = 0;
  // The same of a column of keys.
  virtual const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                                    std::uint32_t* room) const = 0;
  // The same of a column of texts: where the bytes of each are.
  virtual const unsigned char* const* texts(int /*column*/, std::size_t /*first*/,
                                            std::size_t /*count*/,
                                            const unsigned char** /*room*/) const {
    return nullptr;
  }
};

// A part of an offer: the row that was taken last, and those that come after it.
struct RowsAhead {
  const RowsInHand* rows = nullptr;
  std::size_t first = 0;    // of all that are in hand
  std::size_t count = 0;    // 0: nothing is known ahead
  bool canBeTaken = false;  // together, see InputPin::take()

  const double* numbers(int column, std::size_t begin, std::size_t size, double* room) const {
    return rows->numbers(column, first + begin, size, room);
  }
  const std::uint32_t* keys(int column, std::size_t begin, std::size_t size,
                            std::uint32_t* room) const {
    return rows->keys(column, first + begin, size, room);
  }
  const unsigned char* const* texts(int column, std::size_t begin, std::size_t size,
                                    const unsigned char** room) const {
    return rows->texts(column, first + begin, size, room);
  }
};
