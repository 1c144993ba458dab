// Encodes a column of a row group as Parquet has it.
//
// A column whose values repeat gets a dictionary, all others are stored plain. Samples from all
// over the column decide whether a dictionary is tried: looking each value up costs more than
// compressing it.
// Threads: any, one column at a time.
// Errors: exceptions of the library.
#pragma once

#include "host/tables/arrow_formats/column_pages.h"
#include "host/tables/arrow_formats/row_group.h"
#include "host/tables/arrow_formats/typed_column.h"

namespace kelvarin {

// Append all pages, and return the range of the values.
ValueRange encodeNumbers(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages);
ValueRange encodeKeys(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages);
ValueRange encodeTexts(const GroupColumn& column, std::size_t rowCount, ColumnPages& pages);
// Of std::int64_t, std::int32_t, std::uint32_t, double and bool.
template <typename Value>
ValueRange encodeTyped(const TypedColumn<Value>& column, std::size_t rowCount, ColumnPages& pages);

inline constexpr std::uint32_t kNoCode = 0xFFFFFFFFu;  // of a missing value

// How many bits a code takes.
int bitsOfCodes(std::size_t dictionarySize);

// Appends the page of these rows, whose codes are given.
void appendCodes(const std::uint32_t* codes, std::size_t rowCount, int bits,
                 const ValueRange& range, ColumnPages& pages);

// By doValuesRepeat().
inline constexpr std::size_t kMaxRowsLookedAt = 4096;

// Calls look(values, row) for rows from all over a column, or for all where there are few; look()
// returns whether the row's value has been seen before. True when a dictionary is worth a try. The
// cursor is at the first row.
template <typename Cursor, typename Look>
bool doValuesRepeat(Cursor cursor, std::size_t rowCount, Look look) {
  constexpr std::size_t kStretches = 16;
  const bool isSmall = rowCount <= kMaxRowsLookedAt;
  const std::size_t stretches = isSmall ? 1 : kStretches;
  const std::size_t rows = isSmall ? rowCount : kMaxRowsLookedAt / kStretches;
  std::size_t seen = 0;
  for (std::size_t stretch = 0; stretch < stretches; ++stretch) {
    cursor.next(rows, [&](const auto& values, std::size_t first, std::size_t count) {
      for (std::size_t row = first; row < first + count; ++row) {
        seen += look(values, row) ? 1 : 0;
      }
    });
    cursor.next(rowCount / stretches - rows, [](const auto&, std::size_t, std::size_t) {});
  }
  return seen * 16 >= stretches * rows;
}

}  // namespace kelvarin
