#include "host/engine/branch_copy.h"

#include <utility>

#include "host/engine/graph_links.h"
#include "host/engine/graph_writer.h"

namespace kelvarin {

GraphSnapshot::GraphSnapshot(const Graph& graph, QByteArray document)
    : m_document(std::move(document)), m_file(graph.file), m_settings(*graph.settings) {
  for (const GraphParameter& parameter : graph.parameters) {
    m_parameters.push_back({parameter.name, m_settings.values().value(parameter.name)});
  }
}

Result<Graph, GraphErrors> GraphSnapshot::makeCopy(const ActionCatalogue& catalogue) const {
  auto copy = parseGraph(m_document, m_file, catalogue, m_parameters);
  if (copy) {
    *copy->settings = m_settings;
  }
  return copy;
}

Result<OpenedGraph, GraphErrors> GraphSnapshot::open(const ActionCatalogue& catalogue) const {
  auto opened = openGraph(m_document, m_file, catalogue, m_parameters);
  if (opened) {
    *opened->graph.settings = m_settings;
  }
  return opened;
}

BranchDocument::BranchDocument(const Graph& graph, int lastAction)
    : m_snapshot(graph, graphDocument(graph, GraphLinks(graph).withUpstream({lastAction}))),
      m_lastAction(graph.actions[static_cast<std::size_t>(lastAction)].name) {}

Result<Graph, QString> BranchDocument::makeCopy(const ActionCatalogue& catalogue) const {
  auto copy = m_snapshot.makeCopy(catalogue);
  if (!copy) {
    return Failure{copy.error().front().message};  // a position would be one of the copy
  }
  return std::move(*copy);
}

}  // namespace kelvarin
