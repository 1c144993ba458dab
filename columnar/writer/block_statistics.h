// Computes the statistics of a block's columns, by which readers skip blocks.
//
// All values are examined, so the bounds hold even where a column is not in its declared order.
// Threads: any.
#pragma once

#include <span>

#include "columnar/codecs/text_dictionary.h"
#include "columnar/format/column_statistics.h"

namespace kelvarin {

KeyStatistics statisticsOf(std::span<const std::uint32_t> keys);
// Numbers are passed as their bits. -0.0 is below 0.0.
NumberStatistics statisticsOf(std::span<const std::uint64_t> numbers);
// Texts compare by their bytes.
TextStatistics statisticsOf(const TextValues& texts);
// The same from the different texts in their order. There is at least one.
TextStatistics statisticsOf(std::span<const TextDictionary::Entry> texts);

}  // namespace kelvarin
