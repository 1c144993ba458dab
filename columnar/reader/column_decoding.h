// Decodes a chunk as the values of a column.
//
// Used by block_decoder.cpp, by verification and by the recovery of tables.
// Threads: any, each with a decoder of its own.
#pragma once

#include <memory>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/format/metadata_block.h"
#include "host/contract/row_batch.h"
#include "host/contract/value_targets.h"

namespace kelvarin {

// The values of one column in one block. The type decides which member is filled, with a single
// value where one stands for all rows.
struct DecodedColumn {
  ByteBuffer values;                      // numbers or keys
  DecodedTexts texts;                     // all other types
  std::shared_ptr<ValueTargets> targets;  // whose memory the values may lie in
};

[[nodiscard]] ReadStatus decodeColumn(ChunkDecoder& decoder, const GelColumn& column, Bytes chunk,
                                      std::uint32_t rows, DecodedColumn& values,
                                      TextForm form = TextForm::made);

// Whether the only value stands for more than one row.
bool isRepeated(const DecodedColumn& values, MetaTypeColumn type, std::uint64_t rows);
// Stores the only value `rows` times.
void repeat(DecodedColumn& values, MetaTypeColumn type, std::size_t rows);
// The values in the form of a batch; nothing is copied. Texts that are kept as their fields are
// late ones.
BatchColumn batchColumn(std::shared_ptr<const DecodedColumn> values, MetaTypeColumn type);

}  // namespace kelvarin
