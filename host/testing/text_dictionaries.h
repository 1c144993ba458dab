// Dictionaries for the texts of a batch, as sources have them that store each text once.
#pragma once

#include <string_view>

#include "host/contract/row_batch.h"

namespace kelvarin::testing {

// The same rows, all that are stored. Each dictionary has an entry that no row has.
RowBatchPointer withDictionaries(const RowBatch& batch, std::string_view entryWithoutRows);
// Of the column, for every stored row whether its entry is its text.
bool matchesDictionary(const BatchColumn& column, std::size_t storedRows);

}  // namespace kelvarin::testing
