#include "columnar/codecs/text_tokens.h"

#include <algorithm>

#include <emmintrin.h>

namespace kelvarin {

namespace {

constexpr std::size_t kGroup = sizeof(__m128i);

// The kinds of 16 bytes, a bit each. What has none of them is of the kind "other".
struct Kinds {
  unsigned letters;  // and the underscore
  unsigned digits;
  unsigned blanks;
};

unsigned mask(__m128i bytes) {
  return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

// Which bytes are `first` or one of the `count - 1` after it, by comparing with the lowest signed
// bytes.
__m128i isInRange(__m128i bytes, char first, char count) {
  const __m128i shifted = _mm_sub_epi8(bytes, _mm_set1_epi8(static_cast<char>(first - 128)));
  return _mm_cmplt_epi8(shifted, _mm_set1_epi8(static_cast<char>(count - 128)));
}

Kinds kindsOf(__m128i bytes) {
  const __m128i lowered = _mm_or_si128(bytes, _mm_set1_epi8(0x20));
  const __m128i isLetter =
      _mm_or_si128(isInRange(lowered, 'a', 26), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('_')));
  return {mask(_mm_or_si128(isLetter, bytes)), mask(isInRange(bytes, '0', 10)),
          mask(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' ')))};
}

}  // namespace

void TextTokens::cut(const TextValues& texts) {
  m_texts = texts;
  m_end = texts.bytes.data() + texts.bytes.size();
  const std::size_t size = texts.bytes.size();
  m_begins.resize(size / 8 + 2 * kGroup);
  Kinds before{};             // of the byte before, in the lowest bit
  unsigned blanksBefore = 0;  // of the two bytes before
  for (std::size_t at = 0; at < size; at += kGroup) {
    unsigned char copy[kGroup] = {};
    const unsigned char* bytes = texts.bytes.data() + at;
    if (size - at < kGroup) {
      std::copy_n(bytes, size - at, copy);
      bytes = copy;
    }
    const Kinds kinds = kindsOf(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
    const Kinds previous{kinds.letters << 1 | before.letters, kinds.digits << 1 | before.digits,
                         kinds.blanks << 1 | before.blanks};
    const unsigned twoBefore = kinds.blanks << 2 | blanksBefore;
    // A token goes on with the same kind, and with a letter behind a blank that is alone.
    const unsigned ofBlanks = kinds.blanks ^ previous.blanks;
    const unsigned begins =
        (kinds.letters ^ previous.letters) | (kinds.digits ^ previous.digits) | ofBlanks;
    const unsigned goesOn = kinds.letters & previous.blanks & ~twoBefore;
    storePacked(m_begins.data() + at / 8, static_cast<std::uint16_t>(begins & ~goesOn));
    before = {kinds.letters >> (kGroup - 1), kinds.digits >> (kGroup - 1),
              kinds.blanks >> (kGroup - 1)};
    blanksBefore = kinds.blanks >> (kGroup - 2);
  }
  std::size_t offset = 0;
  for (const std::uint32_t length : texts.lengths) {
    setBegin(offset);
    offset += byteCountOf(length);
  }
  setBegin(offset);
}

}  // namespace kelvarin
