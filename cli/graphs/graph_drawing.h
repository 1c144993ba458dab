// A graph as a text for people, and in the languages of two programs that draw.
#pragma once

#include "cli/graphs/graph_facts.h"

namespace kelvarin {

QString outlineOf(const GraphFacts& graph, const QString& file);
QString mermaidOf(const GraphFacts& graph);
QString dotOf(const GraphFacts& graph);

}  // namespace kelvarin
