// The graphical host with the plug-in and all editors, as one run of the program has it, on a copy
// of the examples.
//
// Used by the tests of the window as a whole.
#pragma once

#include <functional>

#include <gtest/gtest.h>
#include <QTemporaryDir>

#include "gui/document/graph_commands.h"
#include "gui/services/edit_services.h"
#include "gui/window/host_window.h"
#include "host/contract/host_session.h"
#include "host/engine/action_catalogue.h"
#include "host/widgets/theme.h"

namespace kelvarin::testing {

// Of the plug-in and the host; it stays for the whole process, as the plug-in does.
const ActionCatalogue& wholeCatalogue();

struct HostProgram {
  HostProgram();

  // Opens the file and waits until it is shown.
  void open(const QString& file);
  void select(const QString& action);

  EditedGraph graph{wholeCatalogue()};
  EditServices services{graph, wholeCatalogue()};
  HostSession session{&services};
  const HostSession::Scope scope{&session};
  GraphCommands commands{graph};
  Theme theme;
  HostWindow window{commands, services, theme};
};

// A folder with the examples, in which the test works and writes.
class ExampleFolder {
 public:
  ExampleFolder();
  ~ExampleFolder();
  ExampleFolder(const ExampleFolder&) = delete;
  ExampleFolder& operator=(const ExampleFolder&) = delete;

  QString path(const QString& file) const { return m_folder.filePath(file); }
  // Flights, and one of every type of action beside it, each named as its type.
  QString graphOfAllTypes() const;

 private:
  QTemporaryDir m_folder;
  QString m_workingFolder;
};

}  // namespace kelvarin::testing
