// A batch as bytes in a temporary file: the selected values of each column, one after another.
//
// Numbers and keys are as they are in memory; a column of texts has the size of all texts (8
// bytes), a position for each row and then the texts.
// Used by: row_queue.cpp.
#pragma once

#include <vector>

#include "host/contract/row_batch.h"

namespace kelvarin {

std::vector<MetaTypeColumn> typesOf(const RowBatch& batch);
void appendBytes(const RowBatch& batch, std::vector<unsigned char>& bytes);
// `bytes` are what appendBytes() has made of a batch of `rowCount` rows with these types.
RowBatchPointer batchFromBytes(const std::vector<MetaTypeColumn>& types, std::size_t rowCount,
                               std::shared_ptr<unsigned char[]> bytes);

}  // namespace kelvarin
