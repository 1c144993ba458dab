// The canvas is as quick as people need it with 1,000 actions; machines of tests may be four times
// as slow.
#include <gtest/gtest.h>

#include "gui/canvas/tests/canvas_figures.h"

namespace kelvarin {
namespace {

TEST(CanvasSpeed, AThousandActionsArePannedZoomedAndMovedWithoutWaiting) {
  for (const testing::CanvasFigure& figure : testing::measureCanvas()) {
    EXPECT_LT(figure.milliseconds, 4 * figure.goal) << figure.name.toStdString();
  }
}

}  // namespace
}  // namespace kelvarin
