// The kinds of files, by extension, that tables are converted from and to.
//
// Used by the commands that convert columnar files.
#pragma once

#include <string>

#include <QString>

namespace kelvarin {

struct TableKind {
  const char* extension;
  const char* format;      // what follows Read and Write in the actions' names
  const char* attributes;  // that these actions need for it

  QString readElement(const QString& name) const;
  QString writeElement(const QString& name) const;
};

// By the extension of a path; null when it is none of them.
const TableKind* tableKindOf(const std::string& path);
const TableKind& csvKind();
QString knownTableExtensions();

}  // namespace kelvarin
