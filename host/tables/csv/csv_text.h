// CSV text in the making: a buffer that grows for long rows only, and the rows written to it.
//
// Threads: one at a time. The memory goes back to a store that is shared by all threads.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include <QString>

#include "host/contract/batch_steps.h"
#include "host/tables/files/buffer_store.h"

namespace kelvarin {

struct CsvTextBuffer {
  std::unique_ptr<char[]> bytes;
  std::size_t capacity = 0;
};

using CsvTextStore = BufferStore<CsvTextBuffer>;

// A field that needs a quote where there is none.
struct UnwritableField {
  std::size_t row;  // of the batch
  int column;
  QString value;
};

class CsvText final : public EncodedBatch {
 public:
  explicit CsvText(std::shared_ptr<CsvTextStore> store)
      : m_store(std::move(store)), m_buffer(m_store->take()) {}
  ~CsvText() override;
  CsvText(const CsvText&) = delete;
  CsvText& operator=(const CsvText&) = delete;

  std::string_view text() const { return {m_buffer.bytes.get(), m_used}; }
  long long rowCount() const { return m_rowCount; }
  // Why the text ends before the batch does.
  const std::optional<UnwritableField>& unwritable() const { return m_unwritable; }

  // Of the encoder: memory for `size` more bytes behind `end`, up to where there are texts that
  // count; returns the end.
  char* reserve(char* end, std::size_t size) {
    const auto used = static_cast<std::size_t>(end - m_buffer.bytes.get());
    return m_buffer.capacity - used >= size ? end : grow(used, size);
  }
  char* begin() const { return m_buffer.bytes.get(); }
  char* end() const { return begin() + m_used; }
  void setEnd(const char* end, std::size_t rowCount) {
    m_used = static_cast<std::size_t>(end - m_buffer.bytes.get());
    m_rowCount = static_cast<long long>(rowCount);
  }
  void setUnwritable(UnwritableField field) { m_unwritable = std::move(field); }

 private:
  char* grow(std::size_t used, std::size_t size);

  std::shared_ptr<CsvTextStore> m_store;
  CsvTextBuffer m_buffer;
  std::size_t m_used = 0;
  long long m_rowCount = 0;
  std::optional<UnwritableField> m_unwritable;
};

}  // namespace kelvarin
