// The names of the language by what they are, for look-ups while typing.
//
// Threads: any.
#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include "expression/help/language_entries.h"
#include "ui/language/formula.h"

namespace kelvarin {

// By each name of functions, constants and word operators; signs and units have no names here.
const QHash<QString, const LanguageEntry*>& languageNames();

// Those that the settings of the formula leave out: of the row number and the current time.
QSet<QString> namesNotOffered(const Formula& formula);

}  // namespace kelvarin
