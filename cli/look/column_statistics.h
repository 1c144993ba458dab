// What is known of the values of one column, which come batch after batch in the order of the rows.
//
// The result depends on the values and their order alone, not on where batches end. Memory is
// bounded, whatever the values are.
// Used by: statistics_taker.h.
// Threads: one at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "cli/look/moments.h"
#include "cli/look/quantile_sketch.h"
#include "cli/look/value_counts.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

struct ColumnSummary {
  struct Numbers {
    double low = 0.0;
    double high = 0.0;
    double mean = 0.0;
    double deviation = 0.0;  // NaN of one number
    double quarters[3] = {};
    bool areQuartersExact = true;
  };
  struct Texts {
    std::string low;
    std::string high;
    std::uint64_t longest = 0;  // in characters
  };

  MetaTypeColumn type = MetaTypeColumn::text;
  std::uint64_t rows = 0;
  std::uint64_t nulls = 0;
  std::uint64_t nans = 0;
  std::uint64_t distinct = 0;  // without null and NaN
  bool isDistinctExact = true;
  std::optional<Numbers> numbers;  // of number and key columns that have some
  std::optional<Texts> texts;
  std::optional<ValueCounts::Frequent> mostFrequent;
};

class ColumnStatistics {
 public:
  ColumnStatistics(MetaTypeColumn type, std::size_t distinctBound);

  // The column's values in the rows of the batch.
  void add(const RowBatch& batch, std::size_t column);
  // When all have been added.
  ColumnSummary summary();

 private:
  static constexpr std::size_t kBlockSize = 1024;

  void addNumbers(const RowBatch& batch, const BatchColumn& column);
  void addKeys(const RowBatch& batch, const BatchColumn& column);
  void addTexts(const RowBatch& batch, const BatchColumn& column);
  void addEntries(const RowBatch& batch, const BatchColumn& column);
  void addText(std::string_view text, std::uint64_t times);
  void addNumber(double number) {
    m_block[m_blockSize++] = number == 0.0 ? 0.0 : number;  // zeros of either sign are one value
    if (m_blockSize == kBlockSize) {
      endBlock();
    }
  }
  void endBlock();

  const MetaTypeColumn m_type;
  std::uint64_t m_rows = 0;
  std::uint64_t m_nulls = 0;
  std::uint64_t m_nans = 0;
  ValueCounts m_values;

  // Of numbers:
  std::unique_ptr<double[]> m_block;  // that are still to be looked at
  std::size_t m_blockSize = 0;
  double m_low = 0.0;
  double m_high = 0.0;
  Moments m_moments;
  QuantileSketch m_quantiles;

  // Of texts:
  bool m_hasTexts = false;
  std::string m_lowText;
  std::string m_highText;
  std::uint64_t m_longest = 0;
};

}  // namespace kelvarin
