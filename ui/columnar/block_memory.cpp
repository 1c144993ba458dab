#include "ui/columnar/block_memory.h"

#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kAssumedTextLength = 16;
constexpr std::uint64_t kBytesOfLength = 4;
constexpr std::uint64_t kBlocksAtATime = 2;  // one is filled while the other is encoded

std::uint64_t textLength(const PinRows* rows, std::size_t column) {
  if (rows == nullptr || rows->rowCount() == 0) {
    return kAssumedTextLength;
  }
  std::uint64_t bytes = 0;
  for (std::size_t row = 0; row < rows->rowCount(); ++row) {
    const unsigned char* value = rows->value(row, column);
    bytes += value == nullptr || isNullText(value) ? 0 : lengthFromBytes(value);
  }
  return (bytes + rows->rowCount() - 1) / rows->rowCount();
}

}  // namespace

BlockMemory blockMemory(int rowsInBlock, const PinColumns& columns, const PinRows* rows) {
  constexpr std::uint64_t kMillion = 1'000'000;
  if (rowsInBlock < 1) {
    return {};
  }
  const auto rowCount = static_cast<std::uint64_t>(rowsInBlock);
  std::uint64_t bytesOfRow = 0;
  for (std::size_t i = 0; i < columns.columns.size(); ++i) {
    const std::size_t fixed = fixedSizeOf(columns.columns[i].meta);
    const bool hasRows = rows != nullptr && i < rows->columnCount();
    bytesOfRow += fixed > 0 ? fixed : kBytesOfLength + textLength(hasRows ? rows : nullptr, i);
  }
  return {.blocksOfAMillionRows = (kMillion + rowCount - 1) / rowCount,
          .bytesOfBlock = bytesOfRow * rowCount,
          .bytesInWriting = kBlocksAtATime * bytesOfRow * rowCount};
}

}  // namespace kelvarin
