// The files of a table on the disk: which exist, whether they are being written, and how they are
// removed.
//
// Paths are the bytes that the system gets. Used by the writing action and table_exchange.h.
// Threads: any; callers that change files hold the FolderLock.
// Errors: false or empty; errno says why.
#pragma once

#include <string>
#include <vector>

namespace kelvarin {

// A regular file that begins like a main file.
bool isColumnarFile(const std::string& path);
// Links are not followed.
bool isSomethingThere(const std::string& path);
// Folders, devices and pipes are never replaced.
bool isReplaceable(const std::string& path);
// The file is opened elsewhere and locked by its writer.
bool isBeingWritten(const std::string& mainFile);

// The side files that bear the main file's name, as names in its folder.
std::vector<std::string> sideFileNamesOf(const std::string& mainFile);
// Another main file in the folder with the same names of side files; empty when there is none.
std::string tableSharingSideFiles(const std::string& mainFile);

// Removes the main file and then its side files. False: the main file cannot be removed, and all
// files stay.
[[nodiscard]] bool removeTable(const std::string& mainFile);
// Removes the side files first, so that no side files remain when the process is killed.
[[nodiscard]] bool removeUnfinishedTable(const std::string& mainFile);
void removeSideFiles(const std::string& mainFile);

}  // namespace kelvarin
