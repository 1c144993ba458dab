// What files are that a user drops on a window: graphs, tables and how they are read, or neither.
//
// Used by: file_drop.h. Threads: any; all operations wait for the disk.
#pragma once

#include <vector>

#include <QStringList>

#include "host/tables/csv/csv_guess.h"

namespace kelvarin {

struct DroppedFile {
  enum class Kind { graph, table, other };

  QString path;
  Kind kind = Kind::other;
  QString fileType;  // of a table: the extension by which its reader is found
  CsvGuess csv;      // of a text file
  QString why;       // of another one: why nothing can be done with it, for the user
  TextEncoding encoding = TextEncoding::utf8;  // of a text file
};

// `readableTypes` are the extensions that some action reads. A folder stands for the tables in it.
std::vector<DroppedFile> lookAtDropped(const QStringList& paths, const QStringList& readableTypes);

}  // namespace kelvarin
