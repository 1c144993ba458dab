// What the program asks of the library with its windows, libKelvarinGui.so, which lies beside
// KelvarinCore and is opened by `kelvarin edit` and `kelvarin gui`.
#pragma once

#include <utility>
#include <vector>

#include <QString>

namespace kelvarin {

struct WindowRequest {
  QString graph;                                      // empty: the user opens or makes one
  QString action;                                     // to begin with; empty: the user chooses one
  QString plugin;                                     // empty: the default one
  std::vector<std::pair<QString, QString>> settings;  // parameters of the graph and their values
  int closeAfterMilliseconds = -1;                    // for tests; negative: when the user closes
};

// Shows the window until it is closed. No application object may exist. Returns the exit status.
using WindowFunction = int (*)(int argc, char** argv, const WindowRequest& request);
inline constexpr char kEditFunction[] = "kelvarinEdit";
inline constexpr char kGuiFunction[] = "kelvarinGui";
inline constexpr char kGuiLibrary[] = "libKelvarinGui.so";

}  // namespace kelvarin
