// What the program does about exceptions that nobody below has turned into a message, and about
// faults of its own or of a library: mostly memory that does not suffice.
//
// Threads: any; install from the main thread.
#pragma once

#include <functional>

#include <QString>

#include "cli/exit_status.h"

namespace kelvarin {

// Where an exception can go nowhere else (out of a destructor or a thread of a library), the
// process ends with a message and failure, where a library or the program crashes, with a message
// and the signal; neither leaves unfinished files.
void endInOrderOnFaults();

// The work's status, or a message and failure when it throws.
ExitStatus guarded(const std::function<ExitStatus()>& work);

// In a handler: what to say about the exception that is handled. May throw std::bad_alloc.
QString textOfHandledException();

// After main()'s last work. When an exception was handled by one of these two, the process ends
// here: it may have passed through a library that is then not fit for its destructors.
void endAfterException(ExitStatus status);

}  // namespace kelvarin
