// What a user may want to know about a file that cannot be read as it was named, or that is about
// to get the name of another format.
//
// Used by the sources, the sinks, the reader of graph files and the commands, behind their errors,
// and by the window on which files are dropped.
// Threads: any.
#pragma once

#include <QString>

#include "base/export.h"
#include "host/files/file_signatures.h"

namespace kelvarin {

// Of a file that does not exist: the nearest names among the first 10,000 of its folder, else some
// names with its extension; or the part of the path that is missing. Empty where the file exists,
// or there is nothing of that.
KELVARIN_CORE QString missingFileHint(const QString& path);

// By its first bytes; `text` where they are nothing but text, `unknown` also for what cannot be
// read.
KELVARIN_CORE FileFormat formatOfContent(const QString& path);

// Of a file that is not what `wanted` says: what its first bytes look like and what reads it. Empty
// where they say nothing, or look like `wanted`.
KELVARIN_CORE QString foreignFormatHint(const QString& path, FileFormat wanted);

// Of a file that is written in the format `own` under a name that belongs to another one; empty
// elsewhere.
KELVARIN_CORE QString foreignExtensionHint(const QString& path, FileFormat own);

}  // namespace kelvarin
