// What a command has found out, line by line, in any of the forms of --format.
//
// In a table numbers are rounded to what people read, and nothing is a dash; CSV and JSON have all
// digits, and nothing is an empty field, or null.
// Used by the commands that list what they find in tables.
// Threads: one at a time.
#pragma once

#include <string>
#include <vector>

#include "cli/row_printer.h"
#include "cli/value_json.h"

namespace kelvarin {

struct ResultColumn {
  std::string title;     // in a table, where a column without one is not shown
  std::string name;      // for programs
  bool isRight = false;  // numbers are
};

class ResultTable {
 public:
  explicit ResultTable(std::vector<ResultColumn> columns) : m_columns(std::move(columns)) {}

  // Texts, numbers, booleans or null, one a column.
  void add(std::vector<Json> cells) { m_rows.push_back(std::move(cells)); }
  // In a table the text stands in place of the cell that was added last in this column.
  void show(std::size_t column, std::string text);

  std::string asTable(std::size_t width, WideTable wide) const;
  std::string asCsv() const;
  Json asJson() const;
  // On standard output.
  void print(RowFormat format, WideTable wide = WideTable::folded) const;

 private:
  struct Shown {
    std::size_t row;
    std::size_t column;
    std::string text;
  };

  std::vector<ResultColumn> m_columns;
  std::vector<std::vector<Json>> m_rows;
  std::vector<Shown> m_shown;
};

// A number as a table shows it: six digits, or all of a whole part that has more.
std::string roundedText(double number);

}  // namespace kelvarin
