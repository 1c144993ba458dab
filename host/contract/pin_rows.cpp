#include "host/contract/pin_rows.h"

#include <utility>

#include "host/contract/host_services.h"

namespace kelvarin {

PinRows::PinRows(PinColumns columns, long long firstRow)
    : m_columns(std::move(columns)), m_firstRow(firstRow), m_values(m_columns.columns.size()) {}

const unsigned char* PinRows::value(std::size_t row, std::size_t column) const {
  const Values& values = m_values[column];
  const std::uint32_t start = values.starts[row];
  return start == kMissing ? nullptr : values.bytes.data() + start;
}

void PinRows::append(const OneRow& row) {
  for (std::size_t i = 0; i < m_values.size(); ++i) {
    Values& values = m_values[i];
    const unsigned char* bytes = row.getAllColForRead()[i];
    if (bytes == nullptr) {
      values.starts.push_back(kMissing);
      continue;
    }
    values.starts.push_back(static_cast<std::uint32_t>(values.bytes.size()));
    const std::size_t size = sizeOfValue(m_columns.columns[i].meta, bytes);
    values.bytes.insert(values.bytes.end(), bytes, bytes + size);
    m_byteCount += size;
  }
  m_byteCount += m_values.size() * sizeof(std::uint32_t);
  ++m_rowCount;
}

RowsReceiver::~RowsReceiver() = default;
RowsRequest::~RowsRequest() = default;

std::unique_ptr<RowsRequest> requestRows(const ActionItem& action, int pin, bool isOutput,
                                         long long limit, std::shared_ptr<RowsReceiver> receiver) {
  HostServices* services = hostServices();
  return services == nullptr
             ? nullptr
             : services->requestRows(action, pin, isOutput, limit, std::move(receiver));
}

}  // namespace kelvarin
