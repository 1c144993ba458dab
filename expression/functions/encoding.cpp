// Texts in the forms that base64, addresses of the web, XML and JSON give them.

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include <QByteArrayView>

#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"
#include "expression/functions/utf8_units.h"

namespace kelvarin {

namespace {

constexpr char kBase64Digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kNoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> base64Values() {
  std::array<std::uint8_t, 256> values{};
  values.fill(kNoDigit);
  for (std::uint8_t i = 0; i < 64; ++i) {
    values[static_cast<unsigned char>(kBase64Digits[i])] = i;
  }
  return values;
}

constexpr std::array<std::uint8_t, 256> kBase64Values = base64Values();

// Groups of three bytes as four digits, the last one filled up with "=".
std::string_view base64Of(TextArena& arena, std::string_view bytes) {
  const std::size_t size = (bytes.size() + 2) / 3 * 4;
  char* const digits = arena.allocate(size);
  char* next = digits;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      const char byte = i + k < bytes.size() ? bytes[i + k] : '\0';
      group = group << 8 | static_cast<unsigned char>(byte);
    }
    for (int shift = 18; shift >= 0; shift -= 6) {
      *next++ = kBase64Digits[group >> shift & 0x3F];
    }
  }
  for (std::size_t filled = bytes.size(); filled % 3 != 0; ++filled) {
    *--next = '=';
  }
  return {digits, size};
}

ColumnText base64OfUtf8(TextArena& arena, std::string_view text) {
  if (text.size() / 3 * 4 > longestResultOf(text)) {
    return {};
  }
  return ColumnText(base64Of(arena, text));
}

// One byte a character; nothing for characters beyond Latin-1.
std::optional<std::string_view> latin1Of(TextArena& arena, std::string_view text) {
  if (isAscii(text)) {
    return text;
  }
  const QString units = qstringOf(text);
  char* const bytes = arena.allocate(static_cast<std::size_t>(units.size()));
  char* next = bytes;
  for (const QChar unit : units) {
    if (unit.unicode() > 0xFF) {
      return std::nullopt;
    }
    *next++ = static_cast<char>(unit.unicode());
  }
  return std::string_view(bytes, next);
}

ColumnText base64OfLatin1(TextArena& arena, std::string_view text) {
  const std::optional<std::string_view> bytes = latin1Of(arena, text);
  return bytes ? ColumnText(base64Of(arena, *bytes)) : ColumnText();
}

// Signs that fill up the last group may be missing, but for a group of one digit, which holds no
// byte.
std::optional<std::string_view> decodedBase64(TextArena& arena, std::string_view text) {
  constexpr std::size_t kGroup = 4;
  if (text.size() % kGroup == 1) {
    return std::nullopt;
  }
  if (text.size() % kGroup == 0) {
    for (int i = 0; i < 2 && text.ends_with('='); ++i) {
      text.remove_suffix(1);
    }
  }
  char* const bytes = arena.allocate(text.size());
  char* next = bytes;
  std::uint32_t bits = 0;
  int bitCount = 0;
  for (const char digit : text) {
    const std::uint8_t value = kBase64Values[static_cast<unsigned char>(digit)];
    if (value == kNoDigit) {
      return std::nullopt;
    }
    bits = bits << 6 | value;
    bitCount += 6;
    if (bitCount >= 8) {
      bitCount -= 8;
      *next++ = static_cast<char>(bits >> bitCount);
    }
  }
  const auto size = static_cast<std::size_t>(next - bytes);
  arena.shrink(text.size() - size);
  return std::string_view(bytes, size);
}

ColumnText utf8OfBase64(TextArena& arena, std::string_view text) {
  const std::optional<std::string_view> bytes = decodedBase64(arena, text);
  const bool isText =
      bytes && QByteArrayView(bytes->data(), static_cast<qsizetype>(bytes->size())).isValidUtf8();
  return isText ? ColumnText(*bytes) : ColumnText();
}

ColumnText latin1OfBase64(TextArena& arena, std::string_view text) {
  const std::optional<std::string_view> decoded = decodedBase64(arena, text);
  if (!decoded) {
    return {};
  }
  char* const bytes = arena.allocate(2 * decoded->size());
  char* next = bytes;
  for (const char c : *decoded) {
    next = appendLatin1(next, static_cast<unsigned char>(c));
  }
  const auto size = static_cast<std::size_t>(next - bytes);
  arena.shrink(2 * decoded->size() - size);
  return ColumnText({bytes, size});
}

// Every character as `replacement` says, which is longer; an empty one keeps it.
template <typename Replacement>
ColumnText encoded(TextArena& arena, std::string_view text, Replacement replacement) {
  std::size_t size = 0;
  for (const char c : text) {
    size += std::max<std::size_t>(replacement(c).size(), 1);
  }
  if (size == text.size()) {
    return ColumnText(text);
  }
  if (size > longestResultOf(text)) {
    return {};
  }
  char* const bytes = arena.allocate(size);
  char* next = bytes;
  for (const char& c : text) {
    const std::string_view other = replacement(c);
    next = other.empty() ? std::copy_n(&c, 1, next) : std::copy(other.begin(), other.end(), next);
  }
  return ColumnText({bytes, size});
}

using UrlEscape = std::array<char, 3>;

constexpr std::array<UrlEscape, 256> urlEscapes() {
  constexpr char kHexadecimal[] = "0123456789ABCDEF";
  std::array<UrlEscape, 256> escapes{};
  for (unsigned code = 0; code < escapes.size(); ++code) {
    escapes[code] = {'%', kHexadecimal[code >> 4], kHexadecimal[code & 0xF]};
  }
  return escapes;
}

constexpr std::array<UrlEscape, 256> kUrlEscapes = urlEscapes();

// The unreserved characters of RFC 3986 stay.
std::string_view urlEscape(char c) {
  const char lower = static_cast<char>(c | 0x20);
  const bool isUnreserved = (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
                            c == '.' || c == '_' || c == '~';
  if (isUnreserved) {
    return {};
  }
  const UrlEscape& escape = kUrlEscapes[static_cast<unsigned char>(c)];
  return {escape.data(), escape.size()};
}

std::string_view xmlEntity(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&apos;";
    default:
      return {};
  }
}

constexpr const char* kControlEscapes[] = {
    "\\u0000", "\\u0001", "\\u0002", "\\u0003", "\\u0004", "\\u0005", "\\u0006", "\\u0007",
    "\\b",     "\\t",     "\\n",     "\\u000b", "\\f",     "\\r",     "\\u000e", "\\u000f",
    "\\u0010", "\\u0011", "\\u0012", "\\u0013", "\\u0014", "\\u0015", "\\u0016", "\\u0017",
    "\\u0018", "\\u0019", "\\u001a", "\\u001b", "\\u001c", "\\u001d", "\\u001e", "\\u001f"};

std::string_view jsonEscape(char c) {
  const auto code = static_cast<unsigned char>(c);
  if (code < std::size(kControlEscapes)) {
    return kControlEscapes[code];
  }
  if (c == '"') {
    return "\\\"";
  }
  return c == '\\' ? std::string_view("\\\\") : std::string_view();
}

ColumnText encodedForUrl(TextArena& arena, std::string_view text) {
  return encoded(arena, text, urlEscape);
}
ColumnText encodedForXml(TextArena& arena, std::string_view text) {
  return encoded(arena, text, xmlEntity);
}
ColumnText encodedForJson(TextArena& arena, std::string_view text) {
  return encoded(arena, text, jsonEscape);
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"atob64", 1, kInString, kText, valueBodies<base64OfUtf8>,
     "atob64(x) - encode the utf8 string x to base64"},
    {"b64toa", 1, kInString, kText, valueBodies<utf8OfBase64>,
     "b64toa(x) - decode a base64 to a utf8 string"},
    {"atob642", 1, kInString, kText, valueBodies<base64OfLatin1>,
     "atob642(x) - encode the latin1 string x to base64"},
    {"b64toa2", 1, kInString, kText, valueBodies<latin1OfBase64>,
     "b64toa2(x) - decode a base64 to a latin1 string"},
    {"urlEncode", 1, kInString, kText, valueBodies<encodedForUrl>,
     "urlEncode(x) - encode the string x to include in a url"},
    {"xmlEncode", 1, kInString, kText, valueBodies<encodedForXml>,
     "xmlEncode(x) - encode the string x to include in xml"},
    {"jsonEncode", 1, kInString, kText, valueBodies<encodedForJson>,
     "jsonEncode(x) - encode the string x to include in json"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> encodings() {
  return kLines;
}

}  // namespace kelvarin
