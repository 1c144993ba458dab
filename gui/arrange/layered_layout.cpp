#include "gui/arrange/layered_layout.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <unordered_map>

#include <graphviz/gvc.h>

namespace kelvarin {

namespace {

constexpr double kPointsPerInch = 72.0;
constexpr double kBetweenLayers = 0.58;  // of a box's width: enough for the count on a link
constexpr double kBetweenBoxes = 32.0;
constexpr double kBetweenParts = 56.0;
constexpr double kMinimumWidth = 1'200.0;  // of rows of single boxes

// What is linked with one another, by the positions of the boxes in the graph, in document order.
std::vector<std::vector<int>> partsOf(const LayoutGraph& graph,
                                      const std::unordered_map<int, int>& indexOfId) {
  std::vector<int> leader(graph.boxes.size());
  std::iota(leader.begin(), leader.end(), 0);
  const auto find = [&leader](int box) {
    while (leader[static_cast<std::size_t>(box)] != box) {
      int& above = leader[static_cast<std::size_t>(box)];
      above = leader[static_cast<std::size_t>(above)];
      box = above;
    }
    return box;
  };
  for (const LayoutLink& link : graph.links) {
    const int from = find(indexOfId.at(link.from));
    const int to = find(indexOfId.at(link.to));
    leader[static_cast<std::size_t>(std::max(from, to))] = std::min(from, to);
  }
  std::vector<std::vector<int>> parts;
  std::unordered_map<int, std::size_t> partOfLeader;
  for (int box = 0; box < static_cast<int>(graph.boxes.size()); ++box) {
    const auto [part, isNew] = partOfLeader.try_emplace(find(box), parts.size());
    if (isNew) {
      parts.emplace_back();
    }
    parts[part->second].push_back(box);
  }
  return parts;
}

std::string inches(double pixels) {
  return std::to_string(pixels / kPointsPerInch);
}

std::string cell(const std::string& attributes, double width, double height) {
  return "<td " + attributes + " fixedsize='true' width='" + std::to_string(std::lround(width)) +
         "' height='" + std::to_string(std::lround(height)) + "'></td>";
}

// A table with a row for each pin, so that links begin and end where the canvas has the pins.
std::string tableOf(const LayoutGraph& graph, const LayoutBox& box) {
  const int pins = std::max({box.pinsIn, box.pinsOut, 1});
  const double above = std::max(graph.firstPin - graph.pinStep / 2, 0.0);
  const double below = std::max(box.height - above - pins * graph.pinStep, 0.0);
  std::string table = "<table border='0' cellborder='0' cellspacing='0' cellpadding='0'><tr>" +
                      cell("colspan='2'", box.width, above) + "</tr>";
  for (int pin = 0; pin < pins; ++pin) {
    const std::string number = std::to_string(pin);
    table += "<tr>" + cell("port='i" + number + "'", box.width / 2, graph.pinStep) +
             cell("port='o" + number + "'", box.width / 2, graph.pinStep) + "</tr>";
  }
  return table + "<tr>" + cell("colspan='2'", box.width, below) + "</tr></table>";
}

// One Graphviz graph of boxes that are linked with one another.
class PartLayout {
 public:
  PartLayout(GVC_t* context, const LayoutGraph& graph) : m_context(context), m_graph(graph) {
    double width = 0.0;
    for (const LayoutBox& box : graph.boxes) {
      width = std::max(width, box.width);
    }
    // Only positions are wanted, and routing takes most of the time.
    m_text = "digraph part { rankdir=LR; splines=false; ranksep=" + inches(kBetweenLayers * width) +
             "; nodesep=" + inches(kBetweenBoxes) + "; node [shape=plain];\n";
  }
  ~PartLayout() {
    if (m_drawn != nullptr) {
      gvFreeLayout(m_context, m_drawn);
      agclose(m_drawn);
    }
  }
  PartLayout(const PartLayout&) = delete;
  PartLayout& operator=(const PartLayout&) = delete;

  void addBox(const LayoutBox& box) {
    m_text += std::to_string(box.id) + " [label=<" + tableOf(m_graph, box) + ">];\n";
  }
  void addLink(const LayoutLink& link) {
    m_text += std::to_string(link.from) + ":o" + std::to_string(link.fromPin) + ":e -> " +
              std::to_string(link.to) + ":i" + std::to_string(link.toPin) + ":w;\n";
  }
  bool compute() {
    m_text += "}";
    m_drawn = agmemread(m_text.c_str());
    return m_drawn != nullptr && gvLayout(m_context, m_drawn, "dot") == 0;
  }
  // The top left corner; Graphviz counts upwards and from the centre.
  LayoutPosition positionOf(const LayoutBox& box) const {
    std::string name = std::to_string(box.id);
    const pointf centre = ND_coord(agnode(m_drawn, name.data(), 0));
    return {box.id, centre.x - box.width / 2, -centre.y - box.height / 2};
  }

 private:
  GVC_t* m_context;
  const LayoutGraph& m_graph;
  std::string m_text;
  Agraph_t* m_drawn = nullptr;
};

// Puts the layouts of the parts below one another.
class WholeLayout {
 public:
  explicit WholeLayout(const LayoutGraph& graph) : m_graph(graph), m_context(gvContext()) {
    for (std::size_t i = 0; i < graph.boxes.size(); ++i) {
      m_indexOfId.emplace(graph.boxes[i].id, static_cast<int>(i));
    }
  }
  ~WholeLayout() { gvFreeContext(m_context); }
  WholeLayout(const WholeLayout&) = delete;
  WholeLayout& operator=(const WholeLayout&) = delete;

  bool compute();
  std::vector<LayoutPosition> takePositions() { return std::move(m_positions); }

 private:
  using Links = std::vector<const LayoutLink*>;

  std::vector<Links> linksOf(const std::vector<std::vector<int>>& parts) const;
  bool addPart(const std::vector<int>& part, const Links& links);
  void addSingles(const std::vector<int>& singles);
  const LayoutBox& box(int index) const { return m_graph.boxes[static_cast<std::size_t>(index)]; }

  const LayoutGraph& m_graph;
  GVC_t* m_context;
  std::unordered_map<int, int> m_indexOfId;
  std::vector<LayoutPosition> m_positions;
  double m_width = kMinimumWidth;
  double m_top = 0.0;  // of the next part
};

bool WholeLayout::compute() {
  const std::vector<std::vector<int>> parts = partsOf(m_graph, m_indexOfId);
  const std::vector<Links> links = linksOf(parts);
  std::vector<int> singles;
  for (std::size_t part = 0; part < parts.size(); ++part) {
    if (parts[part].size() == 1) {
      singles.push_back(parts[part][0]);
    } else if (!addPart(parts[part], links[part])) {
      return false;
    }
  }
  addSingles(singles);
  return true;
}

std::vector<WholeLayout::Links> WholeLayout::linksOf(
    const std::vector<std::vector<int>>& parts) const {
  std::vector<std::size_t> partOfBox(m_graph.boxes.size());
  for (std::size_t part = 0; part < parts.size(); ++part) {
    for (const int index : parts[part]) {
      partOfBox[static_cast<std::size_t>(index)] = part;
    }
  }
  std::vector<Links> links(parts.size());
  for (const LayoutLink& link : m_graph.links) {
    links[partOfBox[static_cast<std::size_t>(m_indexOfId.at(link.from))]].push_back(&link);
  }
  return links;
}

bool WholeLayout::addPart(const std::vector<int>& part, const Links& links) {
  PartLayout layout(m_context, m_graph);
  for (const int index : part) {
    layout.addBox(box(index));
  }
  for (const LayoutLink* link : links) {
    layout.addLink(*link);
  }
  if (!layout.compute()) {
    return false;
  }
  const LayoutPosition first = layout.positionOf(box(part[0]));
  double left = first.x;
  double top = first.y;
  double right = first.x;
  double bottom = first.y;
  for (const int index : part) {
    const LayoutPosition at = layout.positionOf(box(index));
    left = std::min(left, at.x);
    top = std::min(top, at.y);
    right = std::max(right, at.x + box(index).width);
    bottom = std::max(bottom, at.y + box(index).height);
  }
  for (const int index : part) {
    const LayoutPosition at = layout.positionOf(box(index));
    m_positions.push_back({at.id, at.x - left, at.y - top + m_top});
  }
  m_top += bottom - top + kBetweenParts;
  m_width = std::max(m_width, right - left);
  return true;
}

// Rows about as wide as what is above them.
void WholeLayout::addSingles(const std::vector<int>& singles) {
  double x = 0.0;
  double rowHeight = 0.0;
  for (const int index : singles) {
    if (x > 0.0 && x + box(index).width > m_width) {
      x = 0.0;
      m_top += rowHeight + kBetweenBoxes;
      rowHeight = 0.0;
    }
    m_positions.push_back({box(index).id, x, m_top});
    x += box(index).width + kBetweenBoxes;
    rowHeight = std::max(rowHeight, box(index).height);
  }
}

}  // namespace

bool layeredLayout(const LayoutGraph& graph, std::vector<LayoutPosition>& positions) {
  WholeLayout layout(graph);
  if (!layout.compute()) {
    return false;
  }
  positions = layout.takePositions();
  return true;
}

}  // namespace kelvarin
