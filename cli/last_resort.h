// What the program does about exceptions that nobody below has turned into a message: mostly
// memory that does not suffice.
//
// Threads: any.
#pragma once

#include <functional>

#include <QString>

#include "cli/exit_status.h"

namespace kelvarin {

// Where an exception can go nowhere else (out of a destructor or a thread of a library), the
// process ends with a message, without unfinished files.
void endOnUncaughtException();

// The work's status, or a message and failure when it throws.
ExitStatus guarded(const std::function<ExitStatus()>& work);

// In a handler: what to say about the exception that is handled. May throw std::bad_alloc.
QString textOfHandledException();

}  // namespace kelvarin
