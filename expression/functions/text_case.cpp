// Lower case, upper case, and the case that comparisons without regard to case use. The same in
// every locale.

#include <cstdint>
#include <cstring>
#include <optional>

#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"
#include "expression/functions/utf8_units.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t everyByte(std::uint8_t byte) {
  return 0x0101010101010101ull * byte;
}

// The other case of the letters from `first` to `last` among eight bytes of ASCII.
template <char first, char last>
std::uint64_t otherCase(std::uint64_t bytes) {
  const std::uint64_t fromFirst = bytes + everyByte(0x80 - first);
  const std::uint64_t behindLast = bytes + everyByte(0x7F - last);
  constexpr std::uint64_t kHighBits = everyByte(0x80);
  constexpr int kFromHighBitToCase = 2;
  return bytes ^ ((fromFirst & ~behindLast & kHighBits) >> kFromHighBitToCase);
}

// Eight bytes at a time, the last ones together with some of those before.
template <char first, char last>
ColumnText asciiInOtherCase(TextArena& arena, std::string_view text) {
  using Word = std::uint64_t;
  char* result = arena.allocate(text.size());
  const auto convert = [&](std::size_t begin, std::size_t size) {
    Word word = 0;
    std::memcpy(&word, text.data() + begin, size);
    word = otherCase<first, last>(word);
    std::memcpy(result + begin, &word, size);
  };
  if (text.size() < sizeof(Word)) {
    convert(0, text.size());
    return ColumnText({result, text.size()});
  }
  for (std::size_t i = 0; i + sizeof(Word) <= text.size(); i += sizeof(Word)) {
    convert(i, sizeof(Word));
  }
  convert(text.size() - sizeof(Word), sizeof(Word));
  return ColumnText({result, text.size()});
}

struct LowerCase {
  static constexpr char kFirst = 'A';
  static constexpr char kLast = 'Z';
  static constexpr unsigned kFirstLatin = 0x80;        // the letters that change, as the second of
  static constexpr unsigned kLastLatin = 0x9E;         // their two bytes
  static constexpr std::string_view kOthers = "\x97";  // no letter, or changes in another way
};

struct FoldedCase : LowerCase {
  static constexpr std::string_view kOthers = "\x97\x9F";  // the latter becomes two letters
};

struct UpperCase {
  static constexpr char kFirst = 'a';
  static constexpr char kLast = 'z';
  static constexpr unsigned kFirstLatin = 0xA0;
  static constexpr unsigned kLastLatin = 0xBE;
  static constexpr std::string_view kOthers = "\x9F\xB7\xBF";
};

// ASCII and the letters of U+00C0 to U+00FF, nearly all of Western European texts; nothing for any
// other. Letters keep their size.
template <typename Case>
std::optional<ColumnText> latinInOtherCase(TextArena& arena, std::string_view text) {
  constexpr char kLead = '\xC3';
  constexpr int kCaseBit = 0x20;
  char* result = arena.allocate(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool isLetter = c >= Case::kFirst && c <= Case::kLast;
    result[i] = isLetter ? static_cast<char>(c ^ kCaseBit) : c;
    if (static_cast<signed char>(c) >= 0) {
      continue;
    }
    const char second = i + 1 < text.size() ? text[i + 1] : '\0';
    const auto code = static_cast<unsigned char>(second);
    if (c != kLead || (code & 0xC0) != 0x80 ||
        Case::kOthers.find(second) != std::string_view::npos) {
      return std::nullopt;
    }
    const bool changes = code >= Case::kFirstLatin && code <= Case::kLastLatin;
    result[++i] = changes ? static_cast<char>(code ^ kCaseBit) : second;
  }
  return ColumnText({result, text.size()});
}

template <typename Case>
std::optional<ColumnText> inOtherCase(TextArena& arena, std::string_view text) {
  return isAscii(text) ? asciiInOtherCase<Case::kFirst, Case::kLast>(arena, text)
                       : latinInOtherCase<Case>(arena, text);
}

ColumnText lowered(TextArena& arena, std::string_view text) {
  const std::optional<ColumnText> result = inOtherCase<LowerCase>(arena, text);
  return result ? *result : textIn(arena, qstringOf(text).toLower());
}
ColumnText raised(TextArena& arena, std::string_view text) {
  const std::optional<ColumnText> result = inOtherCase<UpperCase>(arena, text);
  return result ? *result : textIn(arena, qstringOf(text).toUpper());
}
ColumnText folded(TextArena& arena, std::string_view text) {
  const std::optional<ColumnText> result = inOtherCase<FoldedCase>(arena, text);
  return result ? *result : textIn(arena, qstringOf(text).toCaseFolded());
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"tolower", 1, kInString, kText, valueBodies<lowered>,
     "tolower(s) - Converts the string s to lowercase characters."},
    {"toupper", 1, kInString, kText, valueBodies<raised>,
     "toupper(s) - Converts the string s to uppercase characters."},
    {"toCaseFolded", 1, kInString, kText, valueBodies<folded>,
     "toCaseFolded(s) - Converts the string s to CaseFolded characters."},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> textCase() {
  return kLines;
}

}  // namespace kelvarin
