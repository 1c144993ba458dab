#include "host/testing/fake_input_pin.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "host/contract/batch_collector.h"
#include "host/testing/text_dictionaries.h"

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
  for (std::size_t i = 0; i < values.size(); ++i) {
    row.offsets.push_back(row.bytes.size());
    appendBytes(row.bytes, values[i], m_metaData.metas()[static_cast<qsizetype>(i)].type());
  }
  m_largestRow = std::max(m_largestRow, row.bytes.size());
  m_rows.push_back(std::move(row));
}

const FakeInputPin::TypedRow* FakeInputPin::takeTypedRow() {
  while (m_current < m_rows.size() && m_rows[m_current].timesLeft == 0) {
    ++m_current;
  }
  if (m_current == m_rows.size()) {
    return nullptr;
  }
  --m_rows[m_current].timesLeft;
  return &m_rows[m_current];
}

const OneRow* FakeInputPin::next() {
  std::swap(m_bytes[0], m_bytes[1]);
  std::fill(m_bytes[1].begin(), m_bytes[1].end(), kSpoilt);
  if (m_batch.rowsLeft() > 0) {
    ++m_rowsPulled;
    m_batch.take(m_row.getAllColForWrite());
    return &m_row;
  }
  m_batch.clear();
  const TypedRow* row = takeTypedRow();
  if (row == nullptr) {
    return nullptr;
  }
  ++m_rowsPulled;
  m_bytes[0].resize(m_largestRow);
  std::copy(row->bytes.begin(), row->bytes.end(), m_bytes[0].begin());
  unsigned char** columns = m_row.getAllColForWrite();
  for (std::size_t i = 0; i < row->offsets.size(); ++i) {
    columns[i] = m_bytes[0].data() + row->offsets[i];
  }
  return &m_row;
}

TakenBatch FakeInputPin::nextBatch() {
  RowBatchPointer batch = restOfBatch();
  passRows(batch == nullptr ? 0 : batch->rowCount());
  return {std::move(batch), nullptr};
}

RowBatchPointer FakeInputPin::restOfBatch() {
  if (m_batch.rowsLeft() == 0) {
    m_batch.start(collectBatch());
  }
  const RowBatchPointer& batch = m_batch.batch();
  return m_batch.rowsTaken() == 0 ? batch : batch->slice(m_batch.rowsTaken(), batch->rowCount());
}

void FakeInputPin::passRows(std::size_t count) {
  m_batch.skip(count);
  m_rowsPulled += static_cast<long long>(count);
}

RowBatchPointer FakeInputPin::collectBatch() {
  const std::size_t stored = m_shape.strayRows + 1;  // for each row
  BatchCollector collector(typesOf(m_row), {.rows = stored * m_shape.rows});
  std::vector<const unsigned char*> values(static_cast<std::size_t>(m_metaData.columnCount()));
  std::size_t count = 0;
  for (; count < m_shape.rows && !collector.isFull(); ++count) {
    const TypedRow* row = takeTypedRow();
    if (row == nullptr) {
      break;
    }
    std::fill(values.begin(), values.end(), nullptr);
    for (std::size_t i = 0; i < m_shape.strayRows; ++i) {
      collector.append(values.data());
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = row->bytes.data() + row->offsets[i];
    }
    collector.append(values.data());
  }
  if (count == 0) {
    return nullptr;
  }
  RowBatchPointer batch = collector.take();
  if (m_shape.hasDictionaries) {
    batch = withDictionaries(*batch, kEntryWithoutRows);
  }
  if (m_shape.strayRows == 0) {
    return batch;
  }
  auto selection = std::make_shared<std::uint32_t[]>(count);
  for (std::size_t i = 0; i < count; ++i) {
    selection[i] = static_cast<std::uint32_t>(stored * i + m_shape.strayRows);
  }
  return std::make_shared<RowBatch>(batch->storedRows(), batch->columns(), std::move(selection),
                                    count);
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
