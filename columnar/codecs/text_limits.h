// Limits of encoded texts, for writer and reader.
//
// Layout: docs/gel-format.md, "Encodings of texts".
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kelvarin {

// Of the length that stands before each decoded text.
inline constexpr std::size_t kLengthSize = sizeof(std::uint32_t);
// Behind decoded texts there are so many bytes more that may be read, so that short ones can be
// copied without a look at their size.
inline constexpr std::size_t kTextMargin = 32;
// Of shaped texts.
inline constexpr std::size_t kMaxTemplates = 16;

// The most bytes that texts in encodings without a size for each may take in memory, the length of
// each included. So a few forged bytes do not lead to more memory than the size of a file
// accounts for.
constexpr std::uint64_t maxDecodedSize(std::uint64_t storedSize) {
  constexpr std::uint64_t kAlways = 64ull << 20;
  constexpr std::uint64_t kTimes = 256;
  return std::min<std::uint64_t>(kAlways + kTimes * storedSize, 0xFFFFFFFF);
}

}  // namespace kelvarin
