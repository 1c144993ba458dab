// An Arrow stream that was given to the library, which then owns it.
//
// Threads: one at a time, any.
// Errors: texts of the stream, for the user.
#pragma once

#include <QString>

#include "host/tables/files/batch_reader.h"
#include "include/kelvarin/arrow_c_data.h"

namespace kelvarin {

// A schema that is released with its owner.
class OwnedSchema {
 public:
  OwnedSchema() = default;
  ~OwnedSchema();
  OwnedSchema(OwnedSchema&& other) noexcept;
  OwnedSchema& operator=(OwnedSchema&& other) noexcept;

  ArrowSchema* get() { return &m_schema; }
  const ArrowSchema& operator*() const { return m_schema; }

 private:
  ArrowSchema m_schema{};
};

bool isTable(const ArrowSchema& schema);

class InputStream {
 public:
  // Takes it, and leaves `stream` released. One that is released already is one that fails.
  explicit InputStream(ArrowArrayStream& stream);
  ~InputStream();
  InputStream(InputStream&& other) noexcept;
  InputStream& operator=(InputStream&&) = delete;

  // Of a table; the error says why not.
  Result<OwnedSchema, ReadFault> schema();
  // False: the end. Else `out` has rows, and belongs to the caller.
  Result<bool, ReadFault> next(ArrowArray& out);
  // The next call returns this array, which it takes.
  void putBack(ArrowArray& array);

 private:
  // With the location, where the stream is one of this library and knows it.
  ReadFault failure(int status);

  ArrowArrayStream m_stream;
  ArrowArray m_next{};  // that was put back
};

}  // namespace kelvarin
