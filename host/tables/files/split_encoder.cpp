#include "host/tables/files/split_encoder.h"

#include <string_view>
#include <unordered_map>

#include "host/files/split_values.h"

namespace kelvarin {

namespace {

// Which part each row of a batch goes to.
struct Division {
  std::vector<std::string_view> marks;  // of the parts
  std::vector<std::uint32_t> rowCounts;
  std::vector<std::uint32_t> partOfRow;
};

Division divided(const RowBatch& batch, const BatchColumn& column, bool isSorted) {
  Division division;
  division.partOfRow.reserve(batch.rowCount());
  std::unordered_map<std::string_view, std::uint32_t> parts;
  std::uint32_t part = 0;
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t, std::size_t stored) {
    const std::string_view mark = splitMark(column.type(), column.value(stored));
    if (division.marks.empty() || division.marks[part] != mark) {
      const auto next = static_cast<std::uint32_t>(division.marks.size());
      part = isSorted ? next : parts.try_emplace(mark, next).first->second;
      if (part == next) {
        division.marks.push_back(mark);
        division.rowCounts.push_back(0);
      }
    }
    ++division.rowCounts[part];
    division.partOfRow.push_back(part);
  });
  return division;
}

// The stored rows of all parts, one part after the other.
std::shared_ptr<std::uint32_t[]> rowsByPart(const RowBatch& batch, const Division& division) {
  std::vector<std::uint32_t> next(division.marks.size());
  for (std::size_t part = 1; part < next.size(); ++part) {
    next[part] = next[part - 1] + division.rowCounts[part - 1];
  }
  auto rows = std::make_shared_for_overwrite<std::uint32_t[]>(batch.rowCount());
  forEachRow(batch, 0, batch.rowCount(), [&](std::size_t row, std::size_t stored) {
    rows[next[division.partOfRow[row]]++] = static_cast<std::uint32_t>(stored);
  });
  return rows;
}

}  // namespace

std::unique_ptr<EncodedBatch> SplitEncoder::encode(const RowBatch& batch) const {
  auto made = std::make_unique<SplitBatch>();
  const Division division = divided(batch, batch.column(m_column), m_isSorted);
  if (division.marks.size() == 1) {
    made->parts.push_back({std::string(division.marks.front()), m_encoder->encode(batch)});
    return made;
  }
  const auto rows = rowsByPart(batch, division);
  std::uint32_t* first = rows.get();
  for (std::size_t part = 0; part < division.marks.size(); ++part) {
    const std::uint32_t count = division.rowCounts[part];
    const RowBatch selected(batch.storedRows(), batch.columns(), RowSelection(rows, first), count);
    made->parts.push_back({std::string(division.marks[part]), m_encoder->encode(selected)});
    first += count;
  }
  return made;
}

}  // namespace kelvarin
