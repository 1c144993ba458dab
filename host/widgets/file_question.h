// Asks the user for a file or a folder, and lets the window go on meanwhile: what asked may be gone
// when the answer comes.
//
// Threads: the user-interface thread.
#pragma once

#include <functional>

#include <QString>

#include "base/export.h"

class QWidget;

namespace kelvarin {

struct FileQuestion {
  enum class Kind { openFile, saveFile, folder };

  Kind kind = Kind::openFile;
  QString caption;
  // Where to begin: a folder, or a file to propose.
  QString start;
  // As in "Columnar files (*.gel);;All files (*)".
  QString filter;
  bool confirmsOverwrite = true;
};

// Calls `chosen` when there is an answer, unless `parent` is gone by then.
KELVARIN_CORE void askForFile(QWidget* parent, const FileQuestion& question,
                              std::function<void(const QString& file)> chosen);

}  // namespace kelvarin
