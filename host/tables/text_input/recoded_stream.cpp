#include "host/tables/text_input/recoded_stream.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kelvarin {

namespace {

constexpr std::size_t kRawSize = 32 * 1024;
// A byte becomes three at most, and so does a unit of two bytes with what was left before it.
constexpr std::size_t kMaxGrowth = 3;
constexpr char kNoUtf8 = '\xFF';

// From 0x80 on, where it differs from Latin-1. Bytes without a character are control characters, as
// in browsers.
constexpr char16_t kWindows1252[32] = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

char* putTrail(unsigned code, int shift, char* target) {
  *target = static_cast<char>(0x80 | ((code >> shift) & 0x3F));
  return target + 1;
}

// Halves of characters become three bytes that are no UTF-8.
char* putCharacter(unsigned code, char* target) {
  if (code < 0x80) {
    *target++ = static_cast<char>(code);
  } else if (code < 0x800) {
    *target++ = static_cast<char>(0xC0 | code >> 6);
    target = putTrail(code, 0, target);
  } else if (code < 0x10000) {
    *target++ = static_cast<char>(0xE0 | code >> 12);
    target = putTrail(code, 0, putTrail(code, 6, target));
  } else {
    *target++ = static_cast<char>(0xF0 | code >> 18);
    target = putTrail(code, 0, putTrail(code, 6, putTrail(code, 12, target)));
  }
  return target;
}

}  // namespace

RecodedStream::RecodedStream(ByteStream& source, TextEncoding encoding)
    : m_source(source),
      m_encoding(encoding),
      m_raw(kRawSize, '\0'),
      m_text(kMaxGrowth * (kRawSize + 2), '\0') {}

Result<ByteStream::Piece, QString> RecodedStream::readNext(char* bytes, std::size_t size,
                                                           std::size_t atLeast) {
  std::size_t done = 0;
  while (done < size) {
    if (m_textUsed < m_textSize) {
      const std::size_t copied = std::min(size - done, m_textSize - m_textUsed);
      std::memcpy(bytes + done, m_text.data() + m_textUsed, copied);
      done += copied;
      m_textUsed += copied;
      continue;
    }
    if (m_isSourceRead) {
      return Piece{done, true};
    }
    const Result<Piece, QString> got = m_source.readNext(
        m_raw.data() + m_rawKept, m_raw.size() - m_rawKept, done < atLeast ? 1 : 0);
    if (!got) {
      return done > 0 ? Result<Piece, QString>(Piece{done, false}) : got;
    }
    if (got->size == 0 && !got->isLast) {
      break;
    }
    m_isSourceRead = got->isLast;
    recode(std::string_view(m_raw).substr(0, m_rawKept + got->size));
    if (m_isSourceRead) {
      finish();
    }
  }
  return Piece{done, false};
}

void RecodedStream::recode(std::string_view raw) {
  const bool hasUnits =
      m_encoding == TextEncoding::utf16Little || m_encoding == TextEncoding::utf16Big;
  const char* end = hasUnits ? recodeUnits(raw, m_text.data()) : recodeBytes(raw, m_text.data());
  m_textSize = static_cast<std::size_t>(end - m_text.data());
  m_textUsed = 0;
}

char* RecodedStream::recodeBytes(std::string_view raw, char* target) const {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  const bool isWindows = m_encoding == TextEncoding::windows1252;
  for (std::size_t at = 0; at < raw.size();) {
    std::uint64_t word = kHighBits;
    if (raw.size() - at >= sizeof word) {
      std::memcpy(&word, raw.data() + at, sizeof word);
    }
    if ((word & kHighBits) == 0) {
      std::memcpy(target, &word, sizeof word);
      target += sizeof word;
      at += sizeof word;
      continue;
    }
    const unsigned byte = static_cast<unsigned char>(raw[at++]);
    const bool isOther = isWindows && byte >= 0x80 && byte < 0xA0;
    target = putCharacter(isOther ? kWindows1252[byte - 0x80] : byte, target);
  }
  return target;
}

char* RecodedStream::recodeUnits(std::string_view raw, char* target) {
  const std::size_t high = m_encoding == TextEncoding::utf16Little ? 1 : 0;
  std::size_t at = 0;
  for (; at + 1 < raw.size(); at += 2) {
    const unsigned unit = static_cast<unsigned>(static_cast<unsigned char>(raw[at + high])) << 8 |
                          static_cast<unsigned char>(raw[at + 1 - high]);
    if (unit < 0x80 && m_firstHalf == 0) [[likely]] {
      *target++ = static_cast<char>(unit);
    } else {
      target = putUnit(unit, target);
    }
  }
  m_rawKept = raw.size() - at;
  m_raw[0] = m_rawKept > 0 ? raw[at] : '\0';
  return target;
}

char* RecodedStream::putUnit(unsigned unit, char* target) {
  const bool isSecondHalf = unit >= 0xDC00 && unit < 0xE000;
  if (m_firstHalf != 0) {
    const unsigned first = m_firstHalf;
    m_firstHalf = 0;
    if (isSecondHalf) {
      return putCharacter(0x10000 + ((first - 0xD800) << 10) + (unit - 0xDC00), target);
    }
    target = putCharacter(first, target);
  }
  if (unit >= 0xD800 && unit < 0xDC00) {
    m_firstHalf = unit;
    return target;
  }
  return putCharacter(unit, target);
}

// What the text ends within is no character.
void RecodedStream::finish() {
  if (m_firstHalf != 0 || m_rawKept > 0) {
    m_text[m_textSize++] = kNoUtf8;
  }
}

}  // namespace kelvarin
