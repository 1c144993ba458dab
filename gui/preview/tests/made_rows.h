// Rows of a preview that a test types, in memory or in a store.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gui/preview/row_store.h"

namespace kelvarin::testing {

// A number, a text or nothing.
struct MadeValue {
  MadeValue(double value) : number(value) {}                              // NOLINT: typed in lists
  MadeValue(const char* value) : text(value), isText(true) {}             // NOLINT
  MadeValue(std::string value) : text(std::move(value)), isText(true) {}  // NOLINT
  MadeValue(std::nullopt_t) : isMissing(true) {}                          // NOLINT
  double number = 0.0;
  std::string text;
  bool isText = false;
  bool isMissing = false;
};

inline std::vector<unsigned char> bytesOf(MetaTypeColumn type, const MadeValue& value) {
  std::vector<unsigned char> bytes;
  const auto append = [&bytes](const void* data, std::size_t size) {
    const auto* begin = static_cast<const unsigned char*>(data);
    bytes.insert(bytes.end(), begin, begin + size);
  };
  if (type == MetaTypeColumn::number) {
    append(&value.number, sizeof value.number);
  } else if (type == MetaTypeColumn::key) {
    const auto key = static_cast<std::uint32_t>(value.number);
    append(&key, sizeof key);
  } else {
    const auto size = static_cast<std::uint32_t>(value.text.size());
    append(&size, sizeof size);
    append(value.text.data(), value.text.size());
  }
  return bytes;
}

inline std::shared_ptr<PinRows> madeRows(const PreviewRows::Columns& columns, long long firstRow,
                                         const std::vector<std::vector<MadeValue>>& rows) {
  PinColumns known;
  known.isKnown = true;
  known.columns = columns;
  auto made = std::make_shared<PinRows>(known, firstRow);
  PinOutMetaData metaData;
  metaData.setColumnCount(static_cast<int>(columns.size()));
  OneRow row(&metaData);
  for (const std::vector<MadeValue>& values : rows) {
    std::vector<std::vector<unsigned char>> bytes;
    for (std::size_t i = 0; i < values.size(); ++i) {
      bytes.push_back(bytesOf(columns[i].meta, values[i]));
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      row.getAllColForWrite()[i] = values[i].isMissing ? nullptr : bytes[i].data();
    }
    made->append(row);
  }
  return made;
}

}  // namespace kelvarin::testing
