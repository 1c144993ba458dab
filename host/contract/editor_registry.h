// Which property editor an action type has; keeps actions free of widgets.
//
// Filled by plug-ins and graphical hosts, asked by the actions' editPropertyFrame(). Where nothing
// was entered (tests, programs without a screen) there is no editor.
// Threads: the user-interface thread.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "base/export.h"

class ActionItem;
class QWidget;
class UpdateClassWidget;

namespace kelvarin {

class KELVARIN_CORE EditorRegistry {
 public:
  // The editor belongs to its parent widget; null where it cannot be made, which is logged.
  using Factory = std::function<UpdateClassWidget*(QWidget* parent, ActionItem* action)>;

  // One for the process, as there is one screen.
  static EditorRegistry& instance();

  void add(std::string typeName, Factory factory);
  // Null when the type has no editor.
  UpdateClassWidget* create(std::string_view typeName, QWidget* parent, ActionItem* action) const;

 private:
  std::map<std::string, Factory, std::less<>> m_factories;
};

}  // namespace kelvarin
