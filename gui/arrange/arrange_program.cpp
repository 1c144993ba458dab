// The program kelvarin-arrange: reads boxes and links, computes a layout and writes positions.
//
// It is a program of its own so that a layout can be ended at any time. Texts: layout_text.h.
#include <iostream>

#include "gui/arrange/layered_layout.h"

int main() {
  kelvarin::LayoutGraph graph;
  if (!kelvarin::read(std::cin, graph)) {
    std::cerr << "kelvarin-arrange: the graph on standard input cannot be read. The program is for "
                 "'kelvarin gui', which starts it.\n";
    return 2;
  }
  std::vector<kelvarin::LayoutPosition> positions;
  if (!kelvarin::layeredLayout(graph, positions)) {
    std::cerr << "kelvarin-arrange: Graphviz found no layout.\n";
    return 1;
  }
  write(std::cout, positions);
  return std::cout.flush() ? 0 : 1;
}
