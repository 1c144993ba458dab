#include "library/arrow_streams/imported_batch.h"

#include <utility>

#include "library/arrow_streams/imported_values.h"
#include "library/arrow_streams/untouched_numbers.h"

namespace kelvarin {

namespace {

// Of the columns that are read.
std::int64_t fewestBuffersOf(ArrowKind kind) {
  const bool hasOffsets = kind == ArrowKind::utf8 || kind == ArrowKind::largeUtf8;
  return hasOffsets || kind == ArrowKind::utf8View ? 3 : 2;
}

std::string faultOfArray(const ArrowArray* array, ArrowKind kind, std::int64_t rows) {
  if (array == nullptr || array->release == nullptr) {
    return "a column is missing in a batch";
  }
  if (array->length < rows || array->offset < 0) {
    return "a column has fewer rows than its batch";
  }
  if (array->n_buffers < fewestBuffersOf(kind) || array->buffers == nullptr ||
      (array->length > 0 && array->buffers[1] == nullptr)) {
    return "a column has no buffer of values";
  }
  return {};
}

ArraySlice sliceOf(const ArrowArray& array, std::int64_t begin, std::int64_t end) {
  return {array, array.offset + begin, end - begin};
}

// A null code counts as none.
bool areCodesSound(const ArrayRows& rows) {
  for (std::int64_t row = 0; row < rows.rows.count; ++row) {
    if (!rows.rows.isNull(row)) {
      const std::int64_t code = rows.codeAt(row);
      if (code < 0 || code >= rows.values.count) {
        return false;
      }
    }
  }
  return true;
}

}  // namespace

ImportedBatch::ImportedBatch(ArrowArray& array, const std::vector<ArrowType>& types)
    : m_array(array), m_types(types), m_dictionaries(types.size()) {
  array.release = nullptr;
}

ImportedBatch::~ImportedBatch() {
  m_array.release(&m_array);
}

Result<std::shared_ptr<ImportedBatch>> ImportedBatch::take(ArrowArray& array,
                                                           const std::vector<ArrowType>& types) {
  std::shared_ptr<ImportedBatch> batch(new ImportedBatch(array, types));
  const ArrowArray& taken = batch->m_array;
  if (taken.n_children != static_cast<std::int64_t>(types.size()) || taken.length < 0 ||
      taken.offset < 0) {
    return Failure{std::string("a batch has other columns than the schema")};
  }
  if (taken.null_count > 0) {
    return Failure{std::string("rows as a whole are null in a batch")};
  }
  for (std::size_t i = 0; i < types.size(); ++i) {
    if (std::string fault = batch->faultOfColumn(*taken.children[i], types[i]); !fault.empty()) {
      return Failure{std::move(fault)};
    }
  }
  return batch;
}

std::string ImportedBatch::faultOfColumn(const ArrowArray& column, const ArrowType& type) const {
  const ArrowKind kind = type.isDictionary() ? type.codeKind : type.kind;
  std::string fault = faultOfArray(&column, kind, m_array.offset + m_array.length);
  return fault.empty() && type.isDictionary() ? faultOfArray(column.dictionary, type.kind, 0)
                                              : fault;
}

Result<ConvertedArray> ImportedBatch::column(std::size_t index, MetaTypeColumn type,
                                             std::int64_t begin, std::int64_t end,
                                             ColumnTally& tally) {
  const ArrowType& from = m_types[index];
  const ArrowArray& array = *m_array.children[index];
  const ArraySlice slice = sliceOf(array, m_array.offset + begin, m_array.offset + end);
  const ArraySlice values =
      from.isDictionary() ? sliceOf(*array.dictionary, 0, array.dictionary->length) : slice;
  const ArrayRows rows{slice, values, from.codeKind};
  if (from.isDictionary() && !areCodesSound(rows)) {
    return Failure{std::string("a code is beyond its dictionary")};
  }
  const std::shared_ptr<const void> owner = shared_from_this();
  if (type == MetaTypeColumn::number) {
    return importNumbers(rows, from, tally, owner);
  }
  if (type == MetaTypeColumn::key) {
    return importKeys(rows, from, tally, owner);
  }
  if (!from.isDictionary()) {
    return importTexts(rows, from, tally);
  }
  DictionaryCell& cell = m_dictionaries[index];
  std::call_once(cell.once, [&] { cell.texts = importDictionary(values, from); });
  return importCodes(rows, from, tally, owner, cell.texts);
}

std::shared_ptr<const LateNumbers> ImportedBatch::untouched(std::size_t index, MetaTypeColumn type,
                                                            std::int64_t begin, std::int64_t end) {
  const ArrowType& from = m_types[index];
  const ArraySlice slice =
      sliceOf(*m_array.children[index], m_array.offset + begin, m_array.offset + end);
  if (type != MetaTypeColumn::number || from.kind != ArrowKind::float64 || from.isDictionary() ||
      !isAligned(slice.bytesAt(0, sizeof(double)), alignof(double))) {
    return nullptr;
  }
  return std::make_shared<const UntouchedNumbers>(slice, shared_from_this());
}

}  // namespace kelvarin
