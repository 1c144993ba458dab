#include "library/arrow_streams/untouched_numbers.h"

#include <utility>

#include "library/arrow_streams/imported_values.h"

namespace kelvarin {

namespace {

// Bits that begin anywhere, from the first bit of a byte on. Those behind the last one are set.
std::vector<unsigned char> alignedBits(const unsigned char* bits, std::size_t first,
                                       std::size_t count) {
  std::vector<unsigned char> aligned((count + 7) / 8);
  const std::size_t shift = first % 8;
  const unsigned char* from = bits + first / 8;
  const std::size_t bytesRead = (shift + count + 7) / 8;
  for (std::size_t i = 0; i < aligned.size(); ++i) {
    const unsigned next = i + 1 < bytesRead ? from[i + 1] : 0u;
    aligned[i] = static_cast<unsigned char>((from[i] | next << 8) >> shift);
  }
  if (count % 8 != 0) {
    aligned.back() = static_cast<unsigned char>(aligned.back() | 0xFFu << count % 8);
  }
  return aligned;
}

}  // namespace

ArraySlice UntouchedNumbers::part(std::size_t first, std::size_t count) const {
  return {m_rows.array, m_rows.first + static_cast<std::int64_t>(first),
          static_cast<std::int64_t>(count)};
}

BatchColumn UntouchedNumbers::make(std::size_t first, std::size_t count) const {
  const ArraySlice rows = part(first, count);
  ArrowType type;
  type.kind = ArrowKind::float64;
  ColumnTally tally;
  return importNumbers({rows, rows}, type, tally, m_owner).values;
}

std::unique_ptr<ExportedColumn> UntouchedNumbers::exported(std::size_t first,
                                                           std::size_t count) const {
  const ArraySlice rows = part(first, count);
  auto made = std::make_unique<ExportedColumn>();
  made->owner = m_owner;
  if (rows.mayHaveNulls()) {
    made->nulls = NullBits(alignedBits(static_cast<const unsigned char*>(rows.array.buffers[0]),
                                       static_cast<std::size_t>(rows.first), count));
  }
  made->buffers = {rows.bytesAt(0, sizeof(double))};
  return made;
}

}  // namespace kelvarin
