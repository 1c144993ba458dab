#include "host/contract/editor_registry.h"

#include <utility>

namespace kelvarin {

EditorRegistry& EditorRegistry::instance() {
  // Never destroyed: its factories are code of plug-ins, which may be gone by then.
  static auto* registry = new EditorRegistry;
  return *registry;
}

void EditorRegistry::add(std::string typeName, Factory factory) {
  m_factories[std::move(typeName)] = std::move(factory);
}

UpdateClassWidget* EditorRegistry::create(std::string_view typeName, QWidget* parent,
                                          ActionItem* action) const {
  const auto entry = m_factories.find(typeName);
  return entry == m_factories.end() ? nullptr : entry->second(parent, action);
}

}  // namespace kelvarin
