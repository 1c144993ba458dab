#include "gui/document/prepared_graph.h"

#include "gui/document/edited_graph_parts.h"

namespace kelvarin {

PreparedGraph::PreparedGraph(const QByteArray& document, const QString& file,
                             const ActionCatalogue& catalogue,
                             const std::vector<ParameterOverride>& settings) {
  auto opened = openGraph(document, file, catalogue, settings);
  if (!opened) {
    m_faults = opened.error();
    return;
  }
  m_parts = std::make_unique<EditedGraph::Parts>(catalogue);
  m_parts->overrides = settings;
  m_parts->take(document, std::move(*opened));
  m_parts->saved = m_parts->now();
  m_parts->snapshots.emplace_back(document, m_parts->saved);
}

PreparedGraph::~PreparedGraph() = default;

}  // namespace kelvarin
