// Makes texts that hold data harmless to a terminal.
#pragma once

#include <string>

#include <QString>

namespace kelvarin {

// As UTF-8, with control characters but line breaks and tabs, and those that turn the direction of
// writing, in the form \x1b or \u202e. A line break stays, since messages have several lines.
std::string terminalText(const QString& text);

}  // namespace kelvarin
