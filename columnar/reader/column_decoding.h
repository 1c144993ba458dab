// Decodes a chunk as the values of a column.
//
// Used by chunk_reader.cpp and by the recovery of tables.
#pragma once

#include "columnar/codecs/chunk_codec.h"
#include "columnar/format/metadata_block.h"
#include "columnar/reader/decoded_block.h"

namespace kelvarin {

[[nodiscard]] ReadStatus decodeColumn(ChunkDecoder& decoder, const GelColumn& column, Bytes chunk,
                                      std::uint32_t rows, DecodedColumn& values);

}  // namespace kelvarin
