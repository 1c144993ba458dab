// Which property editor an action type has; keeps actions free of widgets.
//
// Filled by the plug-in when it is loaded, asked by the actions' editPropertyFrame(). Where nothing
// was entered (tests, programs without a screen) there is no editor.
// Threads: the user-interface thread.
#pragma once

#include <map>
#include <string>
#include <string_view>

class ActionItem;
class QWidget;
class UpdateClassWidget;

namespace kelvarin {

class EditorRegistry {
 public:
  // The editor belongs to its parent widget.
  using Factory = UpdateClassWidget* (*)(QWidget* parent, ActionItem* action);

  static EditorRegistry& instance() {
    static EditorRegistry registry;
    return registry;
  }

  void add(std::string typeName, Factory factory) { m_factories[std::move(typeName)] = factory; }

  // Null when the type has no editor.
  UpdateClassWidget* create(std::string_view typeName, QWidget* parent, ActionItem* action) const {
    const auto entry = m_factories.find(typeName);
    return entry == m_factories.end() ? nullptr : entry->second(parent, action);
  }

 private:
  std::map<std::string, Factory, std::less<>> m_factories;
};

}  // namespace kelvarin
