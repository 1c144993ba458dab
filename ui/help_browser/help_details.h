// What the help browser shows of one entry below the tree, and what it inserts.
//
// Threads: any.
#pragma once

#include <QString>
#include <QStringList>

#include "expression/help/language_entries.h"

namespace kelvarin {

// A text of the help in the language of the user interface.
QString translatedHelp(const char* text);

// The group is none of the prescribed tree.
bool isFurther(const LanguageEntry& entry);

// What can be inserted for an entry: its names, a function's with brackets, of a row of signs each.
QStringList insertionsOf(const LanguageEntry& entry);

// As rich text. A link has the index of the insertion that it stands for.
QString detailsOf(const LanguageEntry& entry);

}  // namespace kelvarin
