// The summaries of a block's columns: what their values are like, for readers that skip blocks.
//
// The smallest and the largest value are found by looking at all, so they hold even where a column
// is not in its declared order. Threads: any.
#pragma once

#include <span>

#include "columnar/codecs/text_layout.h"
#include "columnar/format/column_summary.h"

namespace kelvarin {

KeySummary summaryOf(std::span<const std::uint32_t> keys);
// Numbers by their bits. Of zeros of both signs the smallest is -0.0 and the largest 0.0.
NumberSummary summaryOf(std::span<const std::uint64_t> numbers);
// By their bytes.
TextSummary summaryOf(const TextValues& texts);
// The same, from the different texts in their order, of which there is at least one.
TextSummary summaryOf(std::span<const TextDictionary::Entry> texts);

}  // namespace kelvarin
