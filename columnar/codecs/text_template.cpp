#include "columnar/codecs/text_template.h"

namespace kelvarin {

namespace {

bool hasWidth(PieceKind kind) {
  return kind == PieceKind::digits || kind == PieceKind::lowerHex || kind == PieceKind::upperHex ||
         kind == PieceKind::decimal;
}

int maxWidth(PieceKind kind) {
  switch (kind) {
    case PieceKind::digits:
      return kMaxDecimalDigits;
    case PieceKind::decimal:
      return kMaxDecimalDigits - 1;
    default:
      return kMaxHexDigits;
  }
}

bool takeBytes(ByteReader& reader, std::string& bytes) {
  std::uint8_t size = 0;
  Bytes taken;
  if (!reader.read(size) || !reader.readBytes(size, taken)) {
    return false;
  }
  bytes = asText(taken);
  return true;
}

bool takePiece(ByteReader& reader, TemplatePiece& piece) {
  std::uint8_t kind = 0;
  std::uint8_t width = 0;
  if (!reader.read(kind) || kind > static_cast<std::uint8_t>(PieceKind::text)) {
    return false;
  }
  piece.kind = static_cast<PieceKind>(kind);
  if (hasWidth(piece.kind)) {
    if (!reader.read(width) || width == 0 || width > maxWidth(piece.kind)) {
      return false;
    }
    piece.width = width;
  }
  unsigned char separator = 0;
  switch (piece.kind) {
    case PieceKind::fixed:
      return takeBytes(reader, piece.bytes);
    case PieceKind::decimal:
      if (!reader.read(separator)) {
        return false;
      }
      piece.bytes.assign(1, static_cast<char>(separator));
      return true;
    case PieceKind::moment:
      return takeBytes(reader, piece.bytes) && MomentPattern().compile(piece.bytes);
    default:
      return true;
  }
}

}  // namespace

void TextTemplate::append(ByteBuffer& out) const {
  out.put(static_cast<std::uint8_t>(pieces.size()));
  for (const TemplatePiece& piece : pieces) {
    out.put(static_cast<std::uint8_t>(piece.kind));
    if (hasWidth(piece.kind)) {
      out.put(static_cast<std::uint8_t>(piece.width));
    }
    if (piece.kind == PieceKind::fixed || piece.kind == PieceKind::moment) {
      out.put(static_cast<std::uint8_t>(piece.bytes.size()));
    }
    out.append(asBytes(piece.bytes));
  }
}

bool TextTemplate::take(ByteReader& reader) {
  std::uint8_t count = 0;
  if (!reader.read(count) || count > kMaxPieces) {
    return false;
  }
  pieces.assign(count, {});
  for (TemplatePiece& piece : pieces) {
    if (!takePiece(reader, piece)) {
      return false;
    }
  }
  return true;
}

std::uint64_t largestNumber(const TemplatePiece& piece) {
  MomentPattern pattern;
  switch (piece.kind) {
    case PieceKind::digits:
      return powerOfTen(piece.width) - 1;
    case PieceKind::varyingDigits:
      return countOfShorterDigits(kMaxDecimalDigits + 1) - 1;
    case PieceKind::lowerHex:
    case PieceKind::upperHex:
      return ~std::uint64_t{0} >> (4 * (kMaxHexDigits - piece.width));
    case PieceKind::moment:
      return pattern.compile(piece.bytes) ? pattern.largest() : 0;
    default:
      return powerOfTen(kMaxDecimalDigits) - 1;
  }
}

}  // namespace kelvarin
