#include "jit/body_emitter.h"

namespace kelvarin::jit {

void BodyEmitter::emit() {
  std::uint32_t index = 0;
  for (const Instruction& instruction : m_schedule.instructions()) {
    m_registers.begin(index++);
    emitInstruction(instruction);
  }
  m_registers.begin(index);
  m_registers.fetchInto(0, m_schedule.root());
}

void BodyEmitter::emitInstruction(const Instruction& instruction) {
  switch (instruction.kind) {
    case InstructionKind::evaluate:
      return evaluate(instruction.node);
    case InstructionKind::beginThen:
      return beginThen(instruction.node);
    case InstructionKind::beginElse:
      return beginElse(instruction.node);
    case InstructionKind::join:
      return join(instruction.node);
  }
}

void BodyEmitter::evaluate(NodeId id) {
  using Arithmetic = SimdAssembler::Arithmetic;
  using Bitwise = SimdAssembler::Bitwise;
  using Comparison = SimdAssembler::Comparison;
  switch (m_graph.node(id).operation) {
    case Operation::add:
      return compute(Arithmetic::add, id);
    case Operation::subtract:
      return compute(Arithmetic::subtract, id);
    case Operation::multiply:
      return compute(Arithmetic::multiply, id);
    case Operation::divide:
      return compute(Arithmetic::divide, id);
    case Operation::smaller:
      return compute(Arithmetic::smaller, id);
    case Operation::larger:
      return compute(Arithmetic::larger, id);
    case Operation::negate:
      return change(&SimdAssembler::negate, id);
    case Operation::absolute:
      return change(&SimdAssembler::absolute, id);
    case Operation::squareRoot:
      return change(&SimdAssembler::squareRoot, id);
    case Operation::roundDown:
      return change(&SimdAssembler::roundDown, id);
    case Operation::truncate:
      return change(&SimdAssembler::truncate, id);
    case Operation::finite:
      return change(&SimdAssembler::compareFinite, id);
    case Operation::less:
      return compare(Comparison::less, id);
    case Operation::lessOrEqual:
      return compare(Comparison::lessOrEqual, id);
    case Operation::equal:
      return compare(Comparison::equal, id);
    case Operation::notEqual:
      return compare(Comparison::notEqual, id);
    case Operation::unordered:
      return compare(Comparison::unordered, id);
    case Operation::sameBits:
      return compareBits(id);
    case Operation::both:
    case Operation::keepWhere:
      return combine(Bitwise::both, id);
    case Operation::either:
      return combine(Bitwise::either, id);
    case Operation::dropWhere:
      return combine(Bitwise::second, id);
    case Operation::select:
      return select(id);
    case Operation::call:
      return hasFourLanes() ? callEachLane(id) : call(id);
    case Operation::constant:
    case Operation::variable:
      return;  // read where they are needed
  }
}

void BodyEmitter::releaseOperands(NodeId id) {
  const Node& node = m_graph.node(id);
  for (int i = 0; i < node.operandCount; ++i) {
    m_registers.release(node.operands[static_cast<std::size_t>(i)]);
  }
}

// Operands that nothing else needs free their registers first.
int BodyEmitter::takeTarget(NodeId id, int preferred) {
  releaseOperands(id);
  const int target = m_registers.takeTarget(id == m_schedule.root() ? 0 : preferred);
  m_registers.bind(id, target);
  return target;
}

void BodyEmitter::compute(SimdAssembler::Arithmetic operation, NodeId id) {
  const Node& node = m_graph.node(id);
  const int a = m_registers.fetch(node.operands[0]);
  const ValueSource b = m_registers.fetchSource(node.operands[1], false);
  m_assembler.compute(operation, takeTarget(id, a), a, b.operand());
}

void BodyEmitter::combine(SimdAssembler::Bitwise operation, NodeId id) {
  const Node& node = m_graph.node(id);
  const int a = m_registers.fetch(node.operands[0]);
  const ValueSource b = m_registers.fetchSource(node.operands[1], true);
  m_assembler.combine(operation, takeTarget(id, a), a, b.operand());
}

void BodyEmitter::compare(SimdAssembler::Comparison comparison, NodeId id) {
  const Node& node = m_graph.node(id);
  const int a = m_registers.fetch(node.operands[0]);
  const ValueSource b = m_registers.fetchSource(node.operands[1], false);
  m_assembler.compare(comparison, takeTarget(id, a), a, b.operand());
}

void BodyEmitter::compareBits(NodeId id) {
  const Node& node = m_graph.node(id);
  const int a = m_registers.fetch(node.operands[0]);
  const ValueSource b = m_registers.fetchSource(node.operands[1], true);
  m_assembler.compareBits(takeTarget(id, a), a, b.operand());
}

void BodyEmitter::select(NodeId id) {
  const Node& node = m_graph.node(id);
  const int mask = m_registers.fetch(node.operands[0]);
  const int a = m_registers.fetch(node.operands[1]);
  const int b = m_registers.fetch(node.operands[2]);
  m_assembler.select(takeTarget(id, mask), mask, a, b);
}

void BodyEmitter::change(void (SimdAssembler::*operation)(int, int), NodeId id) {
  const int source = m_registers.fetch(m_graph.node(id).operands[0]);
  (m_assembler.*operation)(takeTarget(id, source), source);
}

// A function may change every vector register.
void BodyEmitter::call(NodeId id) {
  const Node& node = m_graph.node(id);
  m_registers.saveLiving();
  m_registers.fetchArguments(node.operands.data(), node.operandCount);
  releaseOperands(id);
  m_registers.forgetRegisters();
  callAddress(node.payload);
  m_registers.bind(id, 0);
}

void BodyEmitter::callEachLane(NodeId id) {
  const Node& node = m_graph.node(id);
  m_registers.saveLiving();
  for (int i = 0; i < node.operandCount; ++i) {
    m_registers.moveToMemory(node.operands[static_cast<std::size_t>(i)]);
  }
  m_registers.forgetRegisters();
  m_assembler.vzeroupper();
  for (int lane = 0; lane < 4; ++lane) {
    for (int i = 0; i < node.operandCount; ++i) {
      const NodeId argument = node.operands[static_cast<std::size_t>(i)];
      m_assembler.vmovsd(Xbyak::Xmm(i), m_registers.addressOf(argument, lane));
    }
    callAddress(node.payload);
    m_assembler.vmovsd(m_registers.reserveSlot(id, lane), Xbyak::Xmm(0));
  }
  releaseOperands(id);
  gatherLanes(id);
}

// Lane by lane as they were stored: one load of all four would wait for the stores to reach the
// cache.
void BodyEmitter::gatherLanes(NodeId id) {
  const Xbyak::Xmm low(0);
  const Xbyak::Xmm high(1);
  m_assembler.vmovsd(low, m_registers.reserveSlot(id, 0));
  m_assembler.vmovhpd(low, low, m_registers.reserveSlot(id, 1));
  m_assembler.vmovsd(high, m_registers.reserveSlot(id, 2));
  m_assembler.vmovhpd(high, high, m_registers.reserveSlot(id, 3));
  m_assembler.vinsertf128(Xbyak::Ymm(0), Xbyak::Ymm(0), high, 1);
  m_registers.freeSlot(id);
  m_registers.bind(id, 0);
}

void BodyEmitter::callAddress(std::uint64_t address) {
  m_assembler.mov(m_assembler.rax, address);
  m_assembler.call(m_assembler.rax);
}

// Between the arms of a branch values live in memory only.
void BodyEmitter::beginThen(NodeId id) {
  const NodeId condition = m_graph.node(id).operands[0];
  m_assembler.moveMask(m_assembler.eax, m_registers.fetch(condition));
  m_registers.saveLiving();
  m_registers.release(condition);
  m_registers.forgetRegisters();
  m_branches.emplace_back();
  m_assembler.test(m_assembler.eax, hasFourLanes() ? 0xF : 1);
  m_assembler.jz(m_branches.back().otherwise, Xbyak::CodeGenerator::T_NEAR);
}

void BodyEmitter::beginElse(NodeId id) {
  const Node& node = m_graph.node(id);
  Branch& branch = m_branches.back();
  m_registers.fetchInto(0, node.operands[1]);
  m_registers.release(node.operands[1]);
  m_registers.forgetRegisters();
  if (!hasFourLanes()) {
    m_assembler.jmp(branch.join, Xbyak::CodeGenerator::T_NEAR);
    m_assembler.L(branch.otherwise);
    m_registers.release(node.operands[0]);
    return;
  }
  m_assembler.store(m_registers.reserveSlot(id), 0);
  m_assembler.L(branch.otherwise);
  m_registers.fetchInto(0, node.operands[0]);
  m_assembler.moveMask(m_assembler.eax, 0);
  m_assembler.cmp(m_assembler.eax, 0xF);
  m_assembler.je(branch.join, Xbyak::CodeGenerator::T_NEAR);
  m_registers.release(node.operands[0]);
}

// Of four lanes that all took the first arm, what register 0 holds is never selected.
void BodyEmitter::join(NodeId id) {
  const Node& node = m_graph.node(id);
  m_registers.fetchInto(0, node.operands[2]);
  m_registers.release(node.operands[2]);
  m_registers.forgetRegisters();
  m_assembler.L(m_branches.back().join);
  m_branches.pop_back();
  if (hasFourLanes()) {
    m_assembler.load(1, m_registers.reserveSlot(id));
    m_registers.fetchInto(2, node.operands[0]);
    m_assembler.select(0, 2, 1, 0);
    m_registers.freeSlot(id);
  }
  m_registers.release(node.operands[0]);
  m_registers.bind(id, 0);
}

}  // namespace kelvarin::jit
