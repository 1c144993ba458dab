// Texts in the forms that base64, addresses of the web, XML and JSON give them.

#include <QByteArray>
#include <QStringDecoder>

#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

using Text = std::optional<std::string>;

QByteArray bytesOf(std::string_view text) {
  return {text.data(), static_cast<qsizetype>(text.size())};
}

Text base64OfUtf8(std::string_view text) {
  if (text.size() / 3 * 4 > longestResultOf(text)) {
    return std::nullopt;
  }
  return bytesOf(text).toBase64().toStdString();
}

// Null for characters beyond Latin-1.
Text base64OfLatin1(const QString& text) {
  for (const QChar unit : text) {
    if (unit.unicode() > 0xFF) {
      return std::nullopt;
    }
  }
  return text.toLatin1().toBase64().toStdString();
}

// A group of one digit holds no byte; the library would drop it.
std::optional<QByteArray> decodedBase64(std::string_view text) {
  const QByteArray::FromBase64Result decoded =
      QByteArray::fromBase64Encoding(bytesOf(text), QByteArray::AbortOnBase64DecodingErrors);
  if (!decoded || text.size() % 4 == 1) {
    return std::nullopt;
  }
  return decoded.decoded;
}

Text utf8OfBase64(std::string_view text) {
  const std::optional<QByteArray> bytes = decodedBase64(text);
  if (!bytes || !bytes->isValidUtf8()) {
    return std::nullopt;
  }
  return bytes->toStdString();
}

Text latin1OfBase64(std::string_view text) {
  const std::optional<QByteArray> bytes = decodedBase64(text);
  if (!bytes) {
    return std::nullopt;
  }
  return QString::fromLatin1(*bytes).toStdString();
}

// The unreserved characters of RFC 3986 stay.
Text encodedForUrl(std::string_view text) {
  const QByteArray encodedText = bytesOf(text).toPercentEncoding();
  const bool isTooLong = static_cast<std::size_t>(encodedText.size()) > longestResultOf(text);
  return isTooLong ? Text() : encodedText.toStdString();
}

// Writes every character as `replacement` says; an empty one keeps it.
template <typename Replacement>
Text encoded(std::string_view text, Replacement replacement) {
  const std::size_t longest = longestResultOf(text);
  std::string result;
  result.reserve(text.size() + text.size() / 8);
  for (const char& c : text) {
    const std::string_view other = replacement(c);
    result.append(other.empty() ? std::string_view(&c, 1) : other);
    if (result.size() > longest) {
      return std::nullopt;
    }
  }
  return result;
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

Text encodedForXml(std::string_view text) {
  return encoded(text, xmlEntity);
}
Text encodedForJson(std::string_view text) {
  return encoded(text, jsonEscape);
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"atob64", 1, kInString, kText, valueBody<base64OfUtf8>,
     "atob64(x) - encode the utf8 string x to base64"},
    {"b64toa", 1, kInString, kText, valueBody<utf8OfBase64>,
     "b64toa(x) - decode a base64 to a utf8 string"},
    {"atob642", 1, kInString, kText, valueBody<base64OfLatin1>,
     "atob642(x) - encode the latin1 string x to base64"},
    {"b64toa2", 1, kInString, kText, valueBody<latin1OfBase64>,
     "b64toa2(x) - decode a base64 to a latin1 string"},
    {"urlEncode", 1, kInString, kText, valueBody<encodedForUrl>,
     "urlEncode(x) - encode the string x to include in a url"},
    {"xmlEncode", 1, kInString, kText, valueBody<encodedForXml>,
     "xmlEncode(x) - encode the string x to include in xml"},
    {"jsonEncode", 1, kInString, kText, valueBody<encodedForJson>,
     "jsonEncode(x) - encode the string x to include in json"},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> encodings() {
  return kLines;
}

}  // namespace kelvarin
