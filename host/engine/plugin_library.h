// A plug-in loaded at run time through its Qt entry, and the prototypes of its actions.
//
// Used by: the action catalogue.
// Threads: one.
// Errors: a text for the user that names the file; nothing of a file is run before its interface
// identifier has been read and found right.
#pragma once

#include <memory>
#include <vector>

#include <QString>

#include "base/result.h"
#include "host/contract/action_item.h"

class KelvarinPluginInterface;

namespace kelvarin {

class PluginLibrary {
 public:
  // Loads `file`; an empty name means defaultFile().
  static Result<std::unique_ptr<PluginLibrary>, QString> load(const QString& file);
  // The file that the environment variable KELVARIN_PLUGIN names, else the plug-in below the folder
  // of KelvarinCore, in a build as where it is installed.
  static QString defaultFile();

  QString file() const { return m_file; }
  double version() const;
  // New prototypes in the plug-in's order.
  std::vector<std::unique_ptr<ActionItem>> createPrototypes() const;

 private:
  PluginLibrary(QString file, KelvarinPluginInterface* root) : m_file(file), m_root(root) {}

  QString m_file;
  KelvarinPluginInterface*
      m_root;  // owned by the library, which stays loaded until the program ends
};

}  // namespace kelvarin
