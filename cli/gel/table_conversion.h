// A table that is written anew as another one, by a run of a graph whose actions are in a line: so
// messages, full disks and interrupts are those of any run.
//
// Used by `kelvarin gel export`, `import` and `recover`, and by `kelvarin calc`.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/command_graph.h"
#include "cli/table_kind.h"

namespace kelvarin {

struct TableConversion {
  std::string input;
  std::string output;
  RunOptions options;

  bool isPiped() const { return output == kStandardStream; }
};

// The actions at both ends. No expression can hold these names, which are those of parameters, too.
inline constexpr char kSourceAction[] = "input table";
inline constexpr char kSinkAction[] = "output table";

// Larger blocks make files smaller, but ranges slower; by the figures of benchmarks/README.md.
inline constexpr std::uint32_t kRowsInBlock = 20'000;

struct ConversionStep {
  QString action;
  QString element;
};

// XML elements: the source and the sink have the names above, and their files are the parameters of
// the same names, unless the elements have them.
struct ConversionGraph {
  QString source;
  QString sink;
  std::unique_ptr<ActionItem> ownAction = nullptr;  // of the command; null: the catalogue has all
  std::vector<ConversionStep> steps = {};           // between them, each linked to the next
  std::vector<GraphParameter> parameters = {};      // more of them
};

QByteArray documentOf(const ConversionGraph& graph);
// With the values of the parameters that are files.
CommandGraph commandGraphOf(const TableConversion& conversion, ConversionGraph graph);

ExitStatus runConversion(const TableConversion& conversion, ConversionGraph graph, Console& console,
                         const FinishedRun& finish);

// How a table is written beyond its kind.
struct SinkOptions {
  // Each of its values gets a file, in a folder that is made; empty: one file.
  QString splitColumn;
  std::vector<std::pair<QString, QString>> types;  // of columns in the file, by their names
};

// The element that writes a table of this kind, columnar ones so that a table that is there stays
// until the new one is complete.
QString sinkElement(const TableKind& kind, const QString& file = {},
                    const SinkOptions& options = {});
QString columnarSinkElement(std::uint32_t rowsInBlock, const QString& file = {});

// With the extension of main files, which keeps side files of different tables apart, unless there
// is a table of that very name.
std::string nameOfColumnarTable(const std::string& path);

// The table would be made of the very file that it replaces: says so on the console.
bool wouldReplaceItself(const TableConversion& conversion, Console& console);

// Of a run that has ended well.
std::uint64_t rowsWritten(const RunResult& result);
// Says so of a table that was written to a file, or to one for each value of a column.
void reportRows(const TableConversion& conversion, const TableKind& kind, const RunResult& result,
                Console& console, const QString& splitColumn = {});

}  // namespace kelvarin
