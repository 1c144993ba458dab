// The actions of the plug-in and of the host, for tests of graphs of them.
#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "host/engine/action_catalogue.h"
#include "host/tables/table_actions.h"

namespace kelvarin {

inline const ActionCatalogue& loadedCatalogue() {
  static const auto made = [] {
    auto plugin = PluginLibrary::load(QStringLiteral(KELVARIN_PLUGIN));
    EXPECT_TRUE(plugin);
    return std::make_unique<ActionCatalogue>(std::move(*plugin), makeTableActions());
  }();
  return *made;
}

}  // namespace kelvarin
