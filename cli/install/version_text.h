// What `kelvarin --version` prints: the product's version in the first line, which scripts read,
// then the libraries, what native code uses of the processor, and the plug-in's file.
#pragma once

#include <string>

namespace kelvarin {

std::string versionText();
// "Qt 6.4.2, muParser 2.3.3, ..."
std::string libraryVersions();
std::string processorText();

}  // namespace kelvarin
