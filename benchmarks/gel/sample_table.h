// A table in memory that both sides of the benchmark write: column by column, in the bytes that
// rows point to.
//
// Threads: plain values once filled.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/contract/column_bytes.h"

namespace kelvarin {

class SampleColumn {
 public:
  // `index` counts the table's columns: the first values of all columns lie in different cache
  // lines of their pages, as values of a real row do.
  SampleColumn(std::string name, MetaTypeColumn type, std::size_t index);

  void addNumber(double number) { addPacked(number); }
  void addKey(std::uint32_t key) { addPacked(key); }
  void addText(std::string_view text);
  void addMissing();

  const std::string& name() const { return m_name; }
  MetaTypeColumn type() const { return m_type; }
  const unsigned char* value(std::size_t row) const {
    return m_bytes.data() + m_begin + (m_step > 0 ? row * m_step : m_offsets[row]);
  }
  // From value to value; 0 for texts, whose sizes differ.
  std::size_t step() const { return m_step; }

 private:
  template <typename T>
  void addPacked(T value) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
    m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof value);
  }

  std::string m_name;
  MetaTypeColumn m_type;
  std::size_t m_begin;
  std::size_t m_step;
  std::vector<unsigned char> m_bytes;
  std::vector<std::size_t> m_offsets;  // of texts
};

struct SampleTable {
  std::string name;
  std::size_t rows = 0;
  std::vector<SampleColumn> columns = {};
  // The names of three columns; the first one is a key in ascending order. A table without has no
  // range.
  std::vector<std::string> threeColumns = {};
  // The information in its values, as far as the maker of the table knows it; else 0.
  double leastBytes = 0.0;

  SampleColumn& add(const std::string& columnName, MetaTypeColumn type);
  const SampleColumn& column(const std::string& columnName) const;
  // One per cent of the rows from the middle on: keys of the sorted column, the last one excluded.
  std::uint32_t rangeBegin() const;
  std::uint32_t rangeEnd() const;
};

}  // namespace kelvarin
