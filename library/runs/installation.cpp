#include "library/runs/installation.h"

#include <mutex>

#include "base/sibling_library.h"
#include "host/contract/main_ui.h"
#include "host/tables/table_actions.h"

namespace kelvarin {

namespace {

// It lies below the folder of KelvarinCore.
QString pluginFile() {
  const QString named = qEnvironmentVariable("KELVARIN_PLUGIN");
  return named.isEmpty() ? QString::fromStdString(
                               siblingLibrary(reinterpret_cast<const void*>(&MainUI::kelvarinID),
                                              "plugins/libKelvarinMathParser.so"))
                         : named;
}

}  // namespace

Outcome<const ActionCatalogue*> installedActions() {
  static std::mutex mutex;
  static const ActionCatalogue* loaded = nullptr;  // never deleted: its code may run to the end
  const std::lock_guard lock(mutex);
  if (loaded == nullptr) {
    auto plugin = PluginLibrary::load(pluginFile());
    if (!plugin) {
      return Failure{errorOf(KELVARIN_NOT_INSTALLED, plugin.error())};
    }
    loaded = new ActionCatalogue(std::move(*plugin), makeTableActions());
  }
  return loaded;
}

}  // namespace kelvarin
