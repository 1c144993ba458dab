// Finds actions of the catalogue: by the first letters of their names, by words of their tool tips
// and keywords, by the files that they read; and orders the groups in which they are listed.
//
// Used by: palette_model.h, the window. Threads: any.
#pragma once

#include <functional>
#include <vector>

#include <QString>

#include "host/engine/action_catalogue.h"

namespace kelvarin {

// Which types are offered.
using ActionFilter = std::function<bool(const CatalogueEntry&)>;

struct ActionGroup {
  QString name;  // as it is shown
  std::vector<const CatalogueEntry*> actions;
};

// By the tags of the actions. A number before a tag orders the groups and is not shown; tags
// without one come first. An action stands in each of its groups, one without a tag among those
// that read files, write files or do neither.
std::vector<ActionGroup> actionGroups(const ActionCatalogue& catalogue, const ActionFilter& fits);

// Best first: names that begin with the text, then those with a word that does, keywords, words of
// the tool tip, and names that have its letters in this order. Of several words each is to be
// found. Nothing for an empty text.
std::vector<const CatalogueEntry*> searchActions(const ActionCatalogue& catalogue,
                                                 const QString& text, const ActionFilter& fits);

// The type that reads the file, by its extension; null when there is none.
const CatalogueEntry* readerOf(const ActionCatalogue& catalogue, const QString& file);
// The extensions of all files that some action reads, without the dot.
QStringList readableFileTypes(const ActionCatalogue& catalogue);

}  // namespace kelvarin
