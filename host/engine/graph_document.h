// Makes a graph of a parsed graph file and collects every fault on the way.
//
// Used by: graph_reader.cpp.
// Threads: one.
// Errors: collected; the graph is whole only when there are none.
#pragma once

#include <utility>

#include <QHash>
#include <QSet>

#include "host/contract/described_action.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

class GraphDocument {
 public:
  enum class Faults {
    refuse,
    // Everything that has a fault is there all the same, for a graph that is opened to be mended.
    keep,
  };

  GraphDocument(const QString& file, const ActionCatalogue& catalogue,
                Faults faults = Faults::refuse);

  void read(const XMLNode& root, const std::vector<ParameterOverride>& overrides);
  const GraphErrors& errors() const { return m_errors; }
  // False for a document of another kind or version.
  bool isGraph() const { return m_isGraph; }
  Graph takeGraph() { return std::move(m_graph); }
  // Of a graph with its faults kept.
  OpenedGraph takeOpenedGraph();

 private:
  struct EndOfLink {
    int action = -1;
    int pin = 0;
  };

  void refuse(const XMLNode& node, const QString& message);
  // Refuses children and attributes other than the known ones, and text.
  void checkContent(const XMLNode& node, const QStringList& attributes);
  void checkAttributes(const XMLNode& node, const QStringList& attributes);
  XMLNode onlyChild(const XMLNode& node, const char16_t* name);
  // The null text when it is absent, which is refused.
  QString neededAttribute(const XMLNode& node, const char16_t* name);

  void readParameters(const XMLNode& node, const std::vector<ParameterOverride>& overrides);
  void readParameter(const XMLNode& node);
  void applyOverrides(const XMLNode& node, const std::vector<ParameterOverride>& overrides);
  void readActions(const XMLNode& node);
  void readAction(const XMLNode& node);
  void addAction(const XMLNode& node, const QString& name, const CatalogueEntry* entry);
  void checkParameterNames(const XMLNode& action);
  // About the settings of the last action and the content of its element.
  void reportFaults(const XMLNode& node, const ActionItem& action);
  void warn(int action, const XMLNode& node, const QString& message);
  void readLinks(const XMLNode& node);
  void readLink(const XMLNode& node);
  void keepLink(const XMLNode& node);
  EndOfLink endOfLink(const XMLNode& node, const char16_t* nameOfAction, const char16_t* nameOfPin,
                      bool isInput);
  void readNotes(const XMLNode& node);
  void readNote(const XMLNode& node);
  // 0 when absent, or refused.
  double numberOf(const XMLNode& node, const char16_t* name);
  void checkCycles(const XMLNode& links);
  // The value with the parameters in it replaced; as it is when that is refused.
  QString expandedValue(const XMLNode& node, const QString& name, const QString& value);
  QStringList parameterNames() const;
  QStringList actionNames() const;

  const ActionCatalogue& m_catalogue;
  const Faults m_faults;
  Graph m_graph;
  std::vector<QString> m_whyActionCannotRun;  // with faults kept, by action
  std::vector<LinkInFile> m_linksInFile;
  GraphErrors m_errors;
  QHash<QString, int> m_indexOfAction;
  QSet<std::pair<int, int>> m_linkedPins;  // of input pins, the action and the pin
  long long m_growthOfParameters = 0;      // by replacing the parameters in their values
  bool m_isGraph = false;
  bool m_hasAllActions = true;  // no action was refused, so that cycles and links can be judged
  std::vector<XMLNode> m_linkNodes;  // of the graph's links
};

}  // namespace kelvarin
