#include "host/tables/arrow_formats/group_encoding.h"

#include <algorithm>
#include <exception>
#include <system_error>

namespace kelvarin {

GroupEncoding::GroupEncoding(std::unique_ptr<RowGroup> group, const RowGroupFormat& format,
                             std::size_t threadCount)
    : m_group(std::move(group)), m_format(format) {
  m_columns.resize(m_group->columns().size());
  m_outcomes.resize(m_columns.size());
  if (threadCount <= 1) {
    encodeColumns();
    return;
  }
  try {
    for (std::size_t i = 0; i < std::min(threadCount, m_columns.size()); ++i) {
      m_threads.emplace_back([this] { encodeColumns(); });
    }
  } catch (const std::system_error&) {
    // The system has no thread to spare: those that there are, or writeTo(), do the rest.
  }
}

GroupEncoding::~GroupEncoding() {
  m_nextColumn = m_columns.size();
}

void GroupEncoding::encodeColumns() {
  for (;;) {
    const std::size_t column = m_nextColumn.fetch_add(1);
    if (column >= m_columns.size()) {
      return;
    }
    try {
      m_outcomes[column] = m_format.encode(*m_group, column, m_columns[column]);
    } catch (const std::exception& exception) {
      m_outcomes[column] = arrow::Status::IOError(exception.what());
    }
  }
}

arrow::Status GroupEncoding::writeTo(RowGroupFormat& format) {
  encodeColumns();
  m_threads.clear();
  for (const arrow::Status& outcome : m_outcomes) {
    ARROW_RETURN_NOT_OK(outcome);
  }
  return format.write(m_group->rowCount(), std::move(m_columns));
}

}  // namespace kelvarin
