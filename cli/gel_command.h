// What the parts of `kelvarin gel` share: opening a columnar file with a message for the user, and
// running a conversion.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/console.h"
#include "columnar/reader/gel_file.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

// Null: the console has said why. Files that their writer has not finished are opened too, with a
// warning unless `isToldElsewhere`.
std::unique_ptr<GelFile> openGelFile(const std::string& path, Console& console,
                                     bool isToldElsewhere = false);

// Of lines about damage that is much alike.
inline constexpr std::size_t kMostLines = 100;

// "1 row", "2 rows".
std::string counted(std::uint64_t count, const char* thing);

// A kind of file that tables are converted from and to: what follows Read and Write in the actions'
// names, and attributes that the kind needs.
struct TableKind {
  const char* extension;
  const char* action;
  const char* attributes;
};
// By the extension; null when it is none of them.
const TableKind* tableKindOf(const std::string& path);
QString knownTableExtensions();

// Runs a graph that converts a table, with a progress line; an interrupt is reported.
RunResult runConversion(Graph& graph, Console& console);

// One a part, each in its own file.
void addGelInfo(CLI::App& gel, ChosenCommand& chosen);
void addGelHead(CLI::App& gel, ChosenCommand& chosen);
void addGelVerify(CLI::App& gel, ChosenCommand& chosen);
void addGelConversions(CLI::App& gel, ChosenCommand& chosen);
void addGelRecover(CLI::App& gel, ChosenCommand& chosen);

}  // namespace kelvarin
