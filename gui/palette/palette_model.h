// The actions that a graph may use, in groups, searched by name, tool tip and keywords.
//
// Used by: palette_panel.h, quick_add.h. Threads: the user-interface thread.
#pragma once

#include <QAbstractItemModel>

#include "host/engine/action_catalogue.h"

namespace kelvarin {

// The name of a group without the number that orders it.
QString shownGroupName(const QString& tag);
// Best first; all of the catalogue for an empty text. An action whose name begins with the text
// comes before one that only mentions it.
QStringList searchActions(const ActionCatalogue& catalogue, const QString& text);
// The type that reads the file by its extension; empty when there is none.
QString readerOf(const ActionCatalogue& catalogue, const QString& file);

}  // namespace kelvarin
