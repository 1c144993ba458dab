// An element of each action, to copy from: the least that does something.
#pragma once

#include <QString>

namespace kelvarin {

// Null for an action that has none.
const char* exampleOf(const QString& typeName);

}  // namespace kelvarin
