// A graph made of a document beside the user-interface thread, for EditedGraph::load() to show.
//
// Used by: document_file.h, edited_graph.h.
// Threads: made on any, used by one at a time.
#pragma once

#include <memory>

#include "gui/document/edited_graph.h"

namespace kelvarin {

class PreparedGraph {
 public:
  // What is passed is as of EditedGraph::load().
  PreparedGraph(const QByteArray& document, const QString& file, const ActionCatalogue& catalogue,
                const std::vector<ParameterOverride>& settings);
  ~PreparedGraph();
  PreparedGraph(const PreparedGraph&) = delete;
  PreparedGraph& operator=(const PreparedGraph&) = delete;

  bool isGraph() const { return m_parts != nullptr; }
  // Why it is none.
  const GraphErrors& faults() const { return m_faults; }

 private:
  friend class EditedGraph;
  std::unique_ptr<EditedGraph::Parts> m_parts;
  GraphErrors m_faults;
};

}  // namespace kelvarin
