#include <algorithm>

#include "columnar/codecs/code_array.h"
#include "columnar/codecs/front_coded_texts.h"
#include "columnar/codecs/integer_column.h"
#include "columnar/codecs/nested_texts.h"
#include "columnar/codecs/shaped_text_decoder.h"
#include "columnar/codecs/short_number.h"
#include "columnar/codecs/stored_lengths.h"
#include "columnar/codecs/symbol_texts.h"
#include "columnar/codecs/text_limits.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

namespace {

// Texts of which only the lengths have been read.
struct StoredTexts {
  StoredLengths lengths;
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
  constexpr std::size_t kShort = 16;  // copied as so many bytes
  const std::size_t size = stored.count * kLengthSize + stored.bytes.size();
  decoded.resize(size + kTextMargin);
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

// Notes which text each row has, where that spares looking at most of them.
void keepEntries(std::span<const std::uint32_t> offsets, std::size_t rows, TextLevel level,
                 DecodedTexts& texts) {
  if (level == TextLevel::chunk && offsets.size() <= DecodedTexts::maxEntries(rows)) {
    texts.entries.assign(offsets.begin(), offsets.end());
    texts.codes.resize(rows);
  }
}

bool decodeDictionary(ByteReader& reader, std::size_t rows, TextLevel level, DecodedTexts& texts) {
  std::uint16_t last = 0;
  std::uint8_t bits = 0;
  Bytes codes;
  if (!reader.read(last) || !reader.read(bits) || bits > 16 || last >> bits != 0 ||
      !reader.readBytes(codesSize(rows, *codeWidthOf(bits)), codes) ||
      !decodeFrontCoded(reader, last + std::size_t{1}, texts)) {
    return false;
  }
  // There is an offset for every value of a code.
  std::vector<std::uint32_t> entryOffsets = std::move(texts.offsets);
  // Codes of 0 bits are all equal, so one text stands for all rows.
  const std::size_t stored = bits == 0 ? 1 : rows;
  keepEntries(entryOffsets, stored, level, texts);
  entryOffsets.resize(std::size_t{1} << bits);
  texts.offsets.resize(stored);
  return LoadedCodes(codes.data(), stored, *codeWidthOf(bits))
      .forEachBatch([&](std::size_t first, std::span<const std::uint32_t> batch) {
        for (std::size_t i = 0; i < batch.size(); ++i) {
          texts.offsets[first + i] = entryOffsets[batch[i]];
        }
        if (!texts.codes.empty()) {
          std::copy(batch.begin(), batch.end(), texts.codes.data() + first);
        }
        return largestOf(batch) <= last;
      });
}

// Sets the offset of each row to that of its entry.
bool resolveCodes(IntegerColumn& codes, std::span<const std::uint32_t> entryOffsets,
                  DecodedTexts& texts) {
  for (std::size_t row = 0; row < texts.offsets.size();) {
    const std::span<const std::uint64_t> next = codes.nextNumbers();
    if (next.empty()) {
      return false;
    }
    std::transform(next.begin(), next.end(), texts.offsets.data() + row,
                   [&](std::uint64_t code) { return entryOffsets[code]; });
    if (!texts.codes.empty()) {
      std::copy(next.begin(), next.end(), texts.codes.data() + row);
    }
    row += next.size();
  }
  return true;
}

bool decodeEncodedDictionary(ByteReader& reader, std::size_t rows, TextLevel level,
                             DecodedTexts& texts) {
  const TextLevel inner =
      level == TextLevel::chunk ? TextLevel::entries : TextLevel::entriesOfField;
  std::uint32_t statedRows = 0;
  std::uint16_t last = 0;
  IntegerColumn codes;
  DecodedTexts entries;
  const std::uint64_t maxSize = maxDecodedSize(reader.remaining());
  if (!reader.read(statedRows) || statedRows != rows || !reader.read(last) ||
      !codes.take(reader, rows, last) || (!codes.isConstant() && rows * kLengthSize > maxSize) ||
      !readNestedTexts(reader, last + std::size_t{1}, inner, entries) || reader.remaining() != 0) {
    return false;
  }
  if (entries.offsets.size() == 1) {
    entries.offsets.resize(last + std::size_t{1}, entries.offsets[0]);
  }
  texts.bytes = std::move(entries.bytes);
  if (codes.isConstant()) {
    if (!codes.hasNext()) {
      return false;
    }
    texts.offsets.assign(1, entries.offsets[codes.number()]);
    return true;
  }
  keepEntries(entries.offsets, rows, level, texts);
  texts.offsets.resize(rows);
  return resolveCodes(codes, entries.offsets, texts);
}

bool decode(TextEncoding encoding, ByteReader& reader, std::size_t count, TextLevel level,
            TextForm form, DecodedTexts& texts) {
  switch (encoding) {
    case TextEncoding::plain:
      return decodePlain(reader, count, texts);
    case TextEncoding::dictionary:
      return decodeDictionary(reader, count, level, texts);
    case TextEncoding::shaped:
      return decodeShapedTexts(reader, count, form, texts);
    case TextEncoding::symbols:
      return decodeSymbolTexts(reader, count, texts);
    case TextEncoding::encodedDictionary:
      return decodeEncodedDictionary(reader, count, level, texts);
    case TextEncoding::frontCoded:
      return decodeFrontCoded(reader, count, texts);
    case TextEncoding::codedEntries:
      return decodeCodedEntries(reader, count, texts);
  }
  return false;
}

}  // namespace

bool isAllowedAt(TextEncoding encoding, TextLevel level) {
  const bool isInDictionary = level == TextLevel::entries || level == TextLevel::entriesOfField;
  switch (encoding) {
    case TextEncoding::plain:
    case TextEncoding::symbols:
      return true;
    case TextEncoding::dictionary:
    case TextEncoding::encodedDictionary:
      return !isInDictionary;
    case TextEncoding::shaped:
      return level == TextLevel::chunk || level == TextLevel::entries;
    case TextEncoding::frontCoded:
    case TextEncoding::codedEntries:
      return isInDictionary;
  }
  return false;
}

bool decodeTextsAt(Bytes bytes, std::size_t count, TextLevel level, TextForm form,
                   DecodedTexts& texts) {
  texts.entries.clear();
  texts.codes.clear();
  texts.shaped.reset();
  ByteReader reader(bytes);
  std::uint8_t encoding = 0;
  return reader.read(encoding) && isAllowedAt(static_cast<TextEncoding>(encoding), level) &&
         decode(static_cast<TextEncoding>(encoding), reader, count, level, form, texts);
}

bool readNestedTexts(ByteReader& reader, std::size_t count, TextLevel level, DecodedTexts& texts) {
  std::uint64_t size = 0;
  Bytes bytes;
  return readShortNumber(reader, size) && reader.readBytes(size, bytes) &&
         decodeTextsAt(bytes, count, level, TextForm::made, texts);
}

ReadStatus decodeTexts(Bytes bytes, std::uint32_t rows, TextForm form, DecodedTexts& texts,
                       int& unknownEncoding) {
  if (!bytes.empty() && !isAllowedAt(static_cast<TextEncoding>(bytes[0]), TextLevel::chunk)) {
    unknownEncoding = bytes[0];
  }
  return rows > 0 && decodeTextsAt(bytes, rows, TextLevel::chunk, form, texts)
             ? ReadStatus::ok
             : ReadStatus::corrupted;
}

}  // namespace kelvarin
