#include "jit/code_generator.h"

#if defined(__x86_64__) && defined(__linux__)

#include <algorithm>
#include <array>

#include "jit/body_emitter.h"

namespace kelvarin::jit {

namespace {

constexpr int kMaximumFrameBytes = 16 * 1024;
constexpr int kPageBytes = 4096;
constexpr std::size_t kAlignment = 64;

constexpr std::size_t bytesNeeded(std::size_t nodeCount) {
  return 4096 + nodeCount * 640;
}

class FunctionGenerator {
 public:
  FunctionGenerator(const Graph& graph, NodeId root, std::span<const std::size_t> elements,
                    void* buffer, std::size_t size, InstructionSet instructionSet)
      : m_graph(graph),
        m_schedule(graph, root),
        m_elements(elements),
        m_assembler(buffer, size, instructionSet) {}

  // Without a frame first: most functions need none.
  bool generate(MachineCode& code) {
    if (!emit(code)) {
      m_assembler.restart();
      if (!emit(code)) {
        return false;
      }
    }
    m_assembler.emitConstants();
    code.size = m_assembler.getSize();
    return true;
  }

 private:
  bool emit(MachineCode& code) {
    code.rowFunction = m_assembler.getSize();
    int rowBytes = 0;
    int columnsBytes = 0;
    emitRowFunction(rowBytes);
    m_assembler.align(kAlignment);
    code.columnsFunction = m_assembler.getSize();
    emitColumnsFunction(columnsBytes);
    const bool isEnough = rowBytes <= m_rowFrameBytes && columnsBytes <= m_columnsFrameBytes;
    m_rowFrameBytes = rowBytes;
    m_columnsFrameBytes = columnsBytes;
    return isEnough && std::max(rowBytes, columnsBytes) <= kMaximumFrameBytes;
  }

  int emitBody(Lanes lanes, const Frame& frame) {
    m_assembler.setLanes(lanes);
    BodyEmitter body(m_assembler, m_graph, m_schedule, frame);
    body.emit();
    const int bytesOfSlot = lanes == Lanes::four ? 32 : 8;
    return body.slotCount() * bytesOfSlot;
  }

  // A called function finds the stack at a multiple of 16; `pushedWords` includes the return
  // address.
  int frameSize(int slotBytes, int pushedWords) const {
    if (!m_schedule.hasCalls()) {
      return slotBytes;
    }
    const int misalignment = pushedWords % 2 == 0 ? 0 : 8;
    return (slotBytes + 15) / 16 * 16 + misalignment;
  }

  // Touches every page of the frame, so that none of it lies beyond the guard page of the stack.
  void enterFrame(int bytes) {
    for (int offset = kPageBytes; offset < bytes; offset += kPageBytes) {
      m_assembler.test(m_assembler.byte[m_assembler.rsp - offset], m_assembler.al);
    }
    if (bytes > 0) {
      m_assembler.sub(m_assembler.rsp, bytes);
    }
  }

  void leaveFrame(int bytes) {
    if (bytes > 0) {
      m_assembler.add(m_assembler.rsp, bytes);
    }
  }

  void emitRowFunction(int& slotBytes) {
    SimdAssembler& a = m_assembler;
    const bool hasCalls = m_schedule.hasCalls();
    const int frameBytes = frameSize(m_rowFrameBytes, 2);
    Frame frame;
    frame.base = hasCalls ? a.rbx : a.rdi;
    if (hasCalls) {
      a.push(a.rbx);
      a.mov(a.rbx, a.rdi);
    }
    enterFrame(frameBytes);
    slotBytes = emitBody(Lanes::one, frame);
    leaveFrame(frameBytes);
    if (hasCalls) {
      a.pop(a.rbx);
    }
    a.ret();
  }

  // r12: columns, r13: number of rows, r14: results, r15: row, rbp: end of the rows taken together.
  void emitColumnsFunction(int& slotBytes) {
    SimdAssembler& a = m_assembler;
    const std::array saved = {a.rbx, a.rbp, a.r12, a.r13, a.r14, a.r15};
    const int frameBytes = frameSize(m_columnsFrameBytes, static_cast<int>(saved.size()) + 1);
    for (const Xbyak::Reg64& reg : saved) {
      a.push(reg);
    }
    enterFrame(frameBytes);
    a.mov(a.r12, a.rdi);
    a.mov(a.r13, a.rsi);
    a.mov(a.r14, a.rdx);
    a.xor_(a.r15d, a.r15d);
    const Frame frame = columnsFrame();
    for (const auto& [element, pointer] : frame.columns) {
      a.mov(pointer, a.ptr[a.r12 + static_cast<int>(element * sizeof(double))]);
    }
    slotBytes = 0;
    if (a.hasFourLanes()) {
      if (isShort()) {
        slotBytes = emitLoopOfFours(2, frame);
      }
      slotBytes = std::max(slotBytes, emitLoopOfFours(1, frame));
      a.vzeroupper();
    }
    slotBytes = std::max(slotBytes, emitLoopOfOne(frame));
    leaveFrame(frameBytes);
    for (auto reg = saved.rbegin(); reg != saved.rend(); ++reg) {
      a.pop(*reg);
    }
    a.ret();
  }

  // Registers that no call and no part of the code changes hold the pointers to the first columns.
  Frame columnsFrame() const {
    const SimdAssembler& a = m_assembler;
    Frame frame;
    frame.isColumns = true;
    frame.base = a.r12;
    frame.row = a.r15;
    const std::array keepers = {a.rbx, a.rdi, a.rsi, a.rdx, a.rcx, a.r8, a.r9, a.r10, a.r11};
    const std::size_t count =
        std::min(m_elements.size(), m_schedule.hasCalls() ? 1 : keepers.size());
    for (std::size_t i = 0; i < count; ++i) {
      frame.columns.emplace_back(m_elements[i], keepers[i]);
    }
    return frame;
  }

  // The loop itself then takes a good part of the time.
  bool isShort() const { return !m_schedule.hasCalls() && m_schedule.instructions().size() <= 16; }

  // The constants that stay in registers; calls and branches would lose them.
  std::vector<std::pair<NodeId, int>> loopConstants() const {
    constexpr std::size_t limit = 6;
    std::vector<std::pair<NodeId, int>> constants;
    if (m_schedule.hasCalls() || m_schedule.hasBranches()) {
      return constants;
    }
    for (NodeId id = 0; id < m_graph.size() && constants.size() < limit; ++id) {
      if (m_graph.isConstant(id) && m_graph.node(id).payload != 0 &&
          !m_schedule.usesOf(id).empty()) {
        constants.emplace_back(id,
                               SimdAssembler::kScratch - 1 - static_cast<int>(constants.size()));
      }
    }
    return constants;
  }

  // Takes `count` times four rows a turn while as many are left.
  int emitLoopOfFours(int count, Frame frame) {
    SimdAssembler& a = m_assembler;
    Xbyak::Label loop;
    Xbyak::Label end;
    int slotBytes = 0;
    a.mov(a.rbp, a.r13);
    a.and_(a.rbp, -4 * count);
    a.cmp(a.r15, a.rbp);
    a.jae(end, Xbyak::CodeGenerator::T_NEAR);
    a.setLanes(Lanes::four);
    frame.constants = loopConstants();
    for (const auto& [node, index] : frame.constants) {
      a.load(index, a.constant(m_graph.node(node).payload));
    }
    a.align(32);
    a.L(loop);
    for (int i = 0; i < count; ++i) {
      frame.rowOffset = 4 * i;
      slotBytes = std::max(slotBytes, emitBody(Lanes::four, frame));
      a.vmovupd(a.ptr[a.r14 + a.r15 * 8 + frame.rowOffset * 8], a.ymm0);
    }
    a.add(a.r15, 4 * count);
    a.cmp(a.r15, a.rbp);
    a.jb(loop, Xbyak::CodeGenerator::T_NEAR);
    a.L(end);
    return slotBytes;
  }

  int emitLoopOfOne(const Frame& frame) {
    SimdAssembler& a = m_assembler;
    Xbyak::Label loop;
    Xbyak::Label end;
    a.cmp(a.r15, a.r13);
    a.jae(end, Xbyak::CodeGenerator::T_NEAR);
    a.L(loop);
    const int slotBytes = emitBody(Lanes::one, frame);
    a.store(a.ptr[a.r14 + a.r15 * 8], 0);
    a.inc(a.r15);
    a.cmp(a.r15, a.r13);
    a.jb(loop, Xbyak::CodeGenerator::T_NEAR);
    a.L(end);
    return slotBytes;
  }

  const Graph& m_graph;
  Schedule m_schedule;
  std::span<const std::size_t> m_elements;
  SimdAssembler m_assembler;
  int m_rowFrameBytes = 0;
  int m_columnsFrameBytes = 0;
};

}  // namespace

std::optional<MachineCode> generateCode(const Graph& graph, NodeId root,
                                        std::span<const std::size_t> elements,
                                        InstructionSet instructionSet) {
  const std::size_t size = bytesNeeded(graph.size());
  MachineCode code;
  code.memory = std::make_unique_for_overwrite<std::uint8_t[]>(size + kAlignment);
  const auto address = reinterpret_cast<std::uintptr_t>(code.memory.get());
  code.offset = (kAlignment - address % kAlignment) % kAlignment;
  try {
    FunctionGenerator generator(graph, root, elements, code.memory.get() + code.offset, size,
                                instructionSet);
    if (!generator.generate(code)) {
      return std::nullopt;
    }
  } catch (const Xbyak::Error&) {
    return std::nullopt;
  }
  return code;
}

}  // namespace kelvarin::jit

#else

namespace kelvarin::jit {

std::optional<MachineCode> generateCode(const Graph&, NodeId, std::span<const std::size_t>,
                                        InstructionSet) {
  return std::nullopt;
}

}  // namespace kelvarin::jit

#endif
