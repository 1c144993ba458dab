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
#include "columnar/codecs/text_dictionary.h"
#include "columnar/codecs/text_values.h"
#include "columnar/format/read_status.h"

namespace kelvarin {

enum class TextLayout : std::uint8_t {
  plain = 0,       // all lengths, then all bytes
  dictionary = 1,  // the texts that occur in their order, and a code for each row
};

// An entry of a dictionary has at most so many bytes from the one before.
inline constexpr std::size_t kMostSharedBytes = 255;

// Texts as rows point to them: a 32-bit length, then the bytes. Several rows may share one.
struct DecodedTexts {
  ByteBuffer bytes;
  // Of each row's text in `bytes`; only one where all rows are stored as one text.
  std::vector<std::uint32_t> offsets;

  const unsigned char* text(std::size_t row) const { return bytes.data() + offsets[row]; }
};

class TextLayoutEncoder {
 public:
  // Appends the layout byte and the texts, of which there is at least one. What is `known` of the
  // column saves time only.
  void append(const TextValues& texts, KnownTexts& known, ByteBuffer& out);
  // The different texts that were appended last, in their order; none when they were too many for a
  // dictionary.
  std::span<const TextDictionary::Entry> entries() const { return m_dictionary.entries(); }

 private:
  TextDictionary m_dictionary;
  std::vector<std::uint32_t> m_lengths;  // of the entries
  std::vector<std::uint8_t> m_bytes;     // codes or counts of shared bytes, a byte each
};

// `bytes` begin with the layout byte. Their structure is checked before `texts` takes memory.
// `unknownLayout` is set, to the layout byte, when that is the trouble.
[[nodiscard]] ReadStatus decodeTexts(Bytes bytes, std::uint32_t rows, DecodedTexts& texts,
                                     int& unknownLayout);

}  // namespace kelvarin
