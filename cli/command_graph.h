// A graph that a command makes itself instead of reading it from a file, and its run: so messages,
// full disks, threads and interrupts are those of any run.
//
// Used by: gel/table_conversion.h, and the commands that compute over a table without a graph file.
// Errors: on the console.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QByteArray>
#include <QStringList>

#include "cli/graph_run.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

struct CommandGraph {
  QByteArray document;
  // Of the document's parameters: names of files, for instance, so that nothing in them is taken
  // for a part of the document.
  std::vector<ParameterOverride> values;
  std::unique_ptr<ActionItem> ownAction;  // of the command; null where the catalogue has all
  GraphWork work = runGraph;
  // Settles what the document cannot say, before the run; may be empty.
  std::function<void(Graph& graph)> prepare{};
};

// Standard input or output, instead of a file.
inline constexpr char kStandardStream[] = "-";

// What stands for `text` in an attribute of such a document: itself, `${...}` included.
QString literalText(QString text);
// The parameter that such texts need; none where `elements` have none of them.
std::vector<GraphParameter> parametersOfLiterals(const QString& elements);

// Of actions in a line, as `linearGraph` has it, which may have such texts.
QByteArray commandDocument(const QString& elements, const QStringList& names,
                           std::vector<GraphParameter> parameters);

// Below the working folder; a standard stream as it is.
QString absolutePath(const std::string& path);

// `name` is the document's in messages. Nothing: the console has the faults.
std::optional<Graph> parseCommandGraph(const CommandGraph& graph, const QString& name,
                                       const ActionCatalogue& catalogue, Console& console);

// Reports about a run that has ended well, and says what status it is.
using FinishedRun = std::function<ExitStatus(const RunResult& result)>;

ExitStatus runCommandGraph(CommandGraph graph, const QString& name, const RunOptions& options,
                           Console& console, const FinishedRun& finish);
// The same with a catalogue that is there, in the session of the caller's services.
ExitStatus runCommandGraph(const CommandGraph& graph, const QString& name,
                           const ActionCatalogue& catalogue, const RunOptions& options,
                           Console& console, const FinishedRun& finish);

}  // namespace kelvarin
