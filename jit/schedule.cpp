#include "jit/schedule.h"

namespace kelvarin::jit {

namespace {

using RegionId = std::uint32_t;
constexpr RegionId kNoRegion = ~RegionId{0};

// A stretch of code: the whole, or an arm of a select.
struct Region {
  RegionId parent = kNoRegion;
  std::uint32_t depth = 0;
  std::uint32_t cost = 0;
  bool isMerged = false;  // computed with its parent
  std::vector<NodeId> nodes;
};

// About the cycles that a wrongly predicted branch takes.
constexpr std::uint32_t kCostOfBranch = 20;

std::uint32_t costOf(Operation operation) {
  switch (operation) {
    case Operation::constant:
    case Operation::variable:
      return 0;
    case Operation::call:
      return 2 * kCostOfBranch;
    case Operation::divide:
    case Operation::squareRoot:
      return 5;
    default:
      return 1;
  }
}

// Finds for every node the innermost region that holds all of its uses.
class RegionFinder {
 public:
  RegionFinder(const Graph& graph, NodeId root)
      : m_graph(graph), m_home(graph.size(), kNoRegion), m_arms(graph.size(), kNoRegion) {
    m_regions.emplace_back();
    m_home[root] = 0;
    for (NodeId node = root + 1; node-- > 0;) {
      if (m_home[node] != kNoRegion) {
        addOperands(node);
      }
    }
    mergeCheapArms();
    for (NodeId node = 0; node <= root; ++node) {
      if (m_home[node] != kNoRegion && !isRead(graph.node(node))) {
        m_regions[standing(m_home[node])].nodes.push_back(node);
      }
    }
  }

  const Region& region(RegionId id) const { return m_regions[id]; }
  bool isBranch(NodeId node) const {
    return m_arms[node] != kNoRegion && !m_regions[m_arms[node]].isMerged;
  }
  RegionId thenArm(NodeId node) const { return m_arms[node]; }
  RegionId elseArm(NodeId node) const { return m_arms[node] + 1; }

 private:
  void addOperands(NodeId id) {
    const Node& node = m_graph.node(id);
    const RegionId home = m_home[id];
    m_regions[home].cost += costOf(node.operation);
    if (node.operation != Operation::select) {
      for (int i = 0; i < node.operandCount; ++i) {
        addUse(node.operands[static_cast<std::size_t>(i)], home);
      }
      return;
    }
    m_arms[id] = static_cast<RegionId>(m_regions.size());
    for (int i = 0; i < 2; ++i) {
      m_regions.push_back({.parent = home, .depth = m_regions[home].depth + 1, .nodes = {}});
    }
    addUse(node.operands[0], home);
    addUse(node.operands[1], thenArm(id));
    addUse(node.operands[2], elseArm(id));
  }

  void addUse(NodeId node, RegionId region) {
    m_home[node] = m_home[node] == kNoRegion ? region : commonAncestor(m_home[node], region);
  }

  RegionId commonAncestor(RegionId a, RegionId b) const {
    while (a != b) {
      RegionId& deeper = m_regions[a].depth >= m_regions[b].depth ? a : b;
      deeper = m_regions[deeper].parent;
    }
    return a;
  }

  // From the inside out: inner regions are younger.
  void mergeCheapArms() {
    for (auto id = static_cast<RegionId>(m_regions.size()); id > 1; id -= 2) {
      Region& otherwise = m_regions[id - 1];
      Region& then = m_regions[id - 2];
      const std::uint32_t cost = then.cost + otherwise.cost;
      then.isMerged = otherwise.isMerged = cost < kCostOfBranch;
      m_regions[then.parent].cost += cost;
    }
  }

  RegionId standing(RegionId id) const {
    while (m_regions[id].isMerged) {
      id = m_regions[id].parent;
    }
    return id;
  }

  const Graph& m_graph;
  std::vector<Region> m_regions;
  std::vector<RegionId> m_home;
  std::vector<RegionId> m_arms;  // of a select: its first arm; the second one follows
};

void appendRegion(const RegionFinder& finder, RegionId region,
                  std::vector<Instruction>& instructions) {
  for (const NodeId node : finder.region(region).nodes) {
    if (!finder.isBranch(node)) {
      instructions.push_back({InstructionKind::evaluate, node});
      continue;
    }
    instructions.push_back({InstructionKind::beginThen, node});
    appendRegion(finder, finder.thenArm(node), instructions);
    instructions.push_back({InstructionKind::beginElse, node});
    appendRegion(finder, finder.elseArm(node), instructions);
    instructions.push_back({InstructionKind::join, node});
  }
}

// The condition stays alive until the arms are joined, since four lanes are blended by it.
template <typename Visit>
void visitUses(const Graph& graph, const Instruction& instruction, Visit visit) {
  const Node& node = graph.node(instruction.node);
  switch (instruction.kind) {
    case InstructionKind::evaluate:
      for (int i = 0; i < node.operandCount; ++i) {
        visit(node.operands[static_cast<std::size_t>(i)]);
      }
      return;
    case InstructionKind::beginThen:
      visit(node.operands[0]);
      return;
    case InstructionKind::beginElse:
      visit(node.operands[0]);
      visit(node.operands[1]);
      return;
    case InstructionKind::join:
      visit(node.operands[0]);
      visit(node.operands[2]);
      return;
  }
}

}  // namespace

Schedule::Schedule(const Graph& graph, NodeId root) : m_root(root) {
  const RegionFinder finder(graph, root);
  appendRegion(finder, 0, m_instructions);
  collectUses(graph);
}

void Schedule::collectUses(const Graph& graph) {
  m_firstUse.assign(graph.size() + 1, 0);
  for (const Instruction& instruction : m_instructions) {
    m_hasBranches = m_hasBranches || instruction.kind != InstructionKind::evaluate;
    m_hasCalls = m_hasCalls || graph.node(instruction.node).operation == Operation::call;
    visitUses(graph, instruction, [&](NodeId used) { ++m_firstUse[used + 1]; });
  }
  ++m_firstUse[m_root + 1];
  for (std::size_t i = 1; i < m_firstUse.size(); ++i) {
    m_firstUse[i] += m_firstUse[i - 1];
  }
  m_uses.resize(m_firstUse.back());
  std::vector<std::uint32_t> next(m_firstUse.begin(), m_firstUse.end() - 1);
  for (std::uint32_t index = 0; index < m_instructions.size(); ++index) {
    visitUses(graph, m_instructions[index], [&](NodeId used) { m_uses[next[used]++] = index; });
  }
  m_uses[next[m_root]] = static_cast<std::uint32_t>(m_instructions.size());
}

}  // namespace kelvarin::jit
