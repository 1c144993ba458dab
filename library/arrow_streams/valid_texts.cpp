#include "library/arrow_streams/valid_texts.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include <emmintrin.h>

#include <QString>
#include <QUtf8StringView>

#include "host/tables/files/column_memory.h"

namespace kelvarin {

namespace {

__m128i bytesAt(const char* address) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(address));
}

bool isAscii(std::string_view text) {
  const char* next = text.data();
  const char* const end = next + text.size();
  __m128i bits = _mm_setzero_si128();
  for (; end - next >= 64; next += 64) {
    bits = _mm_or_si128(bits, _mm_or_si128(_mm_or_si128(bytesAt(next), bytesAt(next + 16)),
                                           _mm_or_si128(bytesAt(next + 32), bytesAt(next + 48))));
  }
  for (; end - next >= 16; next += 16) {
    bits = _mm_or_si128(bits, bytesAt(next));
  }
  unsigned char last = 0;
  for (; next < end; ++next) {
    last = static_cast<unsigned char>(last | static_cast<unsigned char>(*next));
  }
  return _mm_movemask_epi8(bits) == 0 && last < 0x80;
}

bool isUtf8(std::string_view text) {
  return isAscii(text) ||
         QUtf8StringView(text.data(), static_cast<qsizetype>(text.size())).isValidUtf8();
}

// The texts and their counts, which are below 128, all at once.
bool isBufferAscii(const RowBatch& batch, const BatchColumn& column) {
  constexpr std::size_t kBytesAtOnce = 4096;
  constexpr std::size_t kMaxForARow = 256;  // else the buffer is that of many more rows
  if (column.textSize() > batch.rowCount() * kMaxForARow) {
    return false;
  }
  const std::string_view all(reinterpret_cast<const char*>(column.textBytes()), column.textSize());
  for (std::size_t begin = 0; begin < all.size(); begin += kBytesAtOnce) {
    if (!isAscii(all.substr(begin, kBytesAtOnce))) {
      return false;
    }
  }
  return true;
}

// Where many rows share few texts, only those are looked at.
bool areAllUtf8(const RowBatch& batch, const BatchColumn& column) {
  if (isBufferAscii(batch, column)) {
    return true;
  }
  const auto isValidAt = [&](std::uint32_t position) {
    return isUtf8(textFromBytes(column.textBytes() + position));
  };
  const BatchDictionary& dictionary = column.dictionary();
  if (dictionary.isThere() && dictionary.positions.size() <= batch.rowCount()) {
    return std::ranges::all_of(dictionary.positions, isValidAt);
  }
  bool areValid = true;
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    areValid = areValid && isValidAt(column.textPositions()[stored]);
  });
  return areValid;
}

struct Repaired {
  std::vector<unsigned char> bytes;
  std::vector<std::uint32_t> positions;  // of the stored rows; others than the batch's are null
};

void append(std::string_view text, Repaired& repaired) {
  const QByteArray valid =
      QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUtf8();
  const std::size_t begin = repaired.bytes.size();
  const std::size_t size = 4 + static_cast<std::size_t>(valid.size());
  if (begin + size > UINT32_MAX) {
    throw std::bad_alloc();
  }
  repaired.bytes.resize(begin + size);
  putText(repaired.bytes.data() + begin, valid.data(), size - 4);
}

}  // namespace

BatchColumn withValidTexts(const RowBatch& batch, const BatchColumn& column) {
  if (areAllUtf8(batch, column)) {
    return column;
  }
  auto repaired = std::make_shared<Repaired>();
  repaired->bytes.resize(4);
  putNullText(repaired->bytes.data());
  repaired->positions.resize(batch.storedRows());
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    const unsigned char* text = column.text(stored);
    if (!isNullText(text)) {
      repaired->positions[stored] = static_cast<std::uint32_t>(repaired->bytes.size());
      append(textFromBytes(text), *repaired);
    }
  });
  return BatchColumn::ofTexts(column.type(), repaired, repaired->bytes.data(),
                              repaired->positions.data(), repaired->bytes.size());
}

}  // namespace kelvarin
