// Rows as a request brings them, typed by a test.
#pragma once

#include <vector>

#include "gui/preview/preview_rows.h"
#include "host/contract/pin_rows.h"
#include "host/testing/value.h"

namespace kelvarin::testing {

inline std::vector<unsigned char> bytesOf(const Value& value, MetaTypeColumn type) {
  std::vector<unsigned char> bytes;
  appendBytes(bytes, value, type);
  return bytes;
}

// A missing value is a null pointer, as rows may have it.
inline std::shared_ptr<PinRows> madeRows(const PreviewRows::Columns& columns, long long firstRow,
                                         const std::vector<Values>& rows) {
  PinColumns known;
  known.isKnown = true;
  known.columns = columns;
  auto made = std::make_shared<PinRows>(known, firstRow);
  PinOutMetaData metaData;
  metaData.setColumnCount(static_cast<int>(columns.size()));
  OneRow row(&metaData);
  for (const Values& values : rows) {
    std::vector<std::vector<unsigned char>> bytes;
    for (std::size_t i = 0; i < values.size(); ++i) {
      bytes.push_back(bytesOf(values[i], columns[i].meta));
      row.getAllColForWrite()[i] = values[i].isNull() ? nullptr : bytes[i].data();
    }
    made->append(row);
  }
  return made;
}

}  // namespace kelvarin::testing
