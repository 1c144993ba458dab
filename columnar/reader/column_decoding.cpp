#include "columnar/reader/column_decoding.h"

#include <algorithm>

namespace kelvarin {

namespace {

template <typename Value>
void repeatFirst(ByteBuffer& values, std::size_t rows) {
  const auto value = loadPacked<Value>(values.data());
  values.resize(rows * sizeof value);
  std::fill_n(reinterpret_cast<Value*>(values.data()), rows, value);
}

}  // namespace

ReadStatus decodeColumn(ChunkDecoder& decoder, const GelColumn& column, Bytes chunk,
                        std::uint32_t rows, DecodedColumn& values) {
  switch (column.type) {
    case GelType::key:
      return decoder.decodeKeys(chunk, column.storage, rows, values.values);
    case GelType::number:
      return decoder.decodeNumbers(chunk, rows, values.values);
    case GelType::text:
      break;
  }
  return decoder.decodeTexts(chunk, rows, values.texts);
}

bool isRepeated(const DecodedColumn& values, MetaTypeColumn type, std::uint64_t rows) {
  const std::size_t size = fixedSizeOf(type);
  return rows > 1 && (size != 0 ? values.values.size() == size : values.texts.offsets.size() == 1);
}

void repeat(DecodedColumn& values, MetaTypeColumn type, std::size_t rows) {
  switch (fixedSizeOf(type)) {
    case sizeof(double):
      return repeatFirst<double>(values.values, rows);
    case sizeof(std::uint32_t):
      return repeatFirst<std::uint32_t>(values.values, rows);
    default:
      values.texts.entries = values.texts.offsets;
      values.texts.codes.assign(rows, 0);
      values.texts.offsets.resize(rows, values.texts.offsets.front());
  }
}

BatchColumn batchColumn(std::shared_ptr<const DecodedColumn> values, MetaTypeColumn type) {
  const unsigned char* fixed = values->values.data();
  const DecodedTexts& texts = values->texts;
  switch (type) {
    case MetaTypeColumn::number:
      return BatchColumn::ofNumbers(std::move(values), reinterpret_cast<const double*>(fixed));
    case MetaTypeColumn::key:
      return BatchColumn::ofKeys(std::move(values), reinterpret_cast<const std::uint32_t*>(fixed));
    default:
      break;
  }
  BatchColumn column = BatchColumn::ofTexts(type, std::move(values), texts.bytes.data(),
                                            texts.offsets.data(), texts.bytes.size());
  if (!texts.codes.empty()) {
    column.setDictionary({texts.codes.data(), texts.entries});
  }
  return column;
}

}  // namespace kelvarin
