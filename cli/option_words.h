// What a reader of CSV files says of its settings, in the words of a command line.
//
// Used by: the log of commands that make their graphs themselves.
#pragma once

#include <QString>

namespace kelvarin {

// With the options in place of the attributes that a message names, as in nullText='NA'.
QString inWordsOfOptions(const QString& text);

}  // namespace kelvarin
