// The host's statics: logging, what the user does, prompts and identities.
//
// They forward to the HostServices of the session in which the calling thread works
// (host_session.h). Without one, log lines go to standard error and questions take their safe
// answer.
// Threads: any.
#pragma once

#include <QString>
#include <QStringList>

#include "base/export.h"

class OneRow;
class QWidget;

enum class LogLevel { error = 1, warning = 2, information = 3 };

enum class GlobalUserMode { simple = 0, expert = 1 };

namespace kelvarin {
class EditedGraph;
}

class KELVARIN_CORE MainUI {
 public:
  static void addLog(LogLevel level, QString text);
  static GlobalUserMode userMode();
  // The graph open in an editor; null when there is none.
  static kelvarin::EditedGraph* editedGraph();
  static void documentWasModified();
  static void invalidate();
  // Device pixels per logical pixel.
  static double pixelSize();
  // A random 64-bit number: two calls in one process, or two processes, practically never agree.
  static quint64 getNearUniqueRandomID();
  static bool isWebOn();
  // Identifies the version of this program, for instance "kelvarin 0.1.0".
  static QString kelvarinID();

  // A file took fewer bytes than given. True: write again; false: give up. The host decides by
  // asking or by waiting.
  static bool displayOutOfDiskSpace(QString file, int missingBytes, bool canRetry);

  // Column pickers for editors. Without a screen nothing is picked and the log says so.
  static QString selectColumn(const OneRow* columns, QWidget* parent);
  static QStringList selectColumn(const OneRow* columns, QStringList selected, QWidget* parent);
  static int selectColumn(QStringList names, int selected, QWidget* parent);
};

// Shows a page of the help; `anchor` is a section of it, empty for its beginning. A host without a
// browser logs the page.
KELVARIN_CORE void openHelp(QString helpId, QString anchor);
