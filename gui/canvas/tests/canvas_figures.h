// How quick the canvas is with 1,000 actions and 1,500 links, in a view of 1280 x 800.
//
// Used by: canvas_benchmark.cpp, which prints the figures, and canvas_speed_test.cpp.
#pragma once

#include <vector>

#include <QString>

namespace kelvarin::testing {

struct CanvasFigure {
  QString name;
  double milliseconds = 0.0;  // the 99th percentile of frames, or the whole, or the mean of moves
  double goal = 0.0;
};

std::vector<CanvasFigure> measureCanvas();

}  // namespace kelvarin::testing
