// The column names of a table file, for who types them: of its first line, or of its metadata.
//
// Errors: none where the file cannot be read.
#pragma once

#include <string>

#include <QStringList>

namespace kelvarin {

// Opens the library for Arrow files for these alone.
QStringList columnsOfFile(const std::string& path);

}  // namespace kelvarin
