#include "host/testing/fake_input_pin.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace kelvarin::testing {

namespace {
constexpr unsigned char kSpoilt = 0xA5;
}

FakeInputPin::FakeInputPin(const PinOutMetaData& columns) : m_metaData(columns) {}

void FakeInputPin::push(const Values& values, long long times) {
  if (static_cast<int>(values.size()) != m_metaData.columnCount()) {
    throw std::invalid_argument("a row of another number of values than the pin's columns");
  }
  TypedRow row;
  row.times = times;
  row.timesLeft = times;
  m_rowCount += static_cast<std::size_t>(times);
  for (std::size_t i = 0; i < values.size(); ++i) {
    row.offsets.push_back(row.bytes.size());
    appendBytes(row.bytes, values[i], m_metaData.metas()[static_cast<qsizetype>(i)].type());
  }
  m_largestRow = std::max(m_largestRow, row.bytes.size());
  m_rows.push_back(std::move(row));
}

const OneRow* FakeInputPin::next() {
  std::swap(m_bytes[0], m_bytes[1]);
  std::fill(m_bytes[1].begin(), m_bytes[1].end(), kSpoilt);
  while (m_current < m_rows.size() && m_rows[m_current].timesLeft == 0) {
    ++m_current;
  }
  if (m_current == m_rows.size()) {
    return nullptr;
  }
  TypedRow& row = m_rows[m_current];
  --row.timesLeft;
  ++m_rowsPulled;
  m_bytes[0].resize(m_largestRow);
  std::copy(row.bytes.begin(), row.bytes.end(), m_bytes[0].begin());
  unsigned char** columns = m_row.getAllColForWrite();
  for (std::size_t i = 0; i < row.offsets.size(); ++i) {
    columns[i] = m_bytes[0].data() + row.offsets[i];
  }
  return &m_row;
}

RowsAhead FakeInputPin::rowsAhead() const {
  const auto current = static_cast<std::size_t>(m_rowsPulled - 1);
  return m_isOffering ? RowsAhead{this, current, m_rowCount - current} : RowsAhead{};
}

template <typename Value>
const Value* FakeInputPin::valuesAhead(int column, std::size_t first, std::size_t count,
                                       Value* buffer) const {
  if (std::count(m_hiddenColumns.begin(), m_hiddenColumns.end(), column) > 0) {
    return nullptr;
  }
  std::size_t number = 0;
  for (const TypedRow& row : m_rows) {
    const std::size_t end = number + static_cast<std::size_t>(row.times);
    for (std::size_t i = std::max(number, first); i < std::min(end, first + count); ++i) {
      std::memcpy(buffer + (i - first),
                  row.bytes.data() + row.offsets[static_cast<std::size_t>(column)], sizeof(Value));
    }
    number = end;
  }
  m_valuesLookedAt += static_cast<long long>(count);
  return buffer;
}

PinOutMetaData columnsFromText(const std::string& text) {
  PinOutMetaData columns;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::size_t colon = word.rfind(':');
    const std::string code = colon == std::string::npos ? "" : word.substr(colon + 1);
    if (code != "F" && code != "K" && code != "U") {
      throw std::invalid_argument("a column is name:F, name:K or name:U, not " + word);
    }
    const int column = columns.columnCount();
    columns.setColumnCount(column + 1);
    columns.setName(column, QString::fromStdString(word.substr(0, colon)));
    columns.setMeta(column, {static_cast<MetaTypeColumn>(code[0]), 0});
  }
  return columns;
}

std::string textFromColumns(const PinOutMetaData& columns) {
  std::string text;
  for (int i = 0; i < columns.columnCount(); ++i) {
    text +=
        (i == 0 ? "" : " ") + columns.names()[i].toStdString() + ':' + columns.metas()[i].code();
  }
  return text;
}

}  // namespace kelvarin::testing
