// The keys that a window and the widgets in it answer to, for those who work without a mouse.
//
// Actions and shortcuts are found by themselves: an action says what it does by its text, a
// shortcut by its whatsThis. A widget that handles keys itself describes them here.
// Threads: the user-interface thread.
#pragma once

#include <QKeySequence>
#include <QList>
#include <QString>

#include "base/export.h"

class QWidget;

namespace kelvarin {

struct KeyMeaning {
  QString what;
  QString keys;   // as the desktop writes them, several separated by commas
  QString where;  // what must have the focus; empty: anything
  bool operator==(const KeyMeaning&) const = default;
};

// `where` is what users call such a widget.
KELVARIN_CORE void describeKey(QWidget& widget, const QKeySequence& key, const QString& what,
                               const QString& where);

// Each once, those of the whole window first, then by what they do.
KELVARIN_CORE QList<KeyMeaning> keysOf(const QWidget& window);

}  // namespace kelvarin
