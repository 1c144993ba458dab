#include "host/tables/arrow_formats/ipc_footer.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "arrow/buffer.h"
#include "arrow/result.h"

namespace kelvarin {

namespace {

using Bytes = std::string_view;

template <typename Value>
std::optional<Value> valueAt(Bytes bytes, std::uint64_t at) {
  if (at > bytes.size() || bytes.size() - at < sizeof(Value)) {
    return std::nullopt;
  }
  Value value;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

// A table of the FlatBuffers format, in which the metadata of Arrow files are: an offset to a list
// of where its fields are, of which those that have their default are left out.
class MetadataTable {
 public:
  MetadataTable(Bytes bytes, std::uint64_t at) : m_bytes(bytes), m_at(at) {
    const auto back = valueAt<std::int32_t>(bytes, at);
    m_list = back ? static_cast<std::uint64_t>(static_cast<std::int64_t>(at) - *back) : UINT64_MAX;
  }
  static MetadataTable root(Bytes bytes) {
    return {bytes, valueAt<std::uint32_t>(bytes, 0).value_or(UINT32_MAX)};
  }

  template <typename Value>
  std::optional<Value> value(std::size_t field) const {
    const auto at = positionOf(field);
    return at ? valueAt<Value>(m_bytes, *at) : std::nullopt;
  }
  // What a field refers to: a table or a list.
  std::optional<std::uint64_t> target(std::size_t field) const {
    const auto at = positionOf(field);
    const auto offset = at ? valueAt<std::uint32_t>(m_bytes, *at) : std::nullopt;
    return offset ? std::optional(*at + *offset) : std::nullopt;
  }

 private:
  std::optional<std::uint64_t> positionOf(std::size_t field) const {
    const std::uint64_t entry = 4 + 2 * field;
    const auto size = valueAt<std::uint16_t>(m_bytes, m_list);
    if (!size || entry + 2 > *size) {
      return std::nullopt;
    }
    const auto offset = valueAt<std::uint16_t>(m_bytes, m_list + entry);
    return offset && *offset != 0 ? std::optional(m_at + *offset) : std::nullopt;
  }

  Bytes m_bytes;
  std::uint64_t m_at;
  std::uint64_t m_list;
};

// Where a record batch is.
struct Block {
  std::int64_t offset;
  std::int32_t headSize;
};

std::shared_ptr<arrow::Buffer> read(arrow::io::RandomAccessFile& file, std::int64_t offset,
                                    std::int64_t size) {
  const std::int64_t fileSize = file.GetSize().ValueOr(0);
  if (offset < 0 || size <= 0 || offset > fileSize || size > fileSize - offset) {
    return nullptr;
  }
  const auto bytes = file.ReadAt(offset, size);
  return bytes.ok() && (*bytes)->size() == size ? *bytes : nullptr;
}

Bytes viewOf(const arrow::Buffer& buffer) {
  return {reinterpret_cast<const char*>(buffer.data()), static_cast<std::size_t>(buffer.size())};
}

std::optional<std::vector<Block>> recordBatches(arrow::io::RandomAccessFile& file) {
  constexpr std::size_t kRecordBatches = 3;  // of the fields
  constexpr std::uint64_t kBlockSize = 24;
  constexpr std::uint64_t kHeadSizeAt = 8;
  constexpr std::int64_t kTailSize = 10;  // the footer's size, and six letters
  const std::int64_t fileSize = file.GetSize().ValueOr(0);
  const auto tail = read(file, fileSize - kTailSize, kTailSize);
  const auto size = tail == nullptr ? std::nullopt : valueAt<std::int32_t>(viewOf(*tail), 0);
  const auto footer =
      size ? read(file, fileSize - kTailSize - *size, *size) : std::shared_ptr<arrow::Buffer>();
  if (footer == nullptr) {
    return std::nullopt;
  }
  const Bytes bytes = viewOf(*footer);
  std::vector<Block> blocks;
  const auto list = MetadataTable::root(bytes).target(kRecordBatches);
  const auto count = list ? valueAt<std::uint32_t>(bytes, *list) : std::optional(0u);
  if (!count || *count > bytes.size() / kBlockSize) {
    return std::nullopt;
  }
  for (std::uint64_t i = 0; i < *count; ++i) {
    const std::uint64_t at = *list + 4 + i * kBlockSize;
    const auto offset = valueAt<std::int64_t>(bytes, at);
    const auto headSize = valueAt<std::int32_t>(bytes, at + kHeadSizeAt);
    if (!offset || !headSize) {
      return std::nullopt;
    }
    blocks.push_back({*offset, *headSize});
  }
  return blocks;
}

// By its head, which has its size before it, and in newer files a mark before that.
std::optional<std::int64_t> rowsOf(arrow::io::RandomAccessFile& file, const Block& block) {
  constexpr std::uint32_t kMark = 0xFFFFFFFFu;
  constexpr std::size_t kHeader = 2;                        // of the fields of a message
  constexpr std::size_t kLength = 0;                        // of those of a record batch
  constexpr std::int64_t kMaxRows = std::int64_t{1} << 35;  // so that their sum is a number, too
  const auto head = read(file, block.offset, block.headSize);
  if (head == nullptr) {
    return std::nullopt;
  }
  Bytes bytes = viewOf(*head);
  const std::size_t before = valueAt<std::uint32_t>(bytes, 0) == kMark ? 8 : 4;
  bytes.remove_prefix(std::min(before, bytes.size()));
  const auto batch = MetadataTable::root(bytes).target(kHeader);
  if (!batch) {
    return std::nullopt;
  }
  const auto rows = MetadataTable(bytes, *batch).value<std::int64_t>(kLength).value_or(0);
  return rows >= 0 && rows <= kMaxRows ? std::optional(rows) : std::nullopt;
}

}  // namespace

std::optional<std::vector<std::int64_t>> rowsOfRecordBatches(arrow::io::RandomAccessFile& file) {
  const auto blocks = recordBatches(file);
  if (!blocks) {
    return std::nullopt;
  }
  std::vector<std::int64_t> rows;
  for (const Block& block : *blocks) {
    const auto count = rowsOf(file, block);
    if (!count) {
      return std::nullopt;
    }
    rows.push_back(*count);
  }
  return rows;
}

}  // namespace kelvarin
