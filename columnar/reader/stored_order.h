// The sort order of a table's rows, as its columns were stored.
//
// Used by the sources of rows of columnar files.
// Threads: any.
#pragma once

#include <QVector>

#include "columnar/reader/gel_file.h"
#include "host/contract/sort_infos.h"

namespace kelvarin {

// The order of rows with these columns.
QVector<SortInfos> storedOrder(const GelFile& file, const std::vector<std::size_t>& columns);

}  // namespace kelvarin
