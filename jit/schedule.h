// The order in which code computes a graph, and where it branches.
//
// A select whose arms are costly becomes a branch: what only one arm needs is computed in that arm
// alone. All other selects compute both arms and blend.
// Used by body_emitter.cpp.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "jit/graph.h"

namespace kelvarin::jit {

enum class ActionKind : std::uint8_t {
  evaluate,
  beginThen,  // of a branching select: behind its condition
  beginElse,  // behind the first arm
  join        // behind the second arm: the select has its value
};

struct ScheduledAction {
  ActionKind kind;
  NodeId node;
};

class Schedule {
 public:
  Schedule(const Graph& graph, NodeId root);

  NodeId root() const { return m_root; }
  std::span<const ScheduledAction> actions() const { return m_actions; }
  bool hasCalls() const { return m_hasCalls; }
  bool hasBranches() const { return m_hasBranches; }

  // The places in actions() where a node is used, ascending. The end of actions() is the use of the
  // root.
  std::span<const std::uint32_t> usesOf(NodeId node) const {
    return {m_uses.data() + m_firstUse[node], m_firstUse[node + 1] - m_firstUse[node]};
  }

 private:
  void collectUses(const Graph& graph);

  NodeId m_root;
  bool m_hasCalls = false;
  bool m_hasBranches = false;
  std::vector<ScheduledAction> m_actions;
  std::vector<std::uint32_t> m_uses;
  std::vector<std::uint32_t> m_firstUse;  // a node more than the graph has
};

}  // namespace kelvarin::jit
