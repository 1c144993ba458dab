// The options of commands that read CSV files, which say how these are written.
//
// What is not given is left to a look at the file: separator, quote and encoding.
// Used by: `kelvarin gel import`, and the commands that read any table.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <QString>

#include "cli/table_kind.h"

namespace kelvarin {

// The group of these options in help; the topic csv explains them.
inline constexpr char kCsvOptionsGroup[] = "CSV files";

struct CsvOptions {
  std::string separator;  // empty: not given
  std::string quote = "auto";
  std::string encoding = "auto";
  bool hasNoHeader = false;
  std::vector<std::string> nullTexts;
  std::string decimal;
  std::string thousands;
  int skippedLines = 0;
  std::string comment;
  std::string shortRows;
  std::string longRows;
  std::string fileColumn;
  std::string badValues;
  std::vector<std::string> types;  // NAME=TYPE

  void addTo(CLI::App& command);
  // One of them is given, so that the file has to be a CSV file.
  bool areGiven() const;
  // Of ReadCSV, for a file of this kind.
  QString attributes(const TableKind& kind) const;
  // The elements inside, which declare types.
  QString columns() const;

 private:
  std::vector<CLI::Option*> m_options;
};

}  // namespace kelvarin
