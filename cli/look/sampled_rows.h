// Some rows of a table, each as likely as any other, in their order.
//
// Every row gets a random number that its number and the seed decide; those with the smallest ones
// are kept. So the same seed takes the same rows, however they come.
// Used by: rows_command.cpp.
// Threads: one at a time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/contract/row_batch.h"

namespace kelvarin {

class SampledRows {
 public:
  SampledRows(std::size_t count, std::uint64_t seed) : m_count(count), m_seed(seed) {}

  void add(const RowBatch& batch);
  // All rows that were kept, as one batch; null where there are none. Ends the sampling.
  RowBatchPointer take(const std::vector<MetaTypeColumn>& types);

 private:
  struct Row {
    std::uint64_t random;
    std::uint64_t number;
    std::string values;  // the bytes of all columns, one after another
    bool operator<(const Row& other) const {
      return random != other.random ? random < other.random : number < other.number;
    }
  };

  void keep(Row row);

  const std::size_t m_count;
  const std::uint64_t m_seed;
  std::uint64_t m_nextRow = 0;
  std::vector<Row> m_rows;  // a heap once it is full, with the largest random number in front
};

}  // namespace kelvarin
