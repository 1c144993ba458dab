// Every action that a graph may use: the plug-in's first, then the host's own.
//
// Used by: the graph reader, the command that lists the actions.
// Threads: read-only after construction.
#pragma once

#include <memory>
#include <vector>

#include <QString>
#include <QStringList>

#include "host/contract/action_item.h"
#include "host/engine/plugin_library.h"

namespace kelvarin {

enum class ActionSource { plugin, host };

struct CatalogueEntry {
  QString typeName;
  QString toolTip;
  QString helpId;
  QStringList tags;
  QStringList keywords;
  QStringList fileTypes;
  int pinsIn = 0;
  int pinsOut = 0;
  double version = 0.0;  // of the XML that the action writes
  ActionSource source = ActionSource::host;
  ActionItem* prototype = nullptr;  // owned by the catalogue
};

class ActionCatalogue {
 public:
  using Prototypes = std::vector<std::unique_ptr<ActionItem>>;

  // `plugin` may be null: then there are the host's actions only.
  ActionCatalogue(std::unique_ptr<PluginLibrary> plugin, Prototypes hostActions);

  const std::vector<CatalogueEntry>& entries() const { return m_entries; }
  // Null when there is none; names are compared exactly.
  const CatalogueEntry* find(const QString& typeName) const;
  QStringList typeNames() const;

 private:
  void add(ActionSource source, Prototypes prototypes);

  std::unique_ptr<PluginLibrary> m_plugin;  // outlives the prototypes, whose code it holds
  Prototypes m_prototypes;
  std::vector<CatalogueEntry> m_entries;
};

}  // namespace kelvarin
