// The layouts in which the texts of one block are stored before compression.
//
// A layout byte says which; what follows it is described in docs/gel-format.md, "Layouts of texts".
// Texts are bytes; the null text and the empty text stay apart. Which layout is taken depends on
// the values alone.
// Threads: one at a time an object.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/byte_buffer.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

enum class TextLayout : std::uint8_t {
  plain = 0,       // all lengths, then all bytes
  dictionary = 1,  // the texts that occur, and a code of 8 or 16 bits for each row
};

inline constexpr std::uint32_t kNullLength = 0xFFFFFFFF;
inline constexpr std::size_t kLargestTextDictionary = 65536;

// The texts of a block, one after the other; the null text has the length kNullLength and no bytes.
struct TextValues {
  std::span<const std::uint32_t> lengths;
  Bytes bytes;

  // What the plain layout takes with lengths of 32 bits.
  std::uint64_t rawSize() const { return lengths.size_bytes() + bytes.size(); }
};

constexpr std::size_t byteCountOf(std::uint32_t length) {
  return length == kNullLength ? 0 : length;
}

// Texts as rows point to them: a 32-bit length, then the bytes. Several rows may share one.
struct DecodedTexts {
  ByteBuffer bytes;
  std::vector<std::uint32_t> offsets;  // of each row's text in `bytes`

  const unsigned char* text(std::size_t row) const { return bytes.data() + offsets[row]; }
};

class TextLayoutEncoder {
 public:
  // Appends the layout byte and the texts, of which there is at least one.
  void append(const TextValues& texts, ByteBuffer& out);

 private:
  struct Entry {
    std::uint64_t hash;
    std::size_t offset;
    std::uint32_t length;
  };

  bool fillDictionary(const TextValues& texts);
  void appendDictionary(const TextValues& texts, ByteBuffer& out);

  std::vector<Entry> m_entries;
  std::vector<std::uint32_t> m_slots;  // place among the entries, from 1
  std::vector<std::uint16_t> m_codes;
};

// `bytes` begin with the layout byte. Their structure is checked before `texts` takes memory.
// `unknownLayout` is set, to the layout byte, when that is the trouble.
[[nodiscard]] ReadStatus decodeTexts(Bytes bytes, std::uint32_t rows, DecodedTexts& texts,
                                     int& unknownLayout);

}  // namespace kelvarin
