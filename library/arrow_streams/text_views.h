// Views of texts: their beginning beside the size, or all of them where they are short.
//
// Used by: exported_texts.cpp, whole_columns.cpp.
// Threads: any. Errors: std::bad_alloc.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "host/contract/row_batch.h"
#include "library/arrow_streams/null_bits.h"

namespace kelvarin {

inline constexpr std::uint32_t kMaxTextInView = 12;

// The size and the first four bytes; then eight bytes more, or the buffer and the position in it of
// a longer text.
struct TextView {
  std::uint64_t sizeAndBeginning = 0;
  std::uint64_t rest = 0;
};
static_assert(sizeof(TextView) == 16);

namespace text_view {

using Mask = std::pair<std::uint64_t, std::uint64_t>;

constexpr std::uint64_t firstBytes(std::size_t count) {
  return count >= 8 ? ~std::uint64_t{0} : (std::uint64_t{1} << (8 * count)) - 1;
}

constexpr std::array<Mask, kMaxTextInView + 1> masks() {
  std::array<Mask, kMaxTextInView + 1> made;
  for (std::size_t size = 0; size <= kMaxTextInView; ++size) {
    made[size] = {firstBytes(4 + size), size <= 4 ? 0 : firstBytes(size - 4)};
  }
  return made;
}

// By the size of a short text, the bits of its view that count.
inline constexpr std::array<Mask, kMaxTextInView + 1> kMasks = masks();

}  // namespace text_view

// Where a text lies that is too long for its view.
struct TextLocation {
  std::uint32_t buffer = 0;
  std::uint32_t position = 0;
};

// Each entry of the column's dictionary is looked at once; else the text of each row is, also where
// rows share it.
inline bool isViewedByEntries(const RowBatch& batch, const BatchColumn& column) {
  const BatchDictionary& dictionary = column.dictionary();
  return dictionary.isThere() && dictionary.positions.size() <= batch.rowCount();
}

// `locationOf(text, size)` returns the TextLocation of a long text.
template <typename LocationOf>
class TextViewer {
 public:
  TextViewer(const BatchColumn& column, LocationOf locationOf)
      : m_bytes(column.textBytes()),
        m_end(column.textBytes() + column.textSize()),
        m_locationOf(std::move(locationOf)) {}

  // False: the text at the position is null, and its view that of an empty one.
  bool view(std::uint32_t position, TextView& view) {
    const unsigned char* text = m_bytes + position;
    const std::uint32_t size = lengthFromBytes(text);
    if (size <= kMaxTextInView) {
      // A short text lies in memory as in its view, but for what follows.
      if (m_end - text >= static_cast<std::ptrdiff_t>(sizeof view)) {
        std::memcpy(&view, text, sizeof view);
        view.sizeAndBeginning &= text_view::kMasks[size].first;
        view.rest &= text_view::kMasks[size].second;
      } else {
        view = {};
        std::memcpy(&view, text, sizeof size + size);
      }
      return true;
    }
    if (size == kNullTextLength) {
      view = {};
      return false;
    }
    const TextLocation location = m_locationOf(text + sizeof size, size);
    std::memcpy(&view.sizeAndBeginning, text, sizeof view.sizeAndBeginning);
    view.rest = location.buffer | std::uint64_t{location.position} << 32;
    return true;
  }

  // Of all rows of the batch. Each entry of a dictionary is looked at once, however many rows have
  // it.
  void viewRows(const RowBatch& batch, const BatchColumn& column, TextView* views,
                NullBits& nulls) {
    if (isViewedByEntries(batch, column)) {
      viewByEntries(batch, column.dictionary(), views, nulls);
      return;
    }
    const std::uint32_t* positions = column.textPositions();
    forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
      if (!view(positions[stored], views[row])) {
        nulls.add(row, batch.rowCount());
      }
    });
  }

 private:
  void viewByEntries(const RowBatch& batch, const BatchDictionary& dictionary, TextView* views,
                     NullBits& nulls) {
    std::vector<TextView> entries(dictionary.positions.size());
    std::vector<char> isNull(dictionary.positions.size());
    bool hasNull = false;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      isNull[i] = view(dictionary.positions[i], entries[i]) ? 0 : 1;
      hasNull |= isNull[i] != 0;
    }
    forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
      views[row] = entries[dictionary.codes[stored]];
    });
    if (hasNull) {
      forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
        if (isNull[dictionary.codes[stored]] != 0) {
          nulls.add(row, batch.rowCount());
        }
      });
    }
  }

  const unsigned char* m_bytes;
  const unsigned char* m_end;
  LocationOf m_locationOf;
};

}  // namespace kelvarin
