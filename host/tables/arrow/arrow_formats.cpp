#include "host/tables/arrow/arrow_formats.h"

#include <dlfcn.h>

#include "host/tables/arrow/messages.h"

namespace kelvarin {

namespace {

// Found along the run path, in the folder of the program's other libraries.
constexpr const char* kLibrary = "libKelvarinArrow.so";

Result<const ArrowFormats*, QString> loadLibrary() {
  void* library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  void* function = library == nullptr ? nullptr : dlsym(library, "kelvarinArrowFormats");
  if (function == nullptr) {
    return Failure{table_messages::formatsNotLoaded(QString::fromLocal8Bit(dlerror()))};
  }
  return reinterpret_cast<ArrowFormatsFunction>(function)();
}

}  // namespace

Result<const ArrowFormats*, QString> ArrowFormats::load() {
  static const Result<const ArrowFormats*, QString> formats = loadLibrary();
  return formats;
}

}  // namespace kelvarin
