// Whether words can be the output of an integer codec for so many keys.
//
// The library's decoders trust counts, widths and positions that they find; these checks come first
// and let through only what decodes inside its buffers. They check the whole structure: every word
// belongs to something, and nothing is left over.
// Threads: any.  Never throws.
#pragma once

#include <cstdint>
#include <span>

namespace kelvarin {

inline constexpr std::uint32_t kKeysInGroup = 128;
inline constexpr std::uint32_t kKeysInPage = 65536;
// Packed groups of sorted keys share a head of 16 widths.
inline constexpr std::uint32_t kGroupsUnderOneHead = 16;
inline constexpr std::uint32_t kWidestKey = 32;

bool arePlainKeyWords(std::span<const std::uint32_t> words, std::uint32_t keys);
bool areSortedKeyWords(std::span<const std::uint32_t> words, std::uint32_t keys);

}  // namespace kelvarin
