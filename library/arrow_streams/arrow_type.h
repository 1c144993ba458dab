// The type of a column in a stream, read from its schema.
//
// Numbers, decimals and booleans (1, 0) become numbers, unsigned 32-bit integers keys, texts, dates
// and timestamps texts (ISO 8601), dictionaries their values: as the action ReadArrow reads files.
// Threads: any.
#pragma once

#include <string>
#include <vector>

#include "host/tables/arrow/arrow_columns.h"
#include "host/tables/arrow/iso_time.h"
#include "include/kelvarin/arrow_c_data.h"

namespace kelvarin {

enum class ArrowKind {
  unsupported,
  boolean,
  int8,
  int16,
  int32,
  int64,
  uint8,
  uint16,
  uint32,
  uint64,
  halfFloat,
  float32,
  float64,
  decimal,
  utf8,
  largeUtf8,
  utf8View,
  date32,
  date64,
  timestamp
};

struct ArrowType {
  ArrowKind kind = ArrowKind::unsupported;      // of a dictionary, that of its values
  ArrowKind codeKind = ArrowKind::unsupported;  // of the codes of a dictionary
  int decimalBits = 0;
  int scale = 0;  // digits behind the point of a decimal
  TimestampForm form;

  bool isDictionary() const { return codeKind != ArrowKind::unsupported; }
};

ArrowType arrowTypeOf(const ArrowSchema& schema);

// What its values can be; the first is the default. Empty for a type that is not read.
std::vector<MetaTypeColumn> columnTypesOf(const ArrowType& type);

// As Arrow calls it: "list<item: int64>".
std::string typeNameOf(const ArrowSchema& schema);

}  // namespace kelvarin
