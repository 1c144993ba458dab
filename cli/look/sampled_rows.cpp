#include "cli/look/sampled_rows.h"

#include <algorithm>

#include "base/mixed_bits.h"
#include "host/contract/batch_collector.h"

namespace kelvarin {

void SampledRows::add(const RowBatch& batch) {
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    const std::uint64_t number = m_nextRow++;
    const std::uint64_t random = mixedBits(mixedBits(m_seed) + number);
    if (m_rows.size() == m_count && (m_count == 0 || random >= m_rows.front().random)) {
      return;
    }
    Row row{random, number, {}};
    for (const BatchColumn& column : batch.columns()) {
      const unsigned char* value = column.value(stored);
      row.values.append(reinterpret_cast<const char*>(value), sizeOfValue(column.type(), value));
    }
    keep(std::move(row));
  });
}

void SampledRows::keep(Row row) {
  if (m_rows.size() == m_count) {
    std::pop_heap(m_rows.begin(), m_rows.end());
    m_rows.back() = std::move(row);
    std::push_heap(m_rows.begin(), m_rows.end());
    return;
  }
  m_rows.push_back(std::move(row));
  if (m_rows.size() == m_count) {
    std::make_heap(m_rows.begin(), m_rows.end());
  }
}

RowBatchPointer SampledRows::take(const std::vector<MetaTypeColumn>& types) {
  if (m_rows.empty()) {
    return nullptr;
  }
  std::sort(m_rows.begin(), m_rows.end(),
            [](const Row& a, const Row& b) { return a.number < b.number; });
  std::size_t bytes = 0;
  for (const Row& row : m_rows) {
    bytes += row.values.size();
  }
  BatchCollector collector(types, {.rows = m_rows.size(), .bytes = bytes + 1});
  std::vector<const unsigned char*> values(types.size());
  for (const Row& row : m_rows) {
    const auto* next = reinterpret_cast<const unsigned char*>(row.values.data());
    for (std::size_t i = 0; i < types.size(); ++i) {
      values[i] = next;
      next += sizeOfValue(types[i], next);
    }
    collector.append(values.data());
  }
  m_rows.clear();
  return collector.take();
}

}  // namespace kelvarin
