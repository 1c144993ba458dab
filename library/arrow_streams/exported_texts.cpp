#include "library/arrow_streams/exported_texts.h"

#include <algorithm>
#include <climits>

#include "library/arrow_streams/text_views.h"
#include "library/arrow_streams/valid_texts.h"

namespace kelvarin {

namespace {

// Positions in a buffer have 31 bits, so a large buffer is shown as several, each of which begins
// so many bytes after the one before and is long enough for any text that begins there.
constexpr std::size_t kBufferStep = std::size_t{1} << 30;
constexpr std::size_t kLongestBuffer = INT_MAX;

// What the array needs beside the batch's texts.
struct Views {
  std::shared_ptr<TextView[]> views;
  std::vector<std::int64_t> sizes;   // of the buffers
  std::vector<unsigned char> bytes;  // of a copy
};

// How far the batch's buffer is used, where the views point to.
std::size_t makeViews(const RowBatch& batch, const BatchColumn& column, TextView* views,
                      NullBits& nulls) {
  std::size_t used = 0;
  TextViewer viewer(column, [&](const unsigned char* text, std::uint32_t size) {
    const auto begin = static_cast<std::size_t>(text - column.textBytes());
    used = std::max(used, begin + size);
    return TextLocation{static_cast<std::uint32_t>(begin / kBufferStep),
                        static_cast<std::uint32_t>(begin % kBufferStep)};
  });
  viewer.viewRows(batch, column, views, nulls);
  return used;
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
  auto made = std::make_unique<ExportedColumn>();
  auto views = std::make_shared<Views>();
  views->views = std::move(memory);
  const std::size_t used = makeViews(batch, column, views->views.get(), made->nulls);
  made->buffers = {views->views.get()};
  const unsigned char* const bytes = keptTexts(batch, column, used, *made, *views);
  for (std::size_t begin = 0; begin < used; begin += kBufferStep) {
    made->buffers.push_back(bytes + begin);
    views->sizes.push_back(static_cast<std::int64_t>(std::min(used - begin, kLongestBuffer)));
  }
  made->buffers.push_back(views->sizes.data());
  made->made = std::move(views);
  return made;
}

template <typename Offset>
struct PackedTexts {
  std::shared_ptr<Offset[]> offsets;
  std::shared_ptr<char[]> bytes;
};

template <typename Offset>
std::unique_ptr<ExportedColumn> exportedPacked(const RowBatch& batch, const BatchColumn& column,
                                               std::size_t index, ArrayMemory& memory) {
  auto made = std::make_unique<ExportedColumn>();
  auto texts = std::make_shared<PackedTexts<Offset>>();
  texts->offsets = memory.allocate<Offset>(index, batch.rowCount() + 1);
  texts->bytes = memory.allocate<char>(index, sizeOfTexts(batch, column));
  texts->offsets[0] = 0;
  packTexts(batch, column, texts->bytes.get(), texts->offsets.get() + 1, made->nulls);
  made->buffers = {texts->offsets.get(), texts->bytes.get()};
  made->made = std::move(texts);
  return made;
}

}  // namespace

std::size_t sizeOfTexts(const RowBatch& batch, const BatchColumn& column) {
  std::size_t size = 0;
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    size += textFromBytes(column.text(stored)).size();
  });
  return size;
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
