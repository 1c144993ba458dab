#include "columnar/reader/stored_order.h"

namespace kelvarin {

QVector<SortInfos> storedOrder(const GelFile& file, const std::vector<std::size_t>& columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const StorageCode storage = file.column(columns[i]).storage;
    if (storage == StorageCode::ascendingKey || storage == StorageCode::descendingKey) {
      return {SortInfos(static_cast<int>(i), storage == StorageCode::ascendingKey
                                                 ? SortType::numberAscending
                                                 : SortType::numberDescending)};
    }
  }
  return {};
}

}  // namespace kelvarin
