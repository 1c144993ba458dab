#include "library/arrow_streams/input_stream.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "library/arrow_streams/messages.h"
#include "library/arrow_streams/output_stream.h"

namespace kelvarin {

OwnedSchema::~OwnedSchema() {
  if (m_schema.release != nullptr) {
    m_schema.release(&m_schema);
  }
}

OwnedSchema::OwnedSchema(OwnedSchema&& other) noexcept
    : m_schema(std::exchange(other.m_schema, ArrowSchema{})) {}

OwnedSchema& OwnedSchema::operator=(OwnedSchema&& other) noexcept {
  std::swap(m_schema, other.m_schema);
  return *this;
}

bool isTable(const ArrowSchema& schema) {
  return schema.release != nullptr && schema.format != nullptr &&
         std::string_view(schema.format) == "+s";
}

InputStream::InputStream(ArrowArrayStream& stream)
    : m_stream(std::exchange(stream, ArrowArrayStream{})) {}

InputStream::~InputStream() {
  if (m_next.release != nullptr) {
    m_next.release(&m_next);
  }
  if (m_stream.release != nullptr) {
    m_stream.release(&m_stream);
  }
}

InputStream::InputStream(InputStream&& other) noexcept
    : m_stream(std::exchange(other.m_stream, ArrowArrayStream{})),
      m_next(std::exchange(other.m_next, ArrowArray{})) {}

ReadFault InputStream::failure(int status) {
  const char* text = m_stream.get_last_error(&m_stream);
  const bool hasText = text != nullptr && *text != '\0';
  ReadFault fault{
      stream_messages::streamFailed(QString::fromUtf8(hasText ? text : std::strerror(status)))};
  if (const StreamState* state = stateOf(m_stream)) {
    const ErrorDetails error = lastErrorOf(*state).value_or(ErrorDetails());
    fault.location = {QString::fromStdString(error.column), error.row};
  }
  return fault;
}

Result<OwnedSchema, ReadFault> InputStream::schema() {
  if (m_stream.release == nullptr) {
    return Failure{
        ReadFault{stream_messages::streamFailed(QStringLiteral("it has been released"))}};
  }
  OwnedSchema schema;
  if (const int status = m_stream.get_schema(&m_stream, schema.get()); status != 0) {
    return Failure{failure(status)};
  }
  if (!isTable(*schema)) {
    return Failure{ReadFault{stream_messages::noTable()}};
  }
  return schema;
}

Result<bool, ReadFault> InputStream::next(ArrowArray& out) {
  out = std::exchange(m_next, ArrowArray{});
  if (out.release != nullptr) {
    return true;
  }
  if (const int status = m_stream.get_next(&m_stream, &out); status != 0) {
    return Failure{failure(status)};
  }
  return out.release != nullptr;
}

void InputStream::putBack(ArrowArray& array) {
  m_next = std::exchange(array, ArrowArray{});
}

}  // namespace kelvarin
