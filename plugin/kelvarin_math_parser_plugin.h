// The root object of the plug-in: makes for the host a prototype of each of its actions.
//
// It also says which editors the actions have.
// Made by Qt's plug-in loader, once a process as long as it lives.
// Threads: the user-interface thread.
// Errors: null; nothing is thrown to the host.
#pragma once

#include <QObject>

#include "host/contract/plugin_interface.h"

class KelvarinMathParserPlugin : public QObject, public KelvarinPluginInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID KelvarinPluginInterface_iid)
  Q_INTERFACES(KelvarinPluginInterface)

 public:
  // Enters the editors of the actions into the host's registry.
  KelvarinMathParserPlugin();
  // A prototype is built as from a graph file, with the empty node and no graph. The edition in
  // `flags` makes no difference to any action.
  ActionItem* createAction(int index, int flags) override;
  void prepare() override {}
  double pluginVersion() override;
  void* settingsPage() override { return nullptr; }
  void* menuCommands() override { return nullptr; }
  void* createFromForeignElement(XMLNode) override { return nullptr; }
};
