#include "library/arrow_streams/exported_texts.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "library/arrow_streams/valid_texts.h"

namespace kelvarin {

namespace {

constexpr std::uint32_t kMaxInside = 12;
// Positions in a buffer have 31 bits, so a large buffer is shown as several, each of which begins
// so many bytes after the one before and is long enough for any text that begins there.
constexpr std::size_t kBufferStep = std::size_t{1} << 30;
constexpr std::size_t kLongestBuffer = INT_MAX;

// See imported_texts.cpp.
struct TextView {
  std::uint32_t size = 0;
  char beginning[4] = {};
  std::uint32_t rest[2] = {};  // the next eight bytes, or buffer and position
};
static_assert(sizeof(TextView) == 16);

// What the array needs beside the batch's texts.
struct Views {
  std::shared_ptr<TextView[]> views;
  std::vector<std::int64_t> sizes;   // of the buffers
  std::vector<unsigned char> bytes;  // of a copy
};

// How far texts reach in their buffer, which views point to.
class ViewedTexts {
 public:
  explicit ViewedTexts(const BatchColumn& column) : m_bytes(column.textBytes()) {}

  // Of the null text an empty one.
  TextView viewAt(std::size_t position) {
    const unsigned char* text = m_bytes + position;
    const std::uint32_t size = lengthFromBytes(text);
    TextView view;
    if (size == kNullTextLength) {
      return view;
    }
    view.size = size;
    if (size <= kMaxInside) {
      std::memcpy(view.beginning, text + 4, size);
      return view;
    }
    const std::size_t begin = position + 4;
    std::memcpy(view.beginning, text + 4, 4);
    view.rest[0] = static_cast<std::uint32_t>(begin / kBufferStep);
    view.rest[1] = static_cast<std::uint32_t>(begin % kBufferStep);
    m_end = std::max(m_end, begin + size);
    return view;
  }
  bool isNullAt(std::size_t position) const { return isNullText(m_bytes + position); }
  std::size_t end() const { return m_end; }

 private:
  const unsigned char* m_bytes;
  std::size_t m_end = 0;
};

void makeViewsOfRows(const RowBatch& batch, const BatchColumn& column, ViewedTexts& texts,
                     TextView* views, ExportedColumn& made) {
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
    const std::size_t position = column.textPositions()[stored];
    views[row] = texts.viewAt(position);
    if (texts.isNullAt(position)) {
      made.addNull(row);
    }
  });
}

// Each text is looked at once, however many rows have it.
void makeViewsOfEntries(const RowBatch& batch, const BatchDictionary& dictionary,
                        ViewedTexts& texts, TextView* views, ExportedColumn& made) {
  std::vector<TextView> entries;
  std::vector<char> isNull;
  bool hasNull = false;
  entries.reserve(dictionary.positions.size());
  for (const std::uint32_t position : dictionary.positions) {
    entries.push_back(texts.viewAt(position));
    isNull.push_back(texts.isNullAt(position) ? 1 : 0);
    hasNull |= isNull.back() != 0;
  }
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
    views[row] = entries[dictionary.codes[stored]];
  });
  if (hasNull) {
    forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
      if (isNull[dictionary.codes[stored]] != 0) {
        made.addNull(row);
      }
    });
  }
}

// How far the buffer is used.
std::size_t makeViews(const RowBatch& batch, const BatchColumn& column, TextView* views,
                      ExportedColumn& made) {
  ViewedTexts texts(column);
  const BatchDictionary& dictionary = column.dictionary();
  if (dictionary.isThere() && dictionary.positions.size() <= batch.rowCount()) {
    makeViewsOfEntries(batch, dictionary, texts, views, made);
  } else {
    makeViewsOfRows(batch, column, texts, views, made);
  }
  return texts.end();
}

// Few texts for many rows are copied: the batch's column has more bytes for each row beside them.
const unsigned char* keptTexts(const RowBatch& batch, const BatchColumn& column, std::size_t used,
                               ExportedColumn& made, Views& views) {
  if (used > batch.rowCount() * sizeof(std::uint32_t)) {
    made.owner = column.owner();
    return column.textBytes();
  }
  views.bytes.assign(column.textBytes(), column.textBytes() + used);
  return views.bytes.data();
}

std::unique_ptr<ExportedColumn> exportedViews(const RowBatch& batch, const BatchColumn& column,
                                              std::shared_ptr<TextView[]> memory) {
  auto made = std::make_unique<ExportedColumn>(batch.rowCount());
  auto views = std::make_shared<Views>();
  views->views = std::move(memory);
  const std::size_t used = makeViews(batch, column, views->views.get(), *made);
  made->buffers = {made->validity(), views->views.get()};
  const unsigned char* const bytes = keptTexts(batch, column, used, *made, *views);
  for (std::size_t begin = 0; begin < used; begin += kBufferStep) {
    made->buffers.push_back(bytes + begin);
    views->sizes.push_back(static_cast<std::int64_t>(std::min(used - begin, kLongestBuffer)));
  }
  made->buffers.push_back(views->sizes.data());
  made->made = std::move(views);
  return made;
}

std::size_t sizeOfTexts(const RowBatch& batch, const BatchColumn& column) {
  std::size_t size = 0;
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    size += textFromBytes(column.text(stored)).size();
  });
  return size;
}

template <typename Offset>
struct PackedTexts {
  std::shared_ptr<Offset[]> offsets;
  std::shared_ptr<char[]> bytes;
};

template <typename Offset>
std::unique_ptr<ExportedColumn> exportedPacked(const RowBatch& batch, const BatchColumn& column,
                                               std::size_t index, ArrayMemory& memory) {
  auto made = std::make_unique<ExportedColumn>(batch.rowCount());
  auto texts = std::make_shared<PackedTexts<Offset>>();
  texts->offsets = memory.allocate<Offset>(index, batch.rowCount() + 1);
  texts->bytes = memory.allocate<char>(index, sizeOfTexts(batch, column));
  std::size_t size = 0;
  texts->offsets[0] = 0;
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
    const unsigned char* bytes = column.text(stored);
    const std::string_view text = textFromBytes(bytes);
    if (isNullText(bytes)) {
      made->addNull(row);
    } else {
      text.copy(texts->bytes.get() + size, text.size());
      size += text.size();
    }
    texts->offsets[row + 1] = static_cast<Offset>(size);
  });
  made->buffers = {made->validity(), texts->offsets.get(), texts->bytes.get()};
  made->made = std::move(texts);
  return made;
}

}  // namespace

void ExportedColumn::addNull(std::size_t row) {
  if (bits.empty()) {
    bits.assign((rowCount + 7) / 8, 0xFF);
  }
  bits[row / 8] = static_cast<unsigned char>(bits[row / 8] & ~(1u << (row % 8)));
  ++nullCount;
}

std::unique_ptr<ExportedColumn> exportedTexts(const RowBatch& batch, std::size_t index,
                                              TextFormat format, ArrayMemory& memory) {
  const BatchColumn column = withValidTexts(batch, batch.column(index));
  switch (format) {
    case TextFormat::utf8:
      return exportedPacked<std::int32_t>(batch, column, index, memory);
    case TextFormat::largeUtf8:
      return exportedPacked<std::int64_t>(batch, column, index, memory);
    default:
      return exportedViews(batch, column, memory.allocate<TextView>(index, batch.rowCount()));
  }
}

bool fitsSmallOffsets(const RowBatch& batch) {
  return std::ranges::all_of(batch.columns(), [&](const BatchColumn& column) {
    // Rows may share their texts, so that together they take more than the buffer.
    return fixedSizeOf(column.type()) != 0 || sizeOfTexts(batch, column) <= INT_MAX;
  });
}

}  // namespace kelvarin
