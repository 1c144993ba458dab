// Deletes a columnar file together with its column-set files, as a user asks for it in an editor.
//
// Nothing is deleted that is not of the table: a file of another kind under the name stays, and so
// do side files that another table in the folder uses.
// Threads: any; it can wait for seconds for other processes.
// Errors: texts for the user; nothing logs.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin {

// The main file, where it is there, and the column-set files beside it.
QStringList filesOfTable(const QString& mainFile);

struct TableDeletion {
  QStringList successes;  // a text for each deleted file
  QString failure;        // why others stay; empty when all are gone
};

TableDeletion deleteTable(const QString& mainFile);

}  // namespace kelvarin
