// How the columns of a stream that is given to the interface are read.
//
// Used by: the functions that take streams.
#pragma once

#include "library/calls.h"
#include "library/runs/stream_source.h"

namespace kelvarin {

// KELVARIN_NUMBER, KELVARIN_KEY or KELVARIN_TEXT.
bool isColumnType(std::int32_t type);

// Null: the defaults.
Outcome<InputSettings> inputSettingsOf(const kelvarin_input_options* options);

}  // namespace kelvarin
