// All actions with their editors, and the examples to try them on.
//
// Used by the tests of the window as a whole.
#pragma once

#include <QTemporaryDir>

#include "host/engine/action_catalogue.h"

namespace kelvarin::testing {

// Of the plug-in and the host; it stays for the whole process, as the plug-in does.
const ActionCatalogue& wholeCatalogue();

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
