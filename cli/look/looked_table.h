// The table that a command looks into: its arguments, and a run that reads it.
//
// Used by the commands of this folder.
#pragma once

#include <functional>
#include <string>

#include "cli/command_graph.h"
#include "cli/source_options.h"
#include "cli/table_kind.h"
#include "cli/taken_rows.h"

namespace kelvarin {

struct LookedTable {
  std::string file;
  std::string from;
  SourceOptions source;
  RunOptions options;

  // FILE, --from and those of SourceOptions and RunOptions.
  void addTo(CLI::App& command);
  // The same without those about columns.
  void addCountedTo(CLI::App& command);
  // Null: the console has said why.
  const TableKind* kind(Console& console) const;
  // An action of this name that reads the table.
  QString readElement(const TableKind& kind, const QString& action) const;

 private:
  void addFileTo(CLI::App& command);
};

// Reads no more than the columns need; the source is the result's first action.
ExitStatus checkTable(const LookedTable& table, Console& console,
                      const std::function<ExitStatus(const RunResult& result)>& finish);

// `prepare` may be empty; the source is the graph's first action.
ExitStatus runOverTable(const LookedTable& table, RowTaker& taker, Console& console,
                        std::function<void(Graph& graph)> prepare,
                        const std::function<ExitStatus(const RunResult& result)>& finish);

}  // namespace kelvarin
