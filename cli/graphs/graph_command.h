// `kelvarin graph`: graph files as texts.
#pragma once

#include "cli/commands.h"

namespace kelvarin {

void addGraphNew(CLI::App& graph, ChosenCommand& chosen);
void addGraphFmt(CLI::App& graph, ChosenCommand& chosen);
void addGraphShow(CLI::App& graph, ChosenCommand& chosen);
void addGraphDiff(CLI::App& graph, ChosenCommand& chosen);
void addGraphUpgrade(CLI::App& graph, ChosenCommand& chosen);
void addGraphSchema(CLI::App& graph, ChosenCommand& chosen);

}  // namespace kelvarin
