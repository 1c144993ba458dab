// The screen, the application object and the actions of the commands with windows.
//
// Used by: edit_library.cpp, gui_library.cpp. Threads: the user-interface thread.
#pragma once

#include <vector>

#include "host/contract/window_request.h"
#include "host/engine/action_catalogue.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

// The command from its beginning to its end: `show` opens a window and returns the exit code when
// it is closed. 1 after an error was reported.
int runWithWindows(int argc, char** argv, const WindowRequest& request,
                   int (*show)(const WindowRequest& request, const ActionCatalogue& catalogue));

std::vector<ParameterOverride> overridesOf(const WindowRequest& request);

}  // namespace kelvarin
