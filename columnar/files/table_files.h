// The files of a table on the disk: which there are, whether somebody writes them, and removing
// them.
//
// Paths are bytes as the system takes them. Used by: the writing action, table_exchange.h.
// Threads: any; callers that change anything hold the FolderLock.
// Errors: false or empty; errno says why.
#pragma once

#include <string>
#include <vector>

namespace kelvarin {

// A regular file that begins as main files do.
bool isColumnarFile(const std::string& path);
// A link counts itself, wherever it leads.
bool isSomethingThere(const std::string& path);
// Folders, devices and pipes are never replaced.
bool isReplaceable(const std::string& path);
// Another opening of the file holds the writer's lock.
bool isBeingWritten(const std::string& mainFile);

// The side files that bear the main file's name, as names in its folder.
std::vector<std::string> sideFileNamesOf(const std::string& mainFile);
// Another main file in the folder whose side files have these names; empty when there is none.
std::string tableSharingSideFiles(const std::string& mainFile);

// The main file and then its side files. False: the main file stays, and so do the others.
[[nodiscard]] bool removeTable(const std::string& mainFile);
// The other way round, so that nothing is left when it is cut short: a table that nobody misses.
[[nodiscard]] bool removeUnfinishedTable(const std::string& mainFile);
void removeSideFiles(const std::string& mainFile);

}  // namespace kelvarin
