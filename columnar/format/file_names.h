// The names of the files that make up one columnar file: the main file and a side file for each
// column set.
//
// Names are UTF-8. Only the names are looked at, never the disk.
// Layout: docs/gel-format.md, "Files".
#pragma once

#include <string>
#include <string_view>

namespace kelvarin {

inline constexpr std::string_view kMainFileExtension = ".cgel_kelvarin";

// The main name without its extension: cut at its last ".", when that stands after the last "/" and
// the last "\".
std::string_view stemOfMainFile(std::string_view mainFile);

// "d/sales.dat" -> "sales.dat" and "d/"; the folder of a bare name is "./".
std::string_view nameWithoutFolder(std::string_view path);
std::string folderOf(std::string_view path);

// The ending depends on the main file's name alone, not on its folders, so that a table can be
// moved to any folder: sales.cgel_kelvarin, 0 -> sales.000.cs_kelvarin; x.dat, 12 -> x.012.cs
std::string sideFileName(std::string_view mainFile, int columnSet);
// With the other ending, which older tables have: once the folders' names counted as well.
std::string formerSideFileName(std::string_view mainFile, int columnSet);

// Whether `file` can be a side file of `mainFile`: its stem, three digits and the extension.
bool isSideFileName(std::string_view mainFile, std::string_view file);

}  // namespace kelvarin
