// Texts of a table made safe for a terminal.
//
// Data may hold bytes that move the cursor, change colours or turn the direction of writing; on a
// terminal they could make one thing look like another. They are shown as \xNN or \u{N} instead.
// Used by the log and by the commands that show data on a terminal.
// Threads: any.
#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace kelvarin {

enum class LineBreaks { escape, keep };

// `text` is meant to be UTF-8; bytes that are none are shown, too. With line breaks that are kept,
// tabs are kept as well.
std::string printable(std::string_view text, LineBreaks lineBreaks = LineBreaks::escape);
// A message, which may have several lines.
inline std::string printable(const QString& message) {
  return printable(message.toStdString(), LineBreaks::keep);
}

}  // namespace kelvarin
