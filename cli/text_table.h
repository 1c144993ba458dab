// A table of texts in columns, for people.
//
// Used by every command that prints one.
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kelvarin {

struct TableColumn {
  std::string title;
  bool isRight = false;  // numbers are
};

// What becomes of columns that are beyond the width.
enum class WideTable {
  cut,    // a line below says how many there are, and which
  folded  // they follow below as a table with the first column again
};

class TextTable {
 public:
  // Titles are safe for a terminal; so are the cells, one for each column.
  explicit TextTable(std::vector<TableColumn> columns) : m_columns(std::move(columns)) {}

  void add(std::vector<std::string> cells) { m_rows.push_back(std::move(cells)); }
  std::size_t rowCount() const { return m_rows.size(); }
  void clearRows() { m_rows.clear(); }

  // Columns are as wide as their widest cell, and cells beyond a bound are cut, unless `width`, a
  // number of characters on a line, is 0: then everything is shown.
  std::string text(std::size_t width = 0, WideTable wide = WideTable::cut) const;

 private:
  std::vector<std::size_t> widths(std::size_t width) const;
  std::string part(const std::vector<std::size_t>& shown,
                   const std::vector<std::size_t>& widths) const;

  std::vector<TableColumn> m_columns;
  std::vector<std::vector<std::string>> m_rows;
};

// How wide a text is on a terminal: wide characters count twice, marks above others not.
std::size_t shownWidth(std::string_view text);

// Of the terminal that standard output is, 0 where it is none. The environment's COLUMNS overrules.
std::size_t outputWidth();

}  // namespace kelvarin
