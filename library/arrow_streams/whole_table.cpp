#include "library/arrow_streams/whole_table.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>
#include <utility>

#include "library/arrow_streams/large_pages.h"

namespace kelvarin {

namespace {

// What an array of packed texts needs beside its offsets.
struct PackedMemory {
  std::shared_ptr<const void> offsets;
  std::shared_ptr<const void> bytes;
};

template <typename Offset>
void storeOffsets(std::span<const std::uint32_t> ends, std::size_t base, unsigned char* bytes) {
  auto* offsets = reinterpret_cast<Offset*>(bytes);
  *offsets = static_cast<Offset>(base);
  for (const std::uint32_t end : ends) {
    *++offsets = static_cast<Offset>(base + end);
  }
}

std::size_t offsetSizeOf(TextFormat texts) {
  return texts == TextFormat::utf8 ? sizeof(std::int32_t) : sizeof(std::int64_t);
}

}  // namespace

WholeTable::WholeTable(std::shared_ptr<WholeColumns> columns, TextFormat texts)
    : m_columns(std::move(columns)), m_texts(texts) {}

void WholeTable::begin(const TableColumns& columns) {
  if (m_columns->begin(columns)) {
    m_parts.resize(columns.types.size());
  }
}

// Rows that nobody has written belong behind all others, as long as none is missing: then nothing
// from there on has been used but for rows that come later, further behind. Else they leave by
// themselves.
std::vector<OwnedArray> WholeTable::take(const RowBatch& batch,
                                         std::unique_ptr<EncodedBatch> encoded) {
  if (encoded == nullptr && m_isWhole) {
    encoded = m_columns->encodeAt(batch, static_cast<std::int64_t>(m_end));
  }
  std::vector<OwnedArray> arrays;
  if (encoded == nullptr) {
    finishArray(arrays);
    std::ranges::move(exportedBatch(batch, {m_texts}, m_memory), std::back_inserter(arrays));
    return arrays;
  }
  const auto& written = static_cast<const WrittenRows&>(*encoded);
  if (written.first != m_end || !hasSpaceForTexts(written)) {
    finishArray(arrays);
    m_first = m_end = written.first;
  }
  append(written);
  return arrays;
}

std::vector<OwnedArray> WholeTable::end() {
  std::vector<OwnedArray> arrays;
  finishArray(arrays);
  return arrays;
}

bool WholeTable::hasSpaceForTexts(const WrittenRows& written) const {
  for (std::size_t i = 0; i < m_parts.size() && m_texts == TextFormat::utf8; ++i) {
    if (m_parts[i].packed.size + written.columns[i].packed.size() > INT_MAX) {
      return false;
    }
  }
  return true;
}

void WholeTable::append(const WrittenRows& written) {
  m_end = written.first + written.count;
  for (std::size_t i = 0; i < m_parts.size(); ++i) {
    m_parts[i].nulls.add(written.columns[i].nulls, written.first, written.count);
    if (m_columns->columns()[i].valueSize == 0) {
      appendPacked(written, m_parts[i].packed, written.columns[i].packed);
    }
  }
}

void WholeTable::appendPacked(const WrittenRows& written, PackedTexts& all,
                              const WrittenRows::PackedTexts& texts) const {
  const std::size_t offsetSize = offsetSizeOf(m_texts);
  if (all.offsets == nullptr) {
    all.offsets = largeBytes((m_columns->mostRows() + 1) * offsetSize);
  }
  const std::size_t size = texts.size();
  if (all.bytes == nullptr || all.size + size > all.capacity) {
    grow(all, all.size + size, written);
  }
  unsigned char* const offsets = all.offsets.get() + written.first * offsetSize;
  if (m_texts == TextFormat::utf8) {
    storeOffsets<std::int32_t>(texts.allEnds(), all.size, offsets);
  } else {
    storeOffsets<std::int64_t>(texts.allEnds(), all.size, offsets);
  }
  if (size > 0) {
    std::memcpy(all.bytes.get() + all.size, texts.bytes.get(), size);
  }
  all.size += size;
}

// As much as all rows will take if they are like those so far, and a reserve: what is not written
// takes no memory.
void WholeTable::grow(PackedTexts& texts, std::size_t least, const WrittenRows& written) const {
  const std::size_t rowsSoFar = written.first + written.count - m_first;
  const std::size_t rowsAhead = m_columns->mostRows() - m_first;
  const double expected =
      static_cast<double>(least) / static_cast<double>(rowsSoFar) * static_cast<double>(rowsAhead);
  const std::size_t capacity = least + least / 2 + static_cast<std::size_t>(expected * 1.25);
  auto larger = largeBytes(capacity);
  if (texts.size > 0) {
    std::memcpy(larger.get(), texts.bytes.get(), texts.size);
  }
  texts.bytes = std::move(larger);
  texts.capacity = capacity;
}

void WholeTable::finishArray(std::vector<OwnedArray>& arrays) {
  m_isWhole = false;
  if (m_end > m_first) {
    std::vector<std::unique_ptr<ExportedColumn>> columns;
    columns.reserve(m_parts.size());
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
      columns.push_back(exported(i));
    }
    arrays.push_back(arrayOfTable(std::move(columns), m_end - m_first));
  }
  m_first = m_end;
  for (Part& part : m_parts) {
    part = {};
  }
}

std::unique_ptr<ExportedColumn> WholeTable::exported(std::size_t index) {
  const WholeColumns::Column& column = m_columns->columns()[index];
  Part& part = m_parts[index];
  auto made = std::make_unique<ExportedColumn>();
  made->offset = m_first;
  part.nulls.cover(m_end);
  made->nulls = std::move(part.nulls);
  if (column.valueSize == 0) {
    made->buffers = {part.packed.offsets.get(), part.packed.bytes.get()};
    made->made = std::make_shared<PackedMemory>(
        PackedMemory{std::move(part.packed.offsets), std::move(part.packed.bytes)});
    return made;
  }
  made->owner = column.values;
  made->buffers = {column.values.get()};
  if (column.pieces != nullptr) {
    auto texts = std::make_shared<TextPieces::Buffers>(column.pieces->buffers());
    for (const auto& memory : texts->memory) {
      made->buffers.push_back(memory.get());
    }
    made->buffers.push_back(texts->sizes.data());
    made->made = std::move(texts);
  }
  return made;
}

}  // namespace kelvarin
