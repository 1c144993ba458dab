// Expressions that only say how many rows to keep.
#pragma once

#include <cstdint>
#include <optional>

#include <QString>

namespace kelvarin {

// The number after `_n<`, with blanks anywhere, when nothing but decimal digits follows; a missing
// number is 0. Nothing for every other expression. Numbers above 0 mark a sampling expression: keep
// so many first rows.
std::optional<std::uint64_t> sampleSizeOf(const QString& expression);

}  // namespace kelvarin
