// The options of commands that read a table of any kind: which columns, and how CSV files are
// written.
//
// Used by: `kelvarin gel import`, `kelvarin calc`, and the commands that look into tables.
#pragma once

#include <string>

#include "cli/csv_options.h"

namespace kelvarin {

struct SourceOptions {
  CsvOptions csv;
  std::string columns;     // with commas between; empty: all
  std::string unreadable;  // empty: not given

  void addTo(CLI::App& command);
  // Why they cannot be used on a file of this kind; empty where they can.
  QString fault(const TableKind& kind, const std::string& file) const;
  // An action of this name that reads such a file, which is the parameter of the same name where it
  // is not given.
  QString element(const TableKind& kind, const QString& action, const QString& file = {}) const;
};

}  // namespace kelvarin
