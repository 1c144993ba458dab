#include "gui/arrange/layout_text.h"

#include <istream>
#include <ostream>
#include <string>
#include <unordered_set>

namespace kelvarin {

void write(std::ostream& out, const LayoutGraph& graph) {
  out << "pins " << graph.firstPin << ' ' << graph.pinStep << '\n';
  for (const LayoutBox& box : graph.boxes) {
    out << "box " << box.id << ' ' << box.width << ' ' << box.height << ' ' << box.pinsIn << ' '
        << box.pinsOut << '\n';
  }
  for (const LayoutLink& link : graph.links) {
    out << "link " << link.from << ' ' << link.fromPin << ' ' << link.to << ' ' << link.toPin
        << '\n';
  }
}

bool read(std::istream& in, LayoutGraph& graph) {
  std::unordered_set<int> ids;
  std::string kind;
  while (in >> kind) {
    if (kind == "pins") {
      if (!(in >> graph.firstPin >> graph.pinStep)) {
        return false;
      }
    } else if (kind == "box") {
      LayoutBox box;
      if (!(in >> box.id >> box.width >> box.height >> box.pinsIn >> box.pinsOut) ||
          !ids.insert(box.id).second) {
        return false;
      }
      graph.boxes.push_back(box);
    } else if (kind == "link") {
      LayoutLink link;
      if (!(in >> link.from >> link.fromPin >> link.to >> link.toPin) || !ids.contains(link.from) ||
          !ids.contains(link.to)) {
        return false;
      }
      graph.links.push_back(link);
    } else {
      return false;
    }
  }
  return true;
}

void write(std::ostream& out, const std::vector<LayoutPosition>& positions) {
  for (const LayoutPosition& position : positions) {
    out << "position " << position.id << ' ' << position.x << ' ' << position.y << '\n';
  }
}

bool read(std::istream& in, std::vector<LayoutPosition>& positions) {
  std::string kind;
  while (in >> kind) {
    LayoutPosition position;
    if (kind != "position" || !(in >> position.id >> position.x >> position.y)) {
      return false;
    }
    positions.push_back(position);
  }
  return true;
}

}  // namespace kelvarin
