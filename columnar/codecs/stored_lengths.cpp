#include "columnar/codecs/stored_lengths.h"

#include <algorithm>

namespace kelvarin {

namespace {

// The bytes that each length takes, where the null length has all bits set; 0 when all lengths are
// equal.
int widthOfLengths(std::span<const std::uint32_t> lengths) {
  std::uint32_t longest = 0;
  std::uint32_t different = 0;
  for (const std::uint32_t length : lengths) {
    longest = std::max(longest, length + 1);  // the null length becomes 0
    different |= length ^ lengths[0];
  }
  if (different == 0) {
    return 0;
  }
  return longest <= 0xFF ? 1 : longest <= 0xFFFF ? 2 : 4;
}

template <typename Length>
void putLengths(std::span<const std::uint32_t> lengths, ByteBuffer& out) {
  unsigned char* stored = out.append(lengths.size() * sizeof(Length));
  for (std::size_t i = 0; i < lengths.size(); ++i) {
    storePacked(stored + i * sizeof(Length), static_cast<Length>(lengths[i]));
  }
}

}  // namespace

void appendLengths(std::span<const std::uint32_t> lengths, ByteBuffer& out) {
  const int width = widthOfLengths(lengths);
  out.put(static_cast<std::uint8_t>(width));
  switch (width) {
    case 0:
      return out.put(lengths[0]);
    case 1:
      return putLengths<std::uint8_t>(lengths, out);
    case 2:
      return putLengths<std::uint16_t>(lengths, out);
    default:
      return putLengths<std::uint32_t>(lengths, out);
  }
}

}  // namespace kelvarin
