// Finds what belongs to words, where somebody does not know what it is called.
//
// Used by `kelvarin functions`.
#pragma once

#include <string>
#include <vector>

#include "expression/help/language_entries.h"

namespace kelvarin {

// What fits all words best comes first: names, then names that it has elsewhere, then what is said
// about it. Empty where no entry fits them all.
std::vector<const LanguageEntry*> searchLanguage(const std::string& words);

}  // namespace kelvarin
