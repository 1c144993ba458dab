// A batch of rows that came out of a stream, and the columns that are made of parts of it.
//
// Values that have the bytes of a column already are not copied: columns share the batch, which is
// released with the last of them, on any thread.
// Used by: stream_reader.cpp.
// Threads: any, once made.
// Errors: texts for the user; throws only std::bad_alloc.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "host/tables/arrow/column_tally.h"
#include "library/arrow_streams/arrow_type.h"

namespace kelvarin {

// The texts of a column's dictionary as a column has them.
struct ImportedDictionary {
  std::shared_ptr<const void> owner;
  const unsigned char* bytes = nullptr;
  std::size_t size = 0;
  std::vector<std::uint32_t> positions;  // of the values; behind them that of the null text
};

class ImportedBatch : public std::enable_shared_from_this<ImportedBatch> {
 public:
  // Takes the array, whose columns are of these types. The error says why it cannot be one of the
  // stream.
  static Result<std::shared_ptr<ImportedBatch>> take(ArrowArray& array,
                                                     const std::vector<ArrowType>& types);
  ~ImportedBatch();
  ImportedBatch(const ImportedBatch&) = delete;
  ImportedBatch& operator=(const ImportedBatch&) = delete;

  std::int64_t rowCount() const { return m_array.length; }
  std::size_t columnCount() const { return m_types.size(); }

  // `type` is one of columnTypesOf(). The error is that of a dictionary's code.
  Result<ConvertedArray> column(std::size_t index, MetaTypeColumn type, std::int64_t begin,
                                std::int64_t end, ColumnTally& tally);
  // The same column where its values can leave as they are; else null.
  std::shared_ptr<const LateNumbers> untouched(std::size_t index, MetaTypeColumn type,
                                               std::int64_t begin, std::int64_t end);

 private:
  ImportedBatch(ArrowArray& array, const std::vector<ArrowType>& types);
  std::string faultOfColumn(const ArrowArray& column, const ArrowType& type) const;

  ArrowArray m_array;
  const std::vector<ArrowType>& m_types;  // of the stream, which lives longer
  struct DictionaryCell {
    std::once_flag once;
    ImportedDictionary texts;
  };
  std::vector<DictionaryCell> m_dictionaries;  // by column
};

}  // namespace kelvarin
