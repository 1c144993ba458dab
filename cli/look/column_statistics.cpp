#include "cli/look/column_statistics.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/mixed_bits.h"
#include "columnar/codecs/text_hash.h"

namespace kelvarin {

namespace {

std::uint64_t hashOf(std::string_view text) {
  return hashOfText(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

std::uint64_t charactersOf(std::string_view text) {
  return static_cast<std::uint64_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

ColumnStatistics::ColumnStatistics(MetaTypeColumn type, std::size_t distinctBound)
    : m_type(type),
      m_values(distinctBound),
      m_block(fixedSizeOf(type) == 0 ? nullptr
                                     : std::make_unique_for_overwrite<double[]>(kBlockSize)) {}

void ColumnStatistics::add(const RowBatch& batch, std::size_t index) {
  const BatchColumn& column = batch.column(index);
  m_rows += batch.rowCount();
  switch (m_type) {
    case MetaTypeColumn::number:
      addNumbers(batch, column);
      break;
    case MetaTypeColumn::key:
      addKeys(batch, column);
      break;
    default:
      if (column.dictionary().isThere() &&
          m_values.canCountMore(column.dictionary().positions.size())) {
        addEntries(batch, column);
      } else {
        addTexts(batch, column);
      }
      break;
  }
}

void ColumnStatistics::addNumbers(const RowBatch& batch, const BatchColumn& column) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(column.numbers());
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    const double number = numberFromBytes(bytes + stored * sizeof(double));
    if (!std::isnan(number)) [[likely]] {
      addNumber(number);
    } else if (isNullNumber(number)) {
      ++m_nulls;
    } else {
      ++m_nans;
    }
  });
}

void ColumnStatistics::addKeys(const RowBatch& batch, const BatchColumn& column) {
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    const std::uint32_t key = keyFromBytes(column.value(stored));
    if (isNullKey(key)) {
      ++m_nulls;
    } else {
      addNumber(key);
    }
  });
}

void ColumnStatistics::endBlock() {
  const std::span<const double> numbers(m_block.get(), m_blockSize);
  if (numbers.empty()) {
    return;
  }
  const auto [low, high] = std::minmax_element(numbers.begin(), numbers.end());
  const bool isFirst = m_moments.count() == 0;
  m_low = isFirst ? *low : std::min(m_low, *low);
  m_high = isFirst ? *high : std::max(m_high, *high);
  m_moments.addBlock(numbers);
  m_quantiles.add(numbers);
  for (const double number : numbers) {
    const auto bits = std::bit_cast<std::uint64_t>(number);
    m_values.addNumber(mixedBits(bits), bits);
  }
  m_blockSize = 0;
}

void ColumnStatistics::addTexts(const RowBatch& batch, const BatchColumn& column) {
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    const unsigned char* value = column.text(stored);
    if (isNullText(value)) {
      ++m_nulls;
    } else {
      addText(textFromBytes(value), 1);
    }
  });
}

// Equal texts are looked at once.
void ColumnStatistics::addEntries(const RowBatch& batch, const BatchColumn& column) {
  const BatchDictionary& dictionary = column.dictionary();
  std::vector<std::uint32_t> rowsOfEntry(dictionary.positions.size());
  forEachRow(batch, 0, batch.rowCount(),
             [&](std::size_t, std::size_t stored) { ++rowsOfEntry[dictionary.codes[stored]]; });
  for (std::size_t entry = 0; entry < rowsOfEntry.size(); ++entry) {
    const unsigned char* value = column.textBytes() + dictionary.positions[entry];
    if (rowsOfEntry[entry] == 0) {
      continue;
    }
    if (isNullText(value)) {
      m_nulls += rowsOfEntry[entry];
    } else {
      addText(textFromBytes(value), rowsOfEntry[entry]);
    }
  }
}

void ColumnStatistics::addText(std::string_view text, std::uint64_t times) {
  m_values.addText(hashOf(text), text, times);
  if (text.size() > m_longest) {
    m_longest = std::max(m_longest, charactersOf(text));
  }
  if (!m_hasTexts) {
    m_hasTexts = true;
    m_lowText = text;
    m_highText = text;
  } else if (text < m_lowText) {
    m_lowText = text;
  } else if (text > m_highText) {
    m_highText = text;
  }
}

ColumnSummary ColumnStatistics::summary() {
  endBlock();
  // An estimate may go beyond what there is.
  const std::uint64_t values = m_rows - m_nulls - m_nans;
  ColumnSummary summary{.type = m_type,
                        .rows = m_rows,
                        .nulls = m_nulls,
                        .nans = m_nans,
                        .distinct = std::min(m_values.distinctCount(), values),
                        .isDistinctExact = m_values.isExact(),
                        .numbers = {},
                        .texts = {},
                        .mostFrequent = m_values.mostFrequent(fixedSizeOf(m_type) == 0)};
  if (m_hasTexts) {
    summary.texts = {m_lowText, m_highText, m_longest};
  }
  if (m_moments.count() > 0) {
    constexpr double kQuarters[] = {0.25, 0.5, 0.75};
    // Of few different numbers all are known, with how often they come.
    const std::vector<double> quarters = m_values.isExact()
                                             ? exactQuantiles(m_values.sortedNumbers(), kQuarters)
                                             : m_quantiles.quantiles(kQuarters);
    summary.numbers = {.low = m_low,
                       .high = m_high,
                       .mean = m_moments.mean(),
                       .deviation = m_moments.deviation(),
                       .quarters = {quarters[0], quarters[1], quarters[2]},
                       .areQuartersExact = m_values.isExact() || m_quantiles.isExact()};
  }
  return summary;
}

}  // namespace kelvarin
