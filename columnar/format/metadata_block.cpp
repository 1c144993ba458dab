#include "columnar/format/metadata_block.h"

#include <cassert>

namespace kelvarin {

namespace {

// The host's saved form of a column type: the code, three zero bytes, the argument.
void writeType(ByteWriter& writer, const GelColumn& column) {
  writer.put(static_cast<std::uint8_t>(column.type));
  writer.putZeros(3);
  writer.put(column.typeArgument);
}

bool readType(ByteReader& reader, GelColumn& column) {
  std::uint32_t code = 0;
  if (!reader.read(code) || code > 0xFF || !reader.read(column.typeArgument)) {
    return false;
  }
  const auto type = gelTypeFromCode(static_cast<std::uint8_t>(code));
  column.type = type.value_or(GelType::text);
  return type.has_value();
}

bool readColumn(ByteReader& reader, GelColumn& column) {
  std::uint32_t nameSize = 0;
  Bytes name;
  std::uint8_t code = 0;
  if (!reader.read(column.inputPosition) || !readType(reader, column) || !reader.read(nameSize) ||
      !reader.readBytes(nameSize, name) || !reader.read(code)) {
    return false;
  }
  column.name = asText(name);
  const auto storage = storageFromCode(code, column.type);
  column.storage = storage.value_or(StorageCode::raw);
  return storage.has_value();
}

// With one set all columns are its own; with several, a count for each set follows the columns.
bool readColumnSets(ByteReader& reader, MetadataBlock& metadata) {
  if (metadata.columnSetCount == 1) {
    return true;
  }
  std::size_t next = 0;
  std::uint32_t count = 0;
  for (int set = 0; set < metadata.columnSetCount; ++set) {
    if (!reader.read(count) || count > metadata.columns.size() - next) {
      return false;
    }
    for (const std::size_t end = next + count; next < end; ++next) {
      metadata.columns[next].columnSet = set;
    }
  }
  return next == metadata.columns.size() && count > 0;
}

std::vector<std::uint32_t> columnCounts(const MetadataBlock& metadata) {
  std::vector<std::uint32_t> counts(static_cast<std::size_t>(metadata.columnSetCount));
  for (const GelColumn& column : metadata.columns) {
    ++counts[static_cast<std::size_t>(column.columnSet)];
  }
  return counts;
}

}  // namespace

void writeMetadata(ByteWriter& writer, const MetadataBlock& metadata) {
  assert(metadata.columnSetCount >= 1 && metadata.columnSetCount <= kMaxColumnSets);
  writer.put(metadata.rowsInBlock);
  writer.put(static_cast<std::uint8_t>(metadata.columnSetCount));
  for (const GelColumn& column : metadata.columns) {
    writer.put(column.inputPosition);
    writeType(writer, column);
    writer.put(static_cast<std::uint32_t>(column.name.size()));
    writer.putBytes(asBytes(column.name));
    writer.put(static_cast<std::uint8_t>(column.storage));
  }
  if (metadata.columnSetCount > 1) {
    for (const std::uint32_t count : columnCounts(metadata)) {
      writer.put(count);
    }
  }
}

ReadStatus readMetadata(Bytes bytes, std::uint32_t columnCount, MetadataBlock& metadata) {
  metadata = {};
  ByteReader reader(bytes);
  std::uint8_t columnSetCount = 0;
  if (!reader.read(metadata.rowsInBlock) || !reader.read(columnSetCount) ||
      metadata.rowsInBlock == 0 || columnSetCount == 0 || columnCount == 0 ||
      columnCount > reader.remaining() / kSmallestColumnSize) {
    return ReadStatus::corrupted;
  }
  metadata.columnSetCount = columnSetCount;
  metadata.columns.resize(columnCount);
  for (GelColumn& column : metadata.columns) {
    if (!readColumn(reader, column)) {
      return ReadStatus::corrupted;
    }
  }
  return readColumnSets(reader, metadata) ? ReadStatus::ok : ReadStatus::corrupted;
}

}  // namespace kelvarin
