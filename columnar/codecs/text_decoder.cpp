#include <algorithm>
#include <numeric>

#include "columnar/codecs/code_array.h"
#include "columnar/codecs/text_encoding.h"

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

  bool areEqual() const { return m_width == 0; }

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

// Texts of which only the lengths have been read.
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

  // Offsets have 32 bits.
  bool fitsDecoded() const { return count * kLengthSize + bytes.size() <= 0xFFFFFFFF; }
};

// Writes each text with its length before it. `offsets` has an element for each.
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
  if (!stored.take(reader, rows) || reader.remaining() != 0) {
    return false;
  }
  if (stored.lengths.areEqual() && stored.bytes.empty()) {
    stored.count = 1;  // one null or empty text stands for all rows
  }
  if (!stored.fitsDecoded()) {
    return false;
  }
  texts.offsets.resize(stored.count);
  decodeStored(stored, texts.bytes, texts.offsets.data());
  return true;
}

// The entries of a dictionary in their order, and how many bytes each shares with the previous one.
struct StoredEntries {
  Lengths lengths;
  std::size_t count = 0;
  std::vector<std::uint8_t> shared;
  std::uint64_t size = 0;  // of all texts, whole
  Bytes bytes;             // what is not shared

  [[nodiscard]] bool take(ByteReader& reader, std::size_t textCount) {
    count = textCount;
    std::uint8_t bits = 0;
    Bytes packed;
    if (!lengths.take(reader, count) || !reader.read(bits) || bits > 8 ||
        !reader.readBytes(packedBitsSize(count, bits), packed)) {
      return false;
    }
    shared.resize(count);
    LoadedCodes(packed.data(), count, *codeWidthOf(bits))
        .forEachBatch([&](std::size_t first, std::span<const std::uint32_t> batch) {
          std::transform(batch.begin(), batch.end(), shared.data() + first,
                         [](std::uint32_t code) { return static_cast<std::uint8_t>(code); });
          return true;
        });
    return areSharesSound() && reader.readBytes(reader.remaining(), bytes) &&
           bytes.size() == size - sharedSize() && fitsDecoded();
  }

 private:
  // No entry shares more bytes than it or the previous one has.
  bool areSharesSound() {
    std::size_t before = 0;
    std::size_t index = 0;
    bool isSound = true;
    lengths.forEach(count, [&](std::uint32_t length) {
      const std::size_t bytesOfText = byteCountOf(length);
      isSound &= shared[index] <= std::min(before, bytesOfText);
      size += bytesOfText;
      before = bytesOfText;
      ++index;
    });
    return isSound;
  }
  std::uint64_t sharedSize() const {
    return std::accumulate(shared.begin(), shared.end(), std::uint64_t{0});
  }
  bool fitsDecoded() const { return count * kLengthSize + size <= 0xFFFFFFFF; }
};

// Writes each text with its length before it. `offsets` has an element for each.
void decodeEntries(const StoredEntries& stored, ByteBuffer& decoded, std::uint32_t* offsets) {
  decoded.resize(stored.count * kLengthSize + stored.size);
  unsigned char* out = decoded.data();
  const unsigned char* in = stored.bytes.data();
  const unsigned char* before = nullptr;
  const std::uint8_t* shared = stored.shared.data();
  stored.lengths.forEach(stored.count, [&](std::uint32_t length) {
    *offsets++ = static_cast<std::uint32_t>(out - decoded.data());
    storePacked(out, length);
    out += kLengthSize;
    const std::size_t rest = byteCountOf(length) - *shared;
    const unsigned char* text = out;
    out = std::copy_n(before, *shared++, out);
    out = std::copy_n(in, rest, out);
    in += rest;
    before = text;
  });
}

bool decodeDictionary(ByteReader& reader, std::size_t rows, DecodedTexts& texts) {
  std::uint16_t last = 0;
  std::uint8_t bits = 0;
  Bytes codes;
  StoredEntries entries;
  if (!reader.read(last) || !reader.read(bits) || bits > 16 || last >> bits != 0 ||
      !reader.readBytes(codesSize(rows, *codeWidthOf(bits)), codes) ||
      !entries.take(reader, last + std::size_t{1})) {
    return false;
  }
  // There is an offset for every value of a code.
  std::vector<std::uint32_t> entryOffsets(std::size_t{1} << bits);
  decodeEntries(entries, texts.bytes, entryOffsets.data());
  // Codes of 0 bits are all equal, so one text stands for all rows.
  const std::size_t stored = bits == 0 ? 1 : rows;
  texts.offsets.resize(stored);
  return LoadedCodes(codes.data(), stored, *codeWidthOf(bits))
      .forEachBatch([&](std::size_t first, std::span<const std::uint32_t> batch) {
        for (std::size_t i = 0; i < batch.size(); ++i) {
          texts.offsets[first + i] = entryOffsets[batch[i]];
        }
        return largestOf(batch) <= last;
      });
}

}  // namespace

ReadStatus decodeTexts(Bytes bytes, std::uint32_t rows, DecodedTexts& texts, int& unknownEncoding) {
  ByteReader reader(bytes);
  std::uint8_t encoding = 0;
  if (!reader.read(encoding)) {
    return ReadStatus::corrupted;
  }
  bool isSound = false;
  switch (static_cast<TextEncoding>(encoding)) {
    case TextEncoding::plain:
      isSound = decodePlain(reader, rows, texts);
      break;
    case TextEncoding::dictionary:
      isSound = decodeDictionary(reader, rows, texts);
      break;
    default:
      unknownEncoding = encoding;
  }
  return isSound ? ReadStatus::ok : ReadStatus::corrupted;
}

}  // namespace kelvarin
