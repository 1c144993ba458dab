// The texts by which a file is known, whatever it is called: two files are one when they share one.
//
// Used by claimed_names.cpp. Threads: plain functions.
#pragma once

#include <vector>

#include <QString>

#include "host/contract/file_user.h"

namespace kelvarin {

struct FileKey {
  QString text;
  bool isCompanion = false;  // the file's own name has the form of a companion's
};

// Its name with links followed, what a link of its name leads to, its identity on the disk, and the
// forms of its companions' names and of its own. Devices and pipes have none, but for the standard
// streams.
std::vector<FileKey> keysOf(const UsedFile& file);

// Whether what is read is the program's standard input, of which each byte comes once.
bool readsStandardInput(const UsedFile& file);

}  // namespace kelvarin
