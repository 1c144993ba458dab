// The screen and the application object of the commands with windows.
//
// Used by: edit_library.cpp, gui_library.cpp. Threads: the user-interface thread.
#pragma once

#include <optional>
#include <vector>

#include <QApplication>

#include "host/contract/window_request.h"
#include "host/engine/action_catalogue.h"
#include "host/engine/graph_reader.h"
#include "host/widgets/translation.h"
#include "host/widgets/widget_screen.h"

namespace kelvarin {

// While it lives, windows can be opened.
class WindowSession {
 public:
  WindowSession(int& argc, char** argv);
  ~WindowSession();
  WindowSession(const WindowSession&) = delete;
  WindowSession& operator=(const WindowSession&) = delete;

 private:
  QtMessageHandler m_outer;
  std::optional<QApplication> m_application;
  std::optional<Translation> m_translation;
  WidgetScreen m_screen;
};

// Says why no window can be opened, where that is so already.
bool canOpenWindows(const WindowRequest& request);
// Null after an error was reported.
std::unique_ptr<ActionCatalogue> loadCatalogue(const WindowRequest& request);
std::vector<ParameterOverride> overridesOf(const WindowRequest& request);

}  // namespace kelvarin
