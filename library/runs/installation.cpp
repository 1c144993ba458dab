#include "library/runs/installation.h"

#include <mutex>

#include "host/tables/table_actions.h"

namespace kelvarin {

Outcome<const ActionCatalogue*> installedActions() {
  static std::mutex mutex;
  static const ActionCatalogue* loaded = nullptr;  // never deleted: its code may run to the end
  const std::lock_guard lock(mutex);
  if (loaded == nullptr) {
    auto plugin = PluginLibrary::load({});
    if (!plugin) {
      return Failure{errorOf(KELVARIN_NOT_INSTALLED, plugin.error())};
    }
    loaded = new ActionCatalogue(std::move(*plugin), makeTableActions());
  }
  return loaded;
}

}  // namespace kelvarin
