// How a text's characters are written as bytes.
#pragma once

#include <optional>
#include <string_view>

#include <QString>

namespace kelvarin {

enum class TextEncoding {
  utf8,
  utf16,  // in the order that the byte order mark or the zero bytes say
  utf16Little,
  utf16Big,
  latin1,
  windows1252,
};

// "UTF-8", "ISO-8859-1", ...
QString nameOfEncoding(TextEncoding encoding);
// In any case, with the common other names; none where it is unknown.
std::optional<TextEncoding> encodingOfName(const QString& name);
QString knownEncodings();

// The encoding that a text seems to have by its first bytes: that of its byte order mark, else
// UTF-16 where every second byte is zero here and there, else UTF-8 where that is possible, else
// Windows-1252, of which Latin-1 is the greater part. A few bytes that are wrong among many
// characters of UTF-8 do not make it another one. `isWhole`: nothing follows.
TextEncoding encodingOfStart(std::string_view start, bool isWhole);

}  // namespace kelvarin
