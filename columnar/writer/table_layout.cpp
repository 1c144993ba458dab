#include "columnar/writer/table_layout.h"

#include <algorithm>
#include <tuple>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/descriptor_record.h"
#include "host/contract/text_operations.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kLargestField = 0xFFFFFFFF;

GelType gelTypeOf(MetaTypeColumn type) {
  switch (type) {
    case MetaTypeColumn::number:
      return GelType::number;
    case MetaTypeColumn::key:
      return GelType::key;
    default:
      return GelType::text;
  }
}

// Only the first column of a sort order has all its rows in that order.
StorageCode storageOf(const OneRow& row, int column) {
  if (row.getMetaType(column) != MetaTypeColumn::key) {
    return StorageCode::raw;
  }
  if (!row.sortInfos().isEmpty() && row.sortInfos().first().column() == column) {
    switch (row.sortInfos().first().type()) {
      case SortType::numberAscending:
        return StorageCode::ascendingKey;
      case SortType::numberDescending:
        return StorageCode::descendingKey;
      default:
        break;
    }
  }
  return StorageCode::key;
}

int columnSetOf(const QString& name, const QHash<QString, int>& columnSets) {
  return columnSets.isEmpty() ? 0 : columnSets.value(name, -1);
}

// False when a set's number is too large for the file.
bool takeColumns(const OneRow& row, const QHash<QString, int>& columnSets,
                 MetadataBlock& metadata) {
  for (int i = 0; i < row.sz(); ++i) {
    const QString name = myTrim(row.colName(i));
    const int set = columnSetOf(name, columnSets);
    if (set < 0) {
      continue;
    }
    if (set >= kMaxColumnSets) {
      return false;
    }
    metadata.columnSetCount = std::max(metadata.columnSetCount, set + 1);
    metadata.columns.push_back({.name = name.toStdString(),
                                .type = gelTypeOf(row.getMetaType(i)),
                                .typeArgument = row.vMetaData()[i].argument(),
                                .storage = storageOf(row, i),
                                .inputPosition = static_cast<std::uint32_t>(i),
                                .columnSet = set});
  }
  std::stable_sort(metadata.columns.begin(), metadata.columns.end(),
                   [](const GelColumn& left, const GelColumn& right) {
                     return std::tuple(left.columnSet, left.kind()) <
                            std::tuple(right.columnSet, right.kind());
                   });
  return true;
}

bool isWithinFields(const TableLayout& layout) {
  const std::uint64_t rows = layout.metadata.rowsInBlock;
  return fitsRecord(layout.descriptorBlockSize()) &&
         layout.headLength() - kOpeningSize <= kLargestField && rows <= kMaxRowsInBlock;
}

}  // namespace

std::size_t TableLayout::headLength() const {
  std::vector<unsigned char> bytes;
  ByteWriter writer(bytes);
  writeMetadata(writer, metadata);
  return kHeaderSize + metadata.columns.size() * kSlotSize + bytes.size();
}

Result<TableLayout, WriteFailure::Kind> layOutTable(const OneRow& row, int rowsInBlock,
                                                    const QHash<QString, int>& columnSets,
                                                    int memoryBudget) {
  TableLayout layout;
  layout.metadata.rowsInBlock = static_cast<std::uint32_t>(rowsInBlock);
  if (rowsInBlock < 1 || !takeColumns(row, columnSets, layout.metadata)) {
    return Failure{WriteFailure::Kind::tooLarge};
  }
  if (layout.metadata.columns.empty()) {
    return Failure{WriteFailure::Kind::noColumns};
  }
  layout.descriptors = DescriptorLayout(layout.metadata.columns, layout.metadata.columnSetCount);
  const std::size_t budget = static_cast<std::size_t>(memoryBudget) << 20;
  layout.descriptorsInRecord =
      std::max(budget / layout.descriptors.width(), kMinDescriptorsInRecord);
  if (!isWithinFields(layout)) {
    return Failure{WriteFailure::Kind::tooLarge};
  }
  return layout;
}

}  // namespace kelvarin
