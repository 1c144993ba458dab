#include "gui/document/edited_graph.h"

#include <sstream>
#include <utility>

#include "host/engine/graph_writer.h"

namespace kelvarin {

namespace {

constexpr std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

QByteArray elementOf(const GraphAction& action) {
  std::wostringstream out;
  action.item->saveXML(out, action.name);
  return QString::fromStdWString(out.str()).toUtf8();
}

std::vector<QByteArray> elementsOf(const Graph& graph) {
  std::vector<QByteArray> elements;
  elements.reserve(graph.actions.size());
  for (const GraphAction& action : graph.actions) {
    elements.push_back(elementOf(action));
  }
  return elements;
}

}  // namespace

void EditedGraph::setGraph(Graph graph) {
  // Actions refer to their graph's settings, so they cease to exist before those do.
  m_graph.actions.clear();
  m_graph = std::move(graph);
  m_savedElements = elementsOf(m_graph);
  m_isModified.assign(m_graph.actions.size(), false);
  m_modifiedCount = 0;
  ++m_version;
  emit changed();
}

void EditedGraph::noteEdit(int action) {
  ++m_version;
  compare(action);
  emit changed();
}

void EditedGraph::replaceAction(int action, const XMLNode& element) {
  std::unique_ptr<ActionItem>& item = m_graph.actions[at(action)].item;
  item.reset(item->createFromXML(element, m_graph.settings.get()));
  noteEdit(action);
}

void EditedGraph::compare(int action) {
  const bool isModified = elementOf(m_graph.actions[at(action)]) != m_savedElements[at(action)];
  m_modifiedCount += static_cast<int>(isModified) - static_cast<int>(m_isModified[at(action)]);
  m_isModified[at(action)] = isModified;
}

EditedGraph::Snapshot EditedGraph::snapshot() const {
  return {graphDocument(m_graph), elementsOf(m_graph)};
}

void EditedGraph::markSaved(const Snapshot& snapshot) {
  m_savedElements = snapshot.elements;
  for (int i = 0; i < actionCount(); ++i) {
    compare(i);
  }
  emit changed();
}

}  // namespace kelvarin
