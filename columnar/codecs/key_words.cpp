#include "columnar/codecs/key_words.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kelvarin {

namespace {

using Words = std::span<const std::uint32_t>;

constexpr std::size_t kWordsOfOneBit = kKeysInGroup / 32;
constexpr std::size_t kWordsInHead = 4;

// Reads words from the front.
class WordReader {
 public:
  explicit WordReader(Words words) : m_words(words) {}

  bool take(std::size_t count, Words& words) {
    if (count > m_words.size()) {
      return false;
    }
    words = m_words.first(count);
    m_words = m_words.subspan(count);
    return true;
  }
  bool take(std::uint32_t& word) {
    Words words;
    if (!take(1, words)) {
      return false;
    }
    word = words[0];
    return true;
  }
  bool skip(std::size_t count) {
    Words skipped;
    return take(count, skipped);
  }
  Words rest() const { return m_words; }

 private:
  Words m_words;
};

std::span<const unsigned char> bytesOf(Words words) {
  return {reinterpret_cast<const unsigned char*>(words.data()), words.size() * sizeof(words[0])};
}

// Whether bytes are the padding of a word.
bool isFill(std::span<const unsigned char> bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte == 0; });
}

// Whether the words are exactly `count` numbers of at most 5 bytes, with the top bit set in the
// last byte of each, padded with zeros to a whole word.
bool isVariableByteTail(Words words, std::uint32_t count) {
  constexpr unsigned char kLastByte = 0x80;
  constexpr std::size_t kLongest = 5;
  constexpr unsigned char kHighestFifthByte = kLastByte | 0x0F;
  const auto bytes = bytesOf(words);
  std::size_t next = 0;
  for (; count > 0; --count) {
    std::size_t length = 1;
    while (next < bytes.size() && bytes[next] < kLastByte) {
      ++next;
      ++length;
    }
    if (next == bytes.size() || length > kLongest ||
        (length == kLongest && bytes[next] > kHighestFifthByte)) {
      return false;
    }
    ++next;
  }
  const auto fill = bytes.subspan(next);
  return fill.size() < sizeof(std::uint32_t) && isFill(fill);
}

using ExceptionCounts = std::array<std::size_t, kWidestKey + 1>;

// Reads for each group of a page: its width, the number of exceptions and, if there are any, the
// width of the widest one and their positions.
bool readGroups(std::span<const unsigned char> bytes, std::uint32_t groups,
                std::size_t& packedWords, ExceptionCounts& exceptions) {
  std::size_t next = 0;
  for (; groups > 0; --groups) {
    if (bytes.size() - next < 2 || bytes[next] > kWidestKey) {
      return false;
    }
    const std::size_t width = bytes[next];
    const std::size_t count = bytes[next + 1];
    next += 2;
    packedWords += width * kWordsOfOneBit;
    if (count == 0) {
      continue;
    }
    if (count > kKeysInGroup || bytes.size() - next < 1 + count) {
      return false;
    }
    const std::size_t widest = bytes[next];
    const auto positions = bytes.subspan(next + 1, count);
    if (widest <= width || widest > kWidestKey ||
        std::any_of(positions.begin(), positions.end(),
                    [](unsigned char position) { return position >= kKeysInGroup; })) {
      return false;
    }
    exceptions[widest - width] += count;
    next += 1 + count;
  }
  return next == bytes.size();
}

std::size_t wordsOfExceptions(std::size_t count, std::size_t width) {
  return count / 32 * width + (count % 32 * width + 31) / 32;
}

// Exceptions of one bit take no words; the others are in one list for each width.
bool skipExceptions(WordReader& reader, const ExceptionCounts& exceptions) {
  std::uint32_t widths = 0;
  if (!reader.take(widths) || (widths & 1) != 0) {
    return false;
  }
  for (std::size_t width = 2; width <= kWidestKey; ++width) {
    const bool isListed = (widths >> (width - 1) & 1) != 0;
    std::uint32_t count = 0;
    if (isListed && !reader.take(count)) {
      return false;
    }
    if (isListed != (count > 0) || count != exceptions[width] ||
        !reader.skip(wordsOfExceptions(count, width))) {
      return false;
    }
  }
  return true;
}

bool skipPage(WordReader& reader, std::uint32_t keys) {
  std::uint32_t toMeta = 0;
  Words packed;
  std::uint32_t byteCount = 0;
  Words byteWords;
  if (!reader.take(toMeta) || toMeta == 0 || !reader.take(toMeta - 1, packed) ||
      !reader.take(byteCount) ||
      !reader.take((std::size_t{byteCount} + 3) / sizeof(std::uint32_t), byteWords)) {
    return false;
  }
  std::size_t packedWords = 0;
  ExceptionCounts exceptions{};
  return isFill(bytesOf(byteWords).subspan(byteCount)) &&
         readGroups(bytesOf(byteWords).first(byteCount), keys / kKeysInGroup, packedWords,
                    exceptions) &&
         packedWords == packed.size() && skipExceptions(reader, exceptions);
}

bool skipGroupsUnderOneHead(WordReader& reader, std::uint32_t keys) {
  Words head;
  if (!reader.take(kWordsInHead, head)) {
    return false;
  }
  std::size_t packedWords = 0;
  for (std::uint32_t i = 0; i < kGroupsUnderOneHead; ++i) {
    const std::uint32_t width = head[i / 4] >> (24 - 8 * (i % 4)) & 0xFF;
    if (width > kWidestKey || (i >= keys / kKeysInGroup && width != 0)) {
      return false;
    }
    packedWords += width * kWordsOfOneBit;
  }
  return reader.skip(packedWords);
}

// The first word is the number of packed keys: all but the rest, which is smaller than a group.
bool takePackedCount(WordReader& reader, std::uint32_t keys) {
  std::uint32_t count = 0;
  return reader.take(count) && count == keys / kKeysInGroup * kKeysInGroup;
}

// Packed keys come in parts, the last one shorter, and the tail follows.
bool areKeyWords(Words words, std::uint32_t keys, std::uint32_t keysInPart,
                 bool (*skipPart)(WordReader& reader, std::uint32_t keys)) {
  WordReader reader(words);
  if (!takePackedCount(reader, keys)) {
    return false;
  }
  std::uint32_t left = keys / kKeysInGroup * kKeysInGroup;
  while (left > 0) {
    const std::uint32_t inPart = std::min(left, keysInPart);
    if (!skipPart(reader, inPart)) {
      return false;
    }
    left -= inPart;
  }
  return isVariableByteTail(reader.rest(), keys % kKeysInGroup);
}

}  // namespace

bool arePlainKeyWords(Words words, std::uint32_t keys) {
  return areKeyWords(words, keys, kKeysInPage, skipPage);
}

bool areSortedKeyWords(Words words, std::uint32_t keys) {
  return areKeyWords(words, keys, kGroupsUnderOneHead * kKeysInGroup, skipGroupsUnderOneHead);
}

}  // namespace kelvarin
