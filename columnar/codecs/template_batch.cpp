#include "columnar/codecs/template_batch.h"

#include <algorithm>

namespace kelvarin {

namespace {

constexpr std::size_t kWord = sizeof(PieceCells::Word);
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

// A new number, with the fixed bytes before it if they are few.
TemplateBatch::Part& TemplateBatch::openNumber() {
  const bool hasBytes = !m_parts.empty() && m_parts.back().kind == PartKind::run &&
                        m_parts.back().touched == 0 && m_parts.back().size <= kWord;
  Part& part = hasBytes ? m_parts.back() : m_parts.emplace_back();
  part.kind = PartKind::number;
  part.before = part.size;
  return part;
}

void TemplateBatch::addFixed(std::string_view bytes) {
  if (bytes.empty()) {
    return;
  }
  const bool followsField =
      !m_parts.empty() && m_parts.back().kind != PartKind::run &&
      m_parts.back().fixed.size() - m_parts.back().before + bytes.size() <= kWord;
  Part& part = followsField ? m_parts.back() : openRun(bytes.size());
  part.fixed += bytes;
  part.size += bytes.size();
}

void TemplateBatch::addNumbers(const PiecePrinter& printer, std::uint64_t largest) {
  if (!printer.hasFixedWidth()) {
    Part& part = openNumber();
    m_fields.push_back({&printer, m_parts.size() - 1, part.before, {.largest = largest}});
    part.size += printer.sizeOf(largest);
    return;
  }
  const std::size_t size = printer.longestNumber();
  Part& part = openRun(size);
  m_fields.push_back({&printer, m_parts.size() - 1, part.size, {.largest = largest}});
  part.fixed.append(size, '\0');
  part.size += size;
  part.touched = part.size + kWord;
}

void TemplateBatch::addTexts(const unsigned char* bytes) {
  Part& part = m_parts.emplace_back();
  part.kind = PartKind::texts;
  part.bytes = bytes;
  m_fields.push_back({nullptr, m_parts.size() - 1, 0, {}});
}

// Fields leave the bytes around them as they are, so the others are written once.
unsigned char* TemplateBatch::makeRun(Part& part, std::size_t maxRows) {
  const bool hasFields = part.touched > 0;
  const std::size_t rows = hasFields ? maxRows : 1;
  part.step = hasFields ? roundedUp(std::max(part.touched, part.size)) : 0;
  part.copied = part.size;
  m_longestText += part.size;
  auto& cells = m_cells.emplace_back(rows * part.step + roundedUp(part.size));
  for (std::size_t row = 0; row < rows; ++row) {
    part.fixed.copy(reinterpret_cast<char*>(cells.data() + row * part.step), part.size);
  }
  return cells.data();
}

unsigned char* TemplateBatch::makeNumbers(Part& part, std::size_t maxRows) {
  part.step = roundedUp(part.size + kWord + 1);
  m_longestText += part.size;
  auto& cells = m_cells.emplace_back(maxRows * part.step + PiecePrinter::kOverrun);
  for (std::size_t row = 0; row < maxRows; ++row) {
    part.fixed.copy(reinterpret_cast<char*>(cells.data() + row * part.step), part.before);
  }
  return cells.data();
}

void TemplateBatch::finish(std::size_t maxRows) {
  maxRows = std::min(maxRows, kMaxRows);
  m_longestText = kOverrun;
  std::vector<unsigned char*> cells;
  for (Part& part : m_parts) {
    if (part.kind == PartKind::texts) {
      part.fixed.copy(reinterpret_cast<char*>(part.behind.data()), kWord);
      m_longestText += kShortText + part.size;
      cells.push_back(nullptr);
      continue;
    }
    cells.push_back(part.kind == PartKind::run ? makeRun(part, maxRows)
                                               : makeNumbers(part, maxRows));
    part.bytes = cells.back();
  }
  for (Field& field : m_fields) {
    Part& part = m_parts[field.part];
    if (part.kind == PartKind::texts) {
      continue;
    }
    std::size_t behind = part.before;
    if (part.kind == PartKind::run) {
      behind = field.offset + field.printer->longestNumber();
    } else {
      field.cells.sizes = m_sizes.emplace_back(maxRows).data();
      field.cells.sizeAround = static_cast<unsigned>(part.fixed.size());
      part.sizes = field.cells.sizes;
    }
    field.cells.out = cells[field.part] + field.offset;
    field.cells.step = part.step;
    part.fixed.copy(reinterpret_cast<char*>(field.cells.behind.data()), kWord, behind);
  }
}

void TemplateBatch::setNumbers(std::size_t field, std::span<const std::uint64_t> numbers) {
  const Field& from = m_fields[field];
  Part& part = m_parts[from.part];
  if (part.kind == PartKind::run) {
    from.printer->printFixedWidth(numbers, from.cells);
  } else {
    part.copied = from.printer->printVaryingWidth(numbers, from.cells) + part.fixed.size();
  }
}

void TemplateBatch::setTexts(std::size_t field, const std::uint32_t* offsets, std::size_t step) {
  Part& part = m_parts[m_fields[field].part];
  part.offsets = offsets;
  part.step = step;
}

}  // namespace kelvarin
