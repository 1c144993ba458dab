// What a process with a screen adds to the host's statics: the pickers, and the size of a pixel.
//
// KelvarinWidgets has the one that asks with dialogs. A process has one or none, as it has one
// application object. Threads: the user-interface thread.
#pragma once

#include <QString>
#include <QStringList>

#include "base/export.h"

class QWidget;

namespace kelvarin {

class KELVARIN_CORE Screen {
 public:
  virtual ~Screen();
  // Device pixels per logical pixel.
  virtual double pixelSize() = 0;
  // The index of the name that the user picked; -1 when the user gave up.
  virtual int pickColumn(const QStringList& names, int selected, QWidget* parent) = 0;
  // The names that the user picked; `selected` when the user gave up.
  virtual QStringList pickColumns(const QStringList& names, const QStringList& selected,
                                  QWidget* parent) = 0;
};

// Null takes the screen away; it outlives its use.
KELVARIN_CORE void installScreen(Screen* screen);
KELVARIN_CORE Screen* screen();

}  // namespace kelvarin
