// Whether words can be the output of an integer codec for a given number of keys.
//
// The decoders of the library trust counts, widths and positions in the words. These checks come
// first and accept only words that decode within their buffers: every word has a meaning, and none
// is left over.
// Threads: any.
// Errors: never throws.
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
