// Marks what a shared library of the program offers to programs and plug-ins; all else is hidden.
#pragma once

#define KELVARIN_CORE __attribute__((visibility("default")))
