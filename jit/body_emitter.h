// Writes the code that computes a graph for one row, or for four rows at a time.
//
// Used by code_generator.cpp, which writes the code around it.
#pragma once

#include <vector>

#include "jit/register_allocator.h"

namespace kelvarin::jit {

class BodyEmitter {
 public:
  BodyEmitter(SimdAssembler& assembler, const Graph& graph, const Schedule& schedule,
              const Frame& frame)
      : m_assembler(assembler),
        m_graph(graph),
        m_schedule(schedule),
        m_registers(assembler, graph, schedule, frame) {}

  // Leaves the result in register 0.
  void emit();
  // Of the stack frame that the code needs, in values of its number of lanes.
  int slotCount() const { return m_registers.slotCount(); }

 private:
  struct Branch {
    Xbyak::Label otherwise;
    Xbyak::Label join;
  };

  void emitInstruction(const Instruction& instruction);
  void evaluate(NodeId id);
  void compute(SimdAssembler::Arithmetic operation, NodeId id);
  void combine(SimdAssembler::Bitwise operation, NodeId id);
  void compare(SimdAssembler::Comparison comparison, NodeId id);
  void compareBits(NodeId id);
  void select(NodeId id);
  void change(void (SimdAssembler::*operation)(int, int), NodeId id);
  int takeTarget(NodeId id, int preferred);
  void releaseOperands(NodeId id);

  void call(NodeId id);
  void callEachLane(NodeId id);
  void gatherLanes(NodeId id);
  void callAddress(std::uint64_t address);

  void beginThen(NodeId id);
  void beginElse(NodeId id);
  void join(NodeId id);
  bool hasFourLanes() const { return m_assembler.lanes() == Lanes::four; }

  SimdAssembler& m_assembler;
  const Graph& m_graph;
  const Schedule& m_schedule;
  RegisterAllocator m_registers;
  std::vector<Branch> m_branches;  // the open ones
};

}  // namespace kelvarin::jit
