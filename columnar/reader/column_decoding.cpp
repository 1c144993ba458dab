#include "columnar/reader/column_decoding.h"

namespace kelvarin {

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

}  // namespace kelvarin
