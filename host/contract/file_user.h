// What an action announces about the files that it reads or writes, before any of them is touched.
//
// Only what its settings name; names that come with the rows are claimed when they are known, see
// claimed_names.h. An action that works with files derives from this beside ActionItem.
// Used by: the engine, before a run and in a check. Threads: those of ActionItem.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "base/export.h"

namespace kelvarin {

enum class FileUse { reads, writes };

struct UsedFile {
  QString path;  // "-" is standard output
  FileUse use = FileUse::reads;
  // Further files of the same folder that come with it: a name in which a '?' stands for a digit,
  // "sales.???.cs_kelvarin". Empty when there are none.
  QString companions;
};

// Whether the name is that of the program's standard output.
KELVARIN_CORE bool isStandardOutput(const QString& path);

class KELVARIN_CORE FileUser {
 public:
  virtual ~FileUser();
  virtual QList<UsedFile> usedFiles() const = 0;
  // What would happen to files that are there now and that a user may not expect. Asked in a check;
  // in a run the action says it itself.
  virtual QStringList warningsAboutFiles() const { return {}; }
};

}  // namespace kelvarin
