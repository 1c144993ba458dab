#include "base/sibling_library.h"

#include <filesystem>

#include <dlfcn.h>

namespace kelvarin {

std::string siblingLibrary(const void* address, const char* library) {
  Dl_info owner{};
  dladdr(address, &owner);
  return std::filesystem::path(owner.dli_fname == nullptr ? "" : owner.dli_fname)
      .replace_filename(library)
      .string();
}

Result<void*> functionOfLibrary(const std::string& path, const char* function) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* found = library == nullptr ? nullptr : dlsym(library, function);
  if (found == nullptr) {
    return Failure{std::string(dlerror())};
  }
  return found;
}

}  // namespace kelvarin
