// The signs and phrases that people bring from databases and programming languages, and how they
// are written here. Names are in foreign_names.h.
#pragma once

#include <QString>

namespace kelvarin {

// A blank for each character of a text literal, so that what is left is the language's.
QString withoutTexts(const QString& expression);

// How to write the first such sign or phrase; empty where there is none. Each of them is an error
// in every expression.
QString foreignSignHint(const QString& expression);

}  // namespace kelvarin
