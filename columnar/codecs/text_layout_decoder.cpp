#include <algorithm>

#include "columnar/codecs/text_layout.h"

namespace kelvarin {

namespace {

constexpr std::size_t kLengthSize = sizeof(std::uint32_t);

// Lengths as they are stored: one for all, or one each of 1, 2 or 4 bytes.
class Lengths {
 public:
  [[nodiscard]] bool take(ByteReader& reader, std::size_t count) {
    std::uint8_t width = 0;
    if (!reader.read(width)) {
      return false;
    }
    m_width = width;
    if (width == 0) {
      return reader.read(m_same);
    }
    return (width == 1 || width == 2 || width == 4) && reader.readBytes(count * width, m_bytes);
  }

  // Calls use(length) for each of them.
  template <typename Use>
  void forEach(std::size_t count, Use use) const {
    switch (m_width) {
      case 0:
        for (std::size_t i = 0; i < count; ++i) {
          use(m_same);
        }
        return;
      case 1:
        return forEachOf<std::uint8_t>(count, use);
      case 2:
        return forEachOf<std::uint16_t>(count, use);
      default:
        return forEachOf<std::uint32_t>(count, use);
    }
  }

  std::uint64_t byteCount(std::size_t count) const {
    if (m_width == 0) {
      return std::uint64_t{byteCountOf(m_same)} * count;
    }
    std::uint64_t sum = 0;
    forEach(count, [&](std::uint32_t length) { sum += byteCountOf(length); });
    return sum;
  }

 private:
  template <typename Length, typename Use>
  void forEachOf(std::size_t count, Use use) const {
    constexpr auto kNull = static_cast<Length>(kNullLength);
    for (std::size_t i = 0; i < count; ++i) {
      const auto length = loadPacked<Length>(m_bytes.data() + i * sizeof(Length));
      use(length == kNull ? kNullLength : std::uint32_t{length});
    }
  }

  int m_width = 0;
  std::uint32_t m_same = 0;
  Bytes m_bytes;
};

// Texts of which only the lengths have been looked at.
struct StoredTexts {
  Lengths lengths;
  std::size_t count = 0;
  Bytes bytes;

  [[nodiscard]] bool take(ByteReader& reader, std::size_t textCount) {
    count = textCount;
    if (!lengths.take(reader, count)) {
      return false;
    }
    const std::uint64_t size = lengths.byteCount(count);
    return size <= reader.remaining() && reader.readBytes(size, bytes);
  }

  // Offsets are 32 bits.
  bool fitsDecoded() const { return count * kLengthSize + bytes.size() <= 0xFFFFFFFF; }
};

// Puts the length before each text. `offsets` has room for all.
void decodeStored(const StoredTexts& stored, ByteBuffer& decoded, std::uint32_t* offsets) {
  // Short texts are copied as 16 bytes, so both ends need a margin.
  constexpr std::size_t kShort = 16;
  const std::size_t size = stored.count * kLengthSize + stored.bytes.size();
  decoded.resize(size + kShort);
  unsigned char* out = decoded.data();
  const unsigned char* in = stored.bytes.data();
  const unsigned char* end = in + stored.bytes.size();
  stored.lengths.forEach(stored.count, [&](std::uint32_t length) {
    *offsets++ = static_cast<std::uint32_t>(out - decoded.data());
    storePacked(out, length);
    out += kLengthSize;
    const std::size_t bytes = byteCountOf(length);
    if (bytes <= kShort && static_cast<std::size_t>(end - in) >= kShort) {
      std::memcpy(out, in, kShort);
    } else if (bytes > 0) {
      std::memcpy(out, in, bytes);
    }
    out += bytes;
    in += bytes;
  });
  decoded.resize(size);
}

bool decodePlain(ByteReader& reader, std::size_t rows, DecodedTexts& texts) {
  StoredTexts stored;
  if (!stored.take(reader, rows) || reader.remaining() != 0 || !stored.fitsDecoded()) {
    return false;
  }
  texts.offsets.resize(rows);
  decodeStored(stored, texts.bytes, texts.offsets.data());
  return true;
}

template <typename Code>
bool areCodesBelow(Bytes codes, std::size_t rows, std::size_t entries) {
  std::size_t largest = 0;
  for (std::size_t i = 0; i < rows; ++i) {
    largest = std::max<std::size_t>(largest, loadPacked<Code>(codes.data() + i * sizeof(Code)));
  }
  return largest < entries;
}

template <typename Code>
bool decodeCodes(Bytes codes, std::size_t rows, const StoredTexts& entries, DecodedTexts& texts) {
  if (!areCodesBelow<Code>(codes, rows, entries.count)) {
    return false;
  }
  std::vector<std::uint32_t> places(entries.count);
  decodeStored(entries, texts.bytes, places.data());
  texts.offsets.resize(rows);
  for (std::size_t i = 0; i < rows; ++i) {
    texts.offsets[i] = places[loadPacked<Code>(codes.data() + i * sizeof(Code))];
  }
  return true;
}

bool decodeDictionary(ByteReader& reader, std::size_t rows, DecodedTexts& texts) {
  std::uint16_t last = 0;
  StoredTexts entries;
  if (!reader.read(last) || !entries.take(reader, last + std::size_t{1}) ||
      !entries.fitsDecoded()) {
    return false;
  }
  const std::size_t codeSize = entries.count <= 256 ? 1 : 2;
  Bytes codes;
  if (reader.remaining() != rows * codeSize || !reader.readBytes(rows * codeSize, codes)) {
    return false;
  }
  return codeSize == 1 ? decodeCodes<std::uint8_t>(codes, rows, entries, texts)
                       : decodeCodes<std::uint16_t>(codes, rows, entries, texts);
}

}  // namespace

ReadStatus decodeTexts(Bytes bytes, std::uint32_t rows, DecodedTexts& texts, int& unknownLayout) {
  ByteReader reader(bytes);
  std::uint8_t layout = 0;
  if (!reader.read(layout)) {
    return ReadStatus::corrupted;
  }
  bool isSound = false;
  switch (static_cast<TextLayout>(layout)) {
    case TextLayout::plain:
      isSound = decodePlain(reader, rows, texts);
      break;
    case TextLayout::dictionary:
      isSound = decodeDictionary(reader, rows, texts);
      break;
    default:
      unknownLayout = layout;
  }
  return isSound ? ReadStatus::ok : ReadStatus::corrupted;
}

}  // namespace kelvarin
