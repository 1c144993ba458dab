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
  // An element of ReadCSV for a file of this kind. An action of this name; without `file` its file
  // is the parameter of the same name.
  QString readElement(const TableKind& kind, const QString& action, const QString& file = {}) const;

 private:
  QString attributes(const TableKind& kind) const;
  QString columns() const;

  std::vector<CLI::Option*> m_options;
};

}  // namespace kelvarin
