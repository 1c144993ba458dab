// What a plug-in's root object offers to the host, which calls it through the order of these
// operations.
#pragma once

#include <QtPlugin>

#include "host/xml/xml_node.h"

class ActionItem;

class KelvarinPluginInterface {
 public:
  virtual ~KelvarinPluginInterface() = default;
  // A prototype, owned by the caller; null after the last one. `flags` says which edition of the
  // host asks.
  virtual ActionItem* createAction(int index, int flags) = 0;
  // Before the host goes through the prototypes.
  virtual void prepare() = 0;
  virtual double pluginVersion() = 0;
  // A page for the host's settings, a set of commands for its menus; null when the plug-in has
  // none.
  virtual void* settingsPage() = 0;
  virtual void* menuCommands() = 0;
  // An action for an element of another name than its prototypes'; null when it offers none.
  virtual void* createFromForeignElement(XMLNode node) = 0;
};

#define KelvarinPluginInterface_iid "KelvarinPluginInterface/1.0"
Q_DECLARE_INTERFACE(KelvarinPluginInterface, KelvarinPluginInterface_iid)
