#include "columnar/codecs/text_tokens.h"

#include <algorithm>
#include <bit>

#include <emmintrin.h>

namespace kelvarin {

namespace {

constexpr std::size_t kGroup = sizeof(__m128i);
constexpr std::size_t kWord = 64;

// The kinds of 64 bytes, a bit each. What has none of the first three is of the kind "other".
struct Kinds {
  std::uint64_t letters = 0;  // and underscores
  std::uint64_t digits = 0;
  std::uint64_t blanks = 0;
  std::uint64_t capitals = 0;
  std::uint64_t underscores = 0;
};

std::uint64_t mask(__m128i bytes) {
  return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

// Which bytes are `first` or one of the `count - 1` after it, by comparing with the lowest signed
// bytes.
__m128i isInRange(__m128i bytes, char first, char count) {
  const __m128i shifted = _mm_sub_epi8(bytes, _mm_set1_epi8(static_cast<char>(first - 128)));
  return _mm_cmplt_epi8(shifted, _mm_set1_epi8(static_cast<char>(count - 128)));
}

Kinds kindsOf(const unsigned char* word) {
  Kinds kinds;
  for (std::size_t at = 0; at < kWord; at += kGroup) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(word + at));
    const __m128i lowered = _mm_or_si128(bytes, _mm_set1_epi8(0x20));
    const __m128i isUnderscore = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('_'));
    const __m128i isLetter = _mm_or_si128(isInRange(lowered, 'a', 26), isUnderscore);
    kinds.letters |= mask(_mm_or_si128(isLetter, bytes)) << at;
    kinds.digits |= mask(isInRange(bytes, '0', 10)) << at;
    kinds.blanks |= mask(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' '))) << at;
    kinds.capitals |= mask(isInRange(bytes, 'A', 26)) << at;
    kinds.underscores |= mask(isUnderscore) << at;
  }
  return kinds;
}

// Finds where tokens begin, 64 bytes after another.
class TokenBegins {
 public:
  std::uint64_t next(const unsigned char* word) {
    const Kinds kinds = kindsOf(word);
    const auto behind = [](std::uint64_t bits, std::uint64_t before) {
      return bits << 1 | before >> (kWord - 1);
    };
    const std::uint64_t letters = behind(kinds.letters, m_before.letters);
    const std::uint64_t blanks = behind(kinds.blanks, m_before.blanks);
    const std::uint64_t twoBlanks = blanks & (kinds.blanks << 2 | m_before.blanks >> (kWord - 2));
    const std::uint64_t ofKinds = (kinds.letters ^ letters) | (kinds.blanks ^ blanks) |
                                  (kinds.digits ^ behind(kinds.digits, m_before.digits));
    // A token goes on with the same kind, and with a letter behind a blank that is alone.
    const std::uint64_t goesOn = kinds.letters & blanks & ~twoBlanks;
    const std::uint64_t inNames =
        (kinds.capitals & letters & ~behind(kinds.capitals, m_before.capitals)) |
        (kinds.letters & ~kinds.underscores & behind(kinds.underscores, m_before.underscores));
    m_before = kinds;
    return (ofKinds & ~goesOn) | inNames;
  }

 private:
  Kinds m_before;
};

}  // namespace

void TextTokens::cut(const TextValues& texts) {
  m_texts = texts;
  m_end = texts.bytes.data() + texts.bytes.size();
  const std::size_t size = texts.bytes.size();
  m_begins.resize(size / kWord + 1);
  TokenBegins begins;
  const std::size_t wholeWords = size / kWord;
  for (std::size_t i = 0; i < wholeWords; ++i) {
    m_begins[i] = begins.next(texts.bytes.data() + i * kWord);
  }
  unsigned char last[kWord] = {};
  std::copy_n(texts.bytes.data() + wholeWords * kWord, size % kWord, last);
  m_begins[wholeWords] = begins.next(last);
  std::size_t offset = 0;
  for (const std::uint32_t length : texts.lengths) {
    setBegin(offset);
    offset += byteCountOf(length);
  }
  setBegin(offset);
  findPositions();
}

// Writes the positions of eight bits at a time, of which there may be fewer.
void TextTokens::findPositions() {
  constexpr std::size_t kStep = 8;
  m_positions.resize(m_begins.size() * kWord + kStep);
  std::uint32_t* out = m_positions.data();
  std::uint32_t first = 0;
  for (std::uint64_t bits : m_begins) {
    const auto count = static_cast<std::size_t>(std::popcount(bits));
    for (std::size_t done = 0; done < count; done += kStep) {
      for (std::size_t i = 0; i < kStep; ++i) {
        out[done + i] = first + static_cast<std::uint32_t>(std::countr_zero(bits));
        bits &= bits - 1;
      }
    }
    out += count;
    first += kWord;
  }
}

}  // namespace kelvarin
