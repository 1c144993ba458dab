#include "columnar/codecs/text_sample.h"

#include <algorithm>
#include <array>

#include "columnar/codecs/text_hash.h"

namespace kelvarin {

TextSample::TextSample(const TextValues& texts) : m_rows(texts.lengths.size()) {
  // Multiples of the golden ratio are spread evenly.
  constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15ull;
  std::vector<std::size_t> offsets(m_rows);
  std::size_t offset = 0;
  for (std::size_t row = 0; row < m_rows; ++row) {
    offsets[row] = offset;
    offset += byteCountOf(texts.lengths[row]);
  }
  const std::size_t size = std::min(m_rows, kMaxSize);
  m_texts.reserve(size);
  for (std::size_t i = 0; i < size; ++i) {
    const std::uint64_t spread = (i * kGoldenRatio >> 32) * m_rows >> 32;
    const std::size_t row = m_rows == size ? i : spread;
    if (texts.lengths[row] != kNullLength) {
      m_texts.push_back(texts.bytes.subspan(offsets[row], texts.lengths[row]));
    }
  }
  m_different = countDifferent();
}

std::size_t TextSample::countDifferent() const {
  constexpr std::size_t kSlots = 4 * kMaxSize;
  std::array<std::uint64_t, kSlots> slots{};
  std::size_t different = 0;
  for (const Bytes text : m_texts) {
    const std::uint64_t hash = hashOfText(text.data(), text.size()) | 1;
    std::size_t slot = hash / 2 % kSlots;
    while (slots[slot] != 0 && slots[slot] != hash) {
      slot = (slot + 1) % kSlots;
    }
    different += slots[slot] == 0;
    slots[slot] = hash;
  }
  return different;
}

// Of d different texts, s that are drawn at random have about s * s / 2d that occurred before.
bool TextSample::doesHardlyRepeat() const {
  const std::size_t repeated = m_texts.size() - m_different;
  return m_texts.size() == kMaxSize && m_texts.size() * m_texts.size() > 2 * repeated * m_rows;
}

}  // namespace kelvarin
