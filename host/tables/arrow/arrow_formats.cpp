#include "host/tables/arrow/arrow_formats.h"

#include <filesystem>
#include <string>

#include <dlfcn.h>

#include "host/contract/main_ui.h"
#include "host/tables/arrow/messages.h"

namespace kelvarin {

namespace {

constexpr const char* kLibrary = "libKelvarinArrow.so";

// It lies beside KelvarinCore.
std::string pathOfLibrary() {
  Dl_info core{};
  dladdr(reinterpret_cast<const void*>(&MainUI::kelvarinID), &core);
  return std::filesystem::path(core.dli_fname == nullptr ? "" : core.dli_fname)
      .replace_filename(kLibrary)
      .string();
}

Result<const ArrowFormats*, QString> loadLibrary() {
  void* library = dlopen(pathOfLibrary().c_str(), RTLD_NOW | RTLD_LOCAL);
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
