#include "host/engine/file_check.h"

#include "host/contract/claimed_names.h"
#include "host/contract/host_session.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

bool checkUsedFiles(const Graph& graph) {
  FileClaims claims;
  bool areFree = true;
  for (const GraphAction& action : graph.actions) {
    const auto* user = dynamic_cast<const FileUser*>(action.item.get());
    if (user == nullptr || action.isDisabled) {
      continue;
    }
    const CurrentAction current(action.item.get());
    for (const UsedFile& file : user->usedFiles()) {
      if (const auto hindrance = claims.add(*action.item, file)) {
        MainUI::addLog(LogLevel::error, *hindrance);
        areFree = false;
      }
    }
  }
  return areFree;
}

void reportFileWarnings(const Graph& graph) {
  for (const GraphAction& action : graph.actions) {
    const auto* user = dynamic_cast<const FileUser*>(action.item.get());
    if (user != nullptr && !action.isDisabled) {
      const CurrentAction current(action.item.get());
      for (const QString& warning : user->warningsAboutFiles()) {
        MainUI::addLog(LogLevel::warning, warning);
      }
    }
  }
}

}  // namespace kelvarin
