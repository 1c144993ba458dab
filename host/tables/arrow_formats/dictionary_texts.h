// The texts of a column's dictionary, made once for all arrays that have the same dictionary.
//
// Their rows then have the same positions, by which writers know equal texts.
// Used by: arrow_texts.cpp; kept by GroupDecoding for each column.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "arrow/array/array_base.h"
#include "host/tables/arrow_formats/counted_texts.h"

namespace kelvarin {

struct DictionaryTexts {
  std::shared_ptr<arrow::Array> values;  // null: none yet
  std::optional<CountedTexts> texts;
  std::vector<std::uint32_t> positions;  // of each value
  std::uint32_t nullPosition = 0;
};

}  // namespace kelvarin
