// What Arrangement and the program kelvarin-arrange say to each other: a line for each box and link
// one way, a line for each position the other way.
//
//   pins FIRST STEP
//   box ID WIDTH HEIGHT PINS_IN PINS_OUT
//   link FROM PIN TO PIN
//
//   position ID X Y
//
// `pins` says how far below the top of a box its first pin is, and the next one below that; links
// come after their boxes. Lengths are logical pixels, positions those of top left corners.
// Threads: values only.
#pragma once

#include <iosfwd>
#include <vector>

namespace kelvarin {

struct LayoutBox {
  int id = 0;
  double width = 0.0;
  double height = 0.0;
  int pinsIn = 0;
  int pinsOut = 0;
};

struct LayoutLink {
  int from = 0;
  int fromPin = 0;
  int to = 0;
  int toPin = 0;
};

struct LayoutPosition {
  int id = 0;
  double x = 0.0;
  double y = 0.0;
};

struct LayoutGraph {
  double firstPin = 22.0;
  double pinStep = 24.0;
  std::vector<LayoutBox> boxes;
  std::vector<LayoutLink> links;
};

void write(std::ostream& out, const LayoutGraph& graph);
// False where the text is something else; links of boxes that do not exist are.
bool read(std::istream& in, LayoutGraph& graph);
void write(std::ostream& out, const std::vector<LayoutPosition>& positions);
bool read(std::istream& in, std::vector<LayoutPosition>& positions);

}  // namespace kelvarin
