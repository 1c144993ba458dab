#include "plugin/editors_loader.h"

#include <filesystem>
#include <string>

#include <dlfcn.h>

#include "actions/frame/editors_library.h"
#include "actions/frame/messages.h"
#include "host/contract/main_ui.h"
#include "host/contract/screen.h"

namespace kelvarin {

namespace {

std::string pathOfLibrary() {
  Dl_info plugin{};
  dladdr(reinterpret_cast<const void*>(&pathOfLibrary), &plugin);
  return std::filesystem::path(plugin.dli_fname == nullptr ? "" : plugin.dli_fname)
      .replace_filename(kEditorsLibrary)
      .string();
}

// The library stays open until the process ends: editors, and what they put into actions, are its
// code.
CreateEditorFunction loadLibrary() {
  const std::string path = pathOfLibrary();
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* function = library == nullptr ? nullptr : dlsym(library, kCreateEditorFunction);
  if (function == nullptr) {
    const char* reason = dlerror();
    MainUI::addLog(LogLevel::error,
                   action_messages::editorsNotLoaded(QString::fromLocal8Bit(path.c_str()),
                                                     QString::fromLocal8Bit(reason)));
  }
  return reinterpret_cast<CreateEditorFunction>(function);
}

}  // namespace

UpdateClassWidget* createEditor(QWidget* parent, ActionItem* action) {
  if (screen() == nullptr) {
    return nullptr;
  }
  static const CreateEditorFunction create = loadLibrary();
  return create == nullptr ? nullptr : create(parent, action);
}

}  // namespace kelvarin
