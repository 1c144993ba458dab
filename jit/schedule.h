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

enum class InstructionKind : std::uint8_t {
  evaluate,
  beginThen,  // of a branching select: after its condition
  beginElse,  // after the first arm
  join        // after the second arm: the select has its value
};

struct Instruction {
  InstructionKind kind;
  NodeId node;
};

class Schedule {
 public:
  Schedule(const Graph& graph, NodeId root);

  NodeId root() const { return m_root; }
  std::span<const Instruction> instructions() const { return m_instructions; }
  bool hasCalls() const { return m_hasCalls; }
  bool hasBranches() const { return m_hasBranches; }

  // The indices in instructions() where a node is used, ascending. Their number is the use of the
  // root.
  std::span<const std::uint32_t> usesOf(NodeId node) const {
    return {m_uses.data() + m_firstUse[node], m_firstUse[node + 1] - m_firstUse[node]};
  }

 private:
  void collectUses(const Graph& graph);

  NodeId m_root;
  bool m_hasCalls = false;
  bool m_hasBranches = false;
  std::vector<Instruction> m_instructions;
  std::vector<std::uint32_t> m_uses;
  std::vector<std::uint32_t> m_firstUse;  // a node more than the graph has
};

}  // namespace kelvarin::jit
