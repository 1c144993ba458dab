// Prints the figures of the canvas and what they must not exceed: the median of five runs, or of as
// many as asked for.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <QApplication>

#include "gui/canvas/tests/canvas_figures.h"

int main(int argc, char** argv) {
  const int runCount = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const QApplication application(argc, argv);
  std::vector<std::vector<kelvarin::testing::CanvasFigure>> runs;
  for (int i = 0; i < runCount; ++i) {
    runs.push_back(kelvarin::testing::measureCanvas());
  }
  for (std::size_t figure = 0; figure < runs[0].size(); ++figure) {
    std::vector<double> times;
    for (const auto& run : runs) {
      times.push_back(run[figure].milliseconds);
    }
    std::sort(times.begin(), times.end());
    std::printf("%-26s %8.2f ms  (at most %.0f)\n", qPrintable(runs[0][figure].name),
                times[times.size() / 2], runs[0][figure].goal);
  }
  return 0;
}
