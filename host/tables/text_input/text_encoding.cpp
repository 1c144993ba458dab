#include "host/tables/text_input/text_encoding.h"

#include <algorithm>
#include <iterator>

#include <QStringList>

namespace kelvarin {

namespace {

using Byte = unsigned char;

struct EncodingName {
  const char* name;
  TextEncoding encoding;
};

// The first name of each is the one that is shown.
constexpr EncodingName kNames[] = {
    {"UTF-8", TextEncoding::utf8},
    {"UTF-16", TextEncoding::utf16},
    {"UTF-16LE", TextEncoding::utf16Little},
    {"UTF-16BE", TextEncoding::utf16Big},
    {"ISO-8859-1", TextEncoding::latin1},
    {"windows-1252", TextEncoding::windows1252},
    {"UTF8", TextEncoding::utf8},
    {"Latin-1", TextEncoding::latin1},
    {"Latin1", TextEncoding::latin1},
    {"CP1252", TextEncoding::windows1252},
};
constexpr std::size_t kShownNames = 6;

// Line ends, separators, blanks and digits have one in every two bytes, other characters seldom.
std::optional<TextEncoding> encodingByZeros(std::string_view start) {
  constexpr std::size_t kLooked = 4096;
  constexpr std::size_t kMinShare = 16;
  constexpr std::size_t kClearly = 4;
  const std::size_t size = std::min(start.size(), kLooked) & ~std::size_t{1};
  std::size_t zeros[2] = {0, 0};
  for (std::size_t i = 0; i < size; ++i) {
    zeros[i % 2] += start[i] == '\0' ? 1 : 0;
  }
  const auto areOf = [&](std::size_t offset) {
    return zeros[offset] * kMinShare >= size / 2 && zeros[offset] > kClearly * zeros[1 - offset];
  };
  if (areOf(1)) {
    return TextEncoding::utf16Little;
  }
  return areOf(0) ? std::optional(TextEncoding::utf16Big) : std::nullopt;
}

// How many bytes the character at the start of `text` has, more than there are where the text is
// cut within it; 0 where there is none.
std::size_t sizeOfUtf8(std::string_view text) {
  const auto first = static_cast<Byte>(text[0]);
  if (first < 0x80) {
    return 1;
  }
  if (first < 0xC2 || first > 0xF4) {
    return 0;
  }
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  const auto isNext = [](char c) { return (static_cast<Byte>(c) & 0xC0) == 0x80; };
  return std::ranges::all_of(text.substr(1, size - 1), isNext) ? size : 0;
}

bool isMostlyUtf8(std::string_view text, bool isWhole) {
  constexpr std::size_t kCharactersForWrongByte = 10;
  std::size_t characters = 0;
  std::size_t wrong = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = sizeOfUtf8(text.substr(at));
    const bool isCut = size > text.size() - at;
    characters += size > 1 && !isCut ? 1 : 0;
    wrong += size == 0 || (isCut && isWhole) ? 1 : 0;
    at += std::max<std::size_t>(size, 1);
  }
  return wrong * kCharactersForWrongByte <= characters;
}

}  // namespace

QString nameOfEncoding(TextEncoding encoding) {
  return QString::fromLatin1(std::ranges::find(kNames, encoding, &EncodingName::encoding)->name);
}

std::optional<TextEncoding> encodingOfName(const QString& name) {
  const auto* found = std::ranges::find_if(kNames, [&](const EncodingName& known) {
    return name.compare(QLatin1String(known.name), Qt::CaseInsensitive) == 0;
  });
  return found == std::end(kNames) ? std::nullopt : std::optional(found->encoding);
}

QString knownEncodings() {
  QStringList names;
  for (std::size_t i = 0; i < kShownNames; ++i) {
    names += QString::fromLatin1(kNames[i].name);
  }
  return names.join(QStringLiteral(", "));
}

TextEncoding encodingOfStart(std::string_view start, bool isWhole) {
  using std::string_view_literals::operator""sv;
  // That of UTF-32 begins like that of UTF-16.
  if (start.starts_with("\xFF\xFE"sv) && !start.starts_with("\xFF\xFE\0\0"sv)) {
    return TextEncoding::utf16Little;
  }
  if (start.starts_with("\xFE\xFF"sv)) {
    return TextEncoding::utf16Big;
  }
  if (start.starts_with("\xEF\xBB\xBF"sv)) {
    return TextEncoding::utf8;
  }
  if (const auto byZeros = encodingByZeros(start)) {
    return *byZeros;
  }
  return isMostlyUtf8(start, isWhole) ? TextEncoding::utf8 : TextEncoding::windows1252;
}

}  // namespace kelvarin
