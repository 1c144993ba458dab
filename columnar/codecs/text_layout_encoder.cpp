#include <algorithm>
#include <array>
#include <bit>

#include "columnar/codecs/text_hash.h"
#include "columnar/codecs/text_layout.h"

namespace kelvarin {

namespace {

constexpr std::size_t kSampleSize = 256;

// Lengths take as many bytes as the longest needs, the null length being all bits set; none when
// they are all the same.
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
  unsigned char* place = out.append(lengths.size() * sizeof(Length));
  for (std::size_t i = 0; i < lengths.size(); ++i) {
    storePacked(place + i * sizeof(Length), static_cast<Length>(lengths[i]));
  }
}

// The width of the lengths, and the lengths; the texts' bytes follow.
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

// Whether texts come again often enough for a dictionary to be worth the search. Rows from all over
// the block are compared by their hashes.
bool doesRepeat(const TextValues& texts) {
  const std::size_t rows = texts.lengths.size();
  const std::size_t size = std::min(rows, kSampleSize);
  std::array<std::uint64_t, kSampleSize> hashes;
  std::size_t offset = 0;
  std::size_t taken = 0;
  for (std::size_t row = 0; row < rows && taken < size; ++row) {
    const std::size_t length = byteCountOf(texts.lengths[row]);
    if (row == taken * rows / size) {
      hashes[taken++] = hashOfText(texts.bytes.data() + offset, length);
    }
    offset += length;
  }
  std::sort(hashes.begin(), hashes.begin() + static_cast<std::ptrdiff_t>(taken));
  const auto end = std::unique(hashes.begin(), hashes.begin() + static_cast<std::ptrdiff_t>(taken));
  const auto distinct = static_cast<std::size_t>(end - hashes.begin());
  return (taken - distinct) * 16 >= taken;
}

}  // namespace

void TextLayoutEncoder::append(const TextValues& texts, ByteBuffer& out) {
  if (doesRepeat(texts) && fillDictionary(texts)) {
    return appendDictionary(texts, out);
  }
  out.put(static_cast<std::uint8_t>(TextLayout::plain));
  appendLengths(texts.lengths, out);
  out.append(texts.bytes);
}

// False when there are too many different texts for a dictionary to be small.
bool TextLayoutEncoder::fillDictionary(const TextValues& texts) {
  const std::size_t rows = texts.lengths.size();
  const std::size_t mostEntries = std::min(kLargestTextDictionary, rows / 2 + 1);
  const std::size_t slotCount = std::bit_ceil(2 * mostEntries);
  m_slots.assign(slotCount, 0);
  m_entries.clear();
  m_codes.resize(rows);
  std::size_t offset = 0;
  for (std::size_t row = 0; row < rows; ++row) {
    const std::uint32_t length = texts.lengths[row];
    const std::size_t size = byteCountOf(length);
    const unsigned char* bytes = texts.bytes.data() + offset;
    const std::uint64_t hash = hashOfText(bytes, size);
    const auto isEntry = [&](const Entry& entry) {
      return entry.hash == hash && entry.length == length &&
             std::equal(bytes, bytes + size, texts.bytes.data() + entry.offset);
    };
    std::size_t slot = hash & (slotCount - 1);
    while (m_slots[slot] != 0 && !isEntry(m_entries[m_slots[slot] - 1])) {
      slot = (slot + 1) & (slotCount - 1);
    }
    if (m_slots[slot] == 0) {
      if (m_entries.size() == mostEntries) {
        return false;
      }
      m_entries.push_back({hash, offset, length});
      m_slots[slot] = static_cast<std::uint32_t>(m_entries.size());
    }
    m_codes[row] = static_cast<std::uint16_t>(m_slots[slot] - 1);
    offset += size;
  }
  return true;
}

void TextLayoutEncoder::appendDictionary(const TextValues& texts, ByteBuffer& out) {
  out.put(static_cast<std::uint8_t>(TextLayout::dictionary));
  out.put(static_cast<std::uint16_t>(m_entries.size() - 1));
  std::vector<std::uint32_t> lengths;
  lengths.reserve(m_entries.size());
  for (const Entry& entry : m_entries) {
    lengths.push_back(entry.length);
  }
  appendLengths(lengths, out);
  for (const Entry& entry : m_entries) {
    out.append(texts.bytes.subspan(entry.offset, byteCountOf(entry.length)));
  }
  if (m_entries.size() <= 256) {
    std::copy(m_codes.begin(), m_codes.end(), out.append(m_codes.size()));
    return;
  }
  out.append({reinterpret_cast<const unsigned char*>(m_codes.data()),
              m_codes.size() * sizeof(std::uint16_t)});
}

}  // namespace kelvarin
