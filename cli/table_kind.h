// The kinds of files that tables are read from and written to, by extension or by name.
//
// Used by the commands that make their graphs themselves.
#pragma once

#include <string>

#include <QString>

namespace kelvarin {

struct TableKind {
  const char* extension;
  const char* name;        // for options, instead of an extension
  const char* format;      // what follows Read and Write in the actions' names
  const char* attributes;  // that these actions need for it

  bool isColumnar() const;
  bool isCsv() const;
  // Its files have types of columns that rows do not have.
  bool hasTypes() const;
  // Its attributes say what separates the fields.
  bool hasSeparator() const;
  // An action of this name. Without `file` its file is the parameter of the same name. `more` are
  // attributes, which come before those of the kind, `children` elements inside.
  QString readElement(const QString& action, const QString& more = {}, const QString& file = {},
                      const QString& children = {}) const;
  QString writeElement(const QString& action, const QString& more = {}, const QString& file = {},
                       const QString& children = {}) const;
};

// By the extension of a path; null when it is none of them.
const TableKind* tableKindOf(const std::string& path);
// The same of a file to be read, which may be a CSV file that is compressed: x.csv.gz, x.tsv.zst.
const TableKind* tableKindToRead(const std::string& path);
// By its name: csv, tsv, parquet, arrow, gel; null when it is none of them.
const TableKind* tableKindNamed(const std::string& name);
const TableKind& csvKind();
// By the extension of a file that exists or will, else by its first bytes; CSV where they say
// nothing.
const TableKind& tableKindOfContent(const std::string& path);
// Of other files than columnar ones, whose extension the texts name themselves.
QString knownTableExtensions();

}  // namespace kelvarin
