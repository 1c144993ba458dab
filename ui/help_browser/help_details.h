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

// What the link of an example begins with, before the example's index.
inline const QString kExampleLink = QStringLiteral("example");

// As rich text. Other links have the index of the insertion that they stand for.
QString detailsOf(const LanguageEntry& entry);

}  // namespace kelvarin
