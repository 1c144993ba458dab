#include "host/contract/batch_collector.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

// Numbers and keys have memory for all rows of a batch, so that nothing is asked for each; the
// bytes of texts grow.
struct BatchCollector::Column {
  std::shared_ptr<unsigned char[]> values;  // numbers or keys
  std::shared_ptr<std::vector<unsigned char>> texts;
  std::shared_ptr<std::uint32_t[]> positions;  // of texts
};

BatchCollector::BatchCollector(std::vector<MetaTypeColumn> types, BatchSize size)
    : m_types(std::move(types)), m_size(size), m_columns(m_types.size()) {
  std::size_t fixed = 1;
  for (const MetaTypeColumn type : m_types) {
    fixed += fixedSizeOf(type) != 0 ? fixedSizeOf(type) : sizeof(std::uint32_t);
  }
  m_size.rows = std::clamp<std::size_t>(4 * m_size.bytes / fixed, 1, m_size.rows);
}

BatchCollector::~BatchCollector() = default;
BatchCollector::BatchCollector(BatchCollector&&) noexcept = default;
BatchCollector& BatchCollector::operator=(BatchCollector&&) noexcept = default;

void BatchCollector::begin() {
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    const std::size_t fixed = fixedSizeOf(m_types[i]);
    if (fixed != 0) {
      m_columns[i].values = std::make_shared_for_overwrite<unsigned char[]>(fixed * m_size.rows);
    } else {
      m_columns[i].texts = std::make_shared<std::vector<unsigned char>>();
      m_columns[i].texts->reserve(m_size.bytes / m_types.size());
      m_columns[i].positions = std::make_shared_for_overwrite<std::uint32_t[]>(m_size.rows);
    }
  }
}

void BatchCollector::append(const unsigned char* const* values) {
  static constexpr unsigned char kMissing[8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  if (m_rowCount == 0) {
    begin();
  }
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    const unsigned char* value = values[i] == nullptr ? kMissing : values[i];
    Column& column = m_columns[i];
    switch (m_types[i]) {
      case MetaTypeColumn::number:
        std::memcpy(column.values.get() + m_rowCount * sizeof(double), value, sizeof(double));
        m_byteCount += sizeof(double);
        break;
      case MetaTypeColumn::key:
        std::memcpy(column.values.get() + m_rowCount * sizeof(std::uint32_t), value,
                    sizeof(std::uint32_t));
        m_byteCount += sizeof(std::uint32_t);
        break;
      default: {
        const std::size_t size = sizeOfValue(m_types[i], value);
        column.positions[m_rowCount] = static_cast<std::uint32_t>(column.texts->size());
        column.texts->insert(column.texts->end(), value, value + size);
        m_byteCount += size + sizeof(std::uint32_t);
      }
    }
  }
  ++m_rowCount;
}

RowBatchPointer BatchCollector::take() {
  if (m_rowCount == 0) {
    begin();
  }
  std::vector<BatchColumn> columns;
  columns.reserve(m_types.size());
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    Column& column = m_columns[i];
    const auto* values = column.values.get();
    switch (m_types[i]) {
      case MetaTypeColumn::number:
        columns.push_back(BatchColumn::ofNumbers(std::move(column.values),
                                                 reinterpret_cast<const double*>(values)));
        break;
      case MetaTypeColumn::key:
        columns.push_back(BatchColumn::ofKeys(std::move(column.values),
                                              reinterpret_cast<const std::uint32_t*>(values)));
        break;
      default: {
        // One owner for both parts of the column.
        auto owner = std::make_shared<Column>(std::move(column));
        columns.push_back(BatchColumn::ofTexts(m_types[i], owner, owner->texts->data(),
                                               owner->positions.get(), owner->texts->size()));
      }
    }
    column = {};
  }
  const std::size_t rowCount = m_rowCount;
  m_rowCount = 0;
  m_byteCount = 0;
  return std::make_shared<RowBatch>(rowCount, std::move(columns));
}

std::vector<MetaTypeColumn> typesOf(const OneRow& columns) {
  std::vector<MetaTypeColumn> types;
  types.reserve(static_cast<std::size_t>(columns.sz()));
  for (int i = 0; i < columns.sz(); ++i) {
    types.push_back(columns.getMetaType(i));
  }
  return types;
}

}  // namespace kelvarin
