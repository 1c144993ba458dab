// A library that lies beside another one of the program and is opened when it is needed, so that
// nobody pays for it who does not use it.
//
// Threads: any. Errors: the system's reason.
#pragma once

#include <string>

#include "base/result.h"

namespace kelvarin {

// The path of `library` in the folder of the library that has the code at `address`.
std::string siblingLibrary(const void* address, const char* library);

// Opens the library, which is never closed again, and finds a function in it.
Result<void*> functionOfLibrary(const std::string& path, const char* function);

}  // namespace kelvarin
