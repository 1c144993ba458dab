// The names of the language by what they are, for look-ups while typing.
//
// Threads: read-only after the first call.
#pragma once

#include <QHash>
#include <QString>

#include "expression/help/language_entries.h"

namespace kelvarin {

// By each name of functions, constants and word operators; signs and units have no names here.
const QHash<QString, const LanguageEntry*>& languageNames();

}  // namespace kelvarin
