#include "columnar/codecs/template_batch.h"

#include <algorithm>

namespace kelvarin {

namespace {

constexpr std::size_t kWord = sizeof(PiecePrinter::Word);
// Fields of fixed widths are joined up to this size.
constexpr std::size_t kLongestRun = 64;

constexpr std::size_t roundedUp(std::size_t size) {
  return (size + kWord - 1) / kWord * kWord;
}

}  // namespace

// The run at the end, if so many more bytes fit it, or a new one.
TemplateBatch::Part& TemplateBatch::openRun(std::size_t size) {
  const bool fits = !m_parts.empty() && m_parts.back().kind == PartKind::run &&
                    m_parts.back().size + size <= kLongestRun;
  return fits ? m_parts.back() : m_parts.emplace_back();
}

void TemplateBatch::addFixed(std::string_view bytes) {
  if (bytes.empty()) {
    return;
  }
  const bool followsNumber = !m_parts.empty() && m_parts.back().kind == PartKind::number &&
                             m_parts.back().fixed.size() + bytes.size() <= kWord;
  Part& part = followsNumber ? m_parts.back() : openRun(bytes.size());
  part.fixed += bytes;
  part.size += bytes.size();
}

void TemplateBatch::addNumbers(const PiecePrinter& printer) {
  const std::size_t size = printer.longestNumber();
  if (!printer.hasFixedWidth()) {
    Part& part = m_parts.emplace_back();
    part.kind = PartKind::number;
    part.size = size;
    m_fields.push_back({&printer, m_parts.size() - 1, 0, {}});
    return;
  }
  Part& part = openRun(size);
  m_fields.push_back({&printer, m_parts.size() - 1, part.size, {}});
  part.fixed.append(size, '\0');
  part.size += size;
  part.touched = std::max(part.touched, part.size + kWord);
}

void TemplateBatch::addTexts(const unsigned char* bytes) {
  Part& part = m_parts.emplace_back();
  part.kind = PartKind::texts;
  part.bytes = bytes;
  m_fields.push_back({nullptr, m_parts.size() - 1, 0, {}});
}

// Fields leave the bytes around them as they are, so the others are written once.
void TemplateBatch::finishRun(Part& part, std::size_t maxRows) {
  const bool hasFields = part.touched > 0;
  const std::size_t rows = hasFields ? maxRows : 1;
  part.step = hasFields ? roundedUp(part.touched) : 0;
  part.copied = part.size;
  part.cells = m_cells.emplace_back(rows * part.step + roundedUp(part.size)).data();
  for (std::size_t row = 0; row < rows; ++row) {
    part.fixed.copy(reinterpret_cast<char*>(part.cells + row * part.step), part.size);
  }
}

// What printing a number touches behind its cell is written again with the next number.
void TemplateBatch::finishNumber(Part& part, std::size_t maxRows) {
  part.size += part.fixed.size();
  part.step = roundedUp(part.size);
  part.cells = m_cells.emplace_back(maxRows * part.step + PiecePrinter::kOverrun).data();
  part.sizes = m_sizes.emplace_back(maxRows).data();
}

void TemplateBatch::finish(std::size_t maxRows) {
  maxRows = std::min(maxRows, kMaxRows);
  m_longestText = kOverrun;
  for (Part& part : m_parts) {
    if (part.kind == PartKind::texts) {
      m_longestText += kShortText;
      continue;
    }
    if (part.kind == PartKind::run) {
      finishRun(part, maxRows);
    } else {
      finishNumber(part, maxRows);
    }
    part.bytes = part.cells;
    m_longestText += part.size;
  }
  for (Field& field : m_fields) {
    if (field.printer != nullptr) {
      const Part& part = m_parts[field.part];
      const std::size_t first =
          part.kind == PartKind::run ? field.offset + field.printer->longestNumber() : 0;
      part.fixed.copy(reinterpret_cast<char*>(field.behind.data()), field.behind.size(), first);
    }
  }
}

void TemplateBatch::setNumbers(std::size_t field, std::span<const std::uint64_t> numbers) {
  const Field& from = m_fields[field];
  Part& part = m_parts[from.part];
  if (part.kind == PartKind::run) {
    from.printer->printFixedWidth(numbers, from.behind, part.cells + from.offset, part.step);
    return;
  }
  const std::size_t longest = from.printer->printVaryingWidth(
      numbers, from.behind, part.fixed.size(), part.cells, part.step, part.sizes);
  part.copied = longest + part.fixed.size();
}

void TemplateBatch::setTexts(std::size_t field, const std::uint32_t* offsets, std::size_t step) {
  Part& part = m_parts[m_fields[field].part];
  part.offsets = offsets;
  part.step = step;
}

}  // namespace kelvarin
