// Texts that are UTF-8 in any case: those of a file may be any bytes, and who reads a stream may
// rely on its type.
//
// Used by: exported_texts.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include "host/contract/row_batch.h"

namespace kelvarin {

// The column itself where all texts of the batch's rows are UTF-8; else one in which every byte
// that is none is U+FFFD.
BatchColumn withValidTexts(const RowBatch& batch, const BatchColumn& column);

}  // namespace kelvarin
