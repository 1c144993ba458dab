// The columns of a columnar file, in the order in which they are stored.
//
// The block follows the slot table. It has no checksum, so reading it takes nothing for granted.
// Layout: docs/gel-format.md, "Metadata block".
// Errors: ReadStatus; never logs, never throws.
#pragma once

#include <string>
#include <vector>

#include "base/byte_cursor.h"
#include "columnar/format/read_status.h"
#include "columnar/format/storage_code.h"

namespace kelvarin {

struct GelColumn {
  std::string name;  // UTF-8, without blanks at its ends
  GelType type = GelType::text;
  std::int32_t typeArgument = 0;
  StorageCode storage = StorageCode::raw;
  std::uint32_t inputPosition = 0;  // in the rows that were written
  int columnSet = 0;

  ColumnKind kind() const { return kindOf(type, storage); }
  friend bool operator==(const GelColumn&, const GelColumn&) = default;
};

struct MetadataBlock {
  std::uint32_t rowsInBlock = 0;
  int columnSetCount = 0;
  std::vector<GelColumn> columns;  // set after set, by kind, then by input position
};

inline constexpr int kMaxColumnSets = 255;

void writeMetadata(ByteWriter& writer, const MetadataBlock& metadata);

// `columnCount` is the header's. Bytes after the block are ignored.
[[nodiscard]] ReadStatus readMetadata(Bytes bytes, std::uint32_t columnCount,
                                      MetadataBlock& metadata);

// The bytes of a column with an empty name: they limit how many columns a file of a given size can
// have, whatever its header says.
inline constexpr std::size_t kSmallestColumnSize = 4 + 8 + 4 + 1;

}  // namespace kelvarin
