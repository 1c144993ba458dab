#include "benchmarks/gel/sample_table.h"

#include <algorithm>
#include <stdexcept>

namespace kelvarin {

namespace {

constexpr std::size_t kCacheLine = 64;
constexpr std::size_t kLinesInPage = 64;

}  // namespace

SampleColumn::SampleColumn(std::string name, MetaTypeColumn type, std::size_t index)
    : m_name(std::move(name)),
      m_type(type),
      m_begin(index % kLinesInPage * kCacheLine),
      m_step(fixedSizeOf(type)),
      m_bytes(m_begin) {}

void SampleColumn::addText(std::string_view text) {
  m_offsets.push_back(m_bytes.size() - m_begin);
  addPacked(static_cast<std::uint32_t>(text.size()));
  m_bytes.insert(m_bytes.end(), text.begin(), text.end());
}

void SampleColumn::addMissing() {
  switch (m_type) {
    case MetaTypeColumn::number:
      return addPacked(kNullNumber);
    case MetaTypeColumn::key:
      return addPacked(kNullKey);
    default:
      m_offsets.push_back(m_bytes.size() - m_begin);
      addPacked(kNullTextLength);
  }
}

SampleColumn& SampleTable::add(const std::string& columnName, MetaTypeColumn type) {
  return columns.emplace_back(columnName, type, columns.size());
}

const SampleColumn& SampleTable::column(const std::string& columnName) const {
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const SampleColumn& column) {
    return column.name() == columnName;
  });
  if (found == columns.end()) {
    throw std::runtime_error("the table '" + name + "' has no column '" + columnName + "'");
  }
  return *found;
}

std::uint32_t SampleTable::rangeBegin() const {
  return keyFromBytes(column(threeColumns[0]).value(rows / 2));
}

std::uint32_t SampleTable::rangeEnd() const {
  return keyFromBytes(column(threeColumns[0]).value(rows / 2 + rows / 100));
}

}  // namespace kelvarin
