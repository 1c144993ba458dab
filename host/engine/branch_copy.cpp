#include "host/engine/branch_copy.h"

#include "host/engine/graph_links.h"
#include "host/engine/graph_writer.h"

namespace kelvarin {

BranchDocument::BranchDocument(const Graph& graph, int lastAction)
    : m_document(graphDocument(graph, GraphLinks(graph).withUpstream({lastAction}))),
      m_lastAction(graph.actions[static_cast<std::size_t>(lastAction)].name),
      m_file(graph.file),
      m_settings(*graph.settings) {
  for (const GraphParameter& parameter : graph.parameters) {
    m_parameters.push_back({parameter.name, m_settings.values().value(parameter.name)});
  }
}

Result<Graph, QString> BranchDocument::makeCopy(const ActionCatalogue& catalogue) const {
  auto copy = parseGraph(m_document, m_file, catalogue, m_parameters);
  if (!copy) {
    return Failure{copy.error().front().message};  // a position would be one of the copy
  }
  *copy->settings = m_settings;
  return std::move(*copy);
}

}  // namespace kelvarin
