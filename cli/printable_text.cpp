#include "cli/printable_text.h"

#include <algorithm>

#include <QList>
#include <QStringDecoder>

#include <fmt/format.h>

namespace kelvarin {

namespace {

bool isBetween(char32_t point, char32_t first, char32_t last) {
  return point >= first && point <= last;
}

bool isControl(char32_t point) {
  return point < 0x20 || isBetween(point, 0x7F, 0x9F);
}

// Marks, embeddings, overrides and isolates of the direction, and separators of lines.
bool changesDirection(char32_t point) {
  return point == 0x061C || isBetween(point, 0x200E, 0x200F) || isBetween(point, 0x2028, 0x202E) ||
         isBetween(point, 0x2066, 0x2069);
}

// The bytes of the UTF-8 character that `text` begins with; 0 when it begins with none.
std::size_t sizeOfCharacter(std::string_view text, char32_t& point) {
  constexpr std::size_t kLongest = 4;
  for (std::size_t size = 1; size <= std::min(kLongest, text.size()); ++size) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString character = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(size)));
    const QList<uint> points = character.toUcs4();
    if (!decoder.hasError() && points.size() == 1 && points[0] != QChar::ReplacementCharacter) {
      point = points[0];
      return size;
    }
  }
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  point = QChar::ReplacementCharacter;
  return text.starts_with(kReplacement) ? kReplacement.size() : 0;
}

}  // namespace

std::string printable(std::string_view text, LineBreaks lineBreaks) {
  std::string result;
  while (!text.empty()) {
    const auto first = static_cast<unsigned char>(text[0]);
    char32_t point = first;
    const std::size_t size = first < 0x80 ? 1 : sizeOfCharacter(text, point);
    const bool isKept = (first == '\n' || first == '\t') && lineBreaks == LineBreaks::keep;
    if (size == 0 || (isControl(point) && !isKept)) {
      result += fmt::format(
          "\\x{:02x}", static_cast<unsigned>(point == QChar::ReplacementCharacter ? first : point));
    } else if (changesDirection(point)) {
      result += fmt::format("\\u{{{:x}}}", static_cast<unsigned>(point));
    } else {
      result += text.substr(0, size);
    }
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return result;
}

}  // namespace kelvarin
