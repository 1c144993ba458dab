// Where the values of a graph are while code for it is written: in registers, in slots of the stack
// frame, or in the memory that variables and constants are read from.
//
// Used by body_emitter.cpp for one instruction after another: begin(), fetch operands, release()
// them, take a target, bind() it. When no register is free, the value that is needed last loses its
// own. A value is stored at most once.
#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "jit/graph.h"
#include "jit/schedule.h"
#include "jit/simd_assembler.h"

namespace kelvarin::jit {

// What the code around a body has prepared.
struct Frame {
  bool isColumns = false;
  Xbyak::Reg64 base;  // one row: of the values; columns: of the pointers to them
  Xbyak::Reg64 row;   // columns: the row's number
  int rowOffset = 0;  // columns: added to it
  std::vector<std::pair<std::size_t, Xbyak::Reg64>> columns;  // pointers that are in registers
  std::vector<std::pair<NodeId, int>> constants;  // with the vector registers that hold them
};

// A vector register or an address in memory.
class ValueSource {
 public:
  explicit ValueSource(const Xbyak::Xmm& vectorRegister)
      : m_register(vectorRegister), m_isRegister(true) {}
  explicit ValueSource(const Xbyak::Address& address) : m_address(address) {}

  const Xbyak::Operand& operand() const {
    return m_isRegister ? static_cast<const Xbyak::Operand&>(m_register) : m_address;
  }

 private:
  Xbyak::Xmm m_register;
  Xbyak::Address m_address = Xbyak::Address(0);
  bool m_isRegister = false;
};

class RegisterAllocator {
 public:
  RegisterAllocator(SimdAssembler& assembler, const Graph& graph, const Schedule& schedule,
                    const Frame& frame);

  // The index of the instruction among those of the schedule.
  void begin(std::uint32_t instruction);
  int fetch(NodeId node);
  // `isWide`: the instruction reads four lanes even where only one counts.
  ValueSource fetchSource(NodeId node, bool isWide);
  void fetchInto(int target, NodeId node);
  void fetchArguments(const NodeId* nodes, int count);  // into registers 0, 1 and 2
  // Ends the use by this instruction; a value without another use is forgotten.
  void release(NodeId node);
  // A register for the result, `preferred` when it is free.
  int takeTarget(int preferred);
  void bind(NodeId node, int target);

  // Stores every value that a later instruction needs in memory.
  void saveLiving();
  void forgetRegisters();
  // Stores the node's value where single lanes can be read.
  void moveToMemory(NodeId node);
  Xbyak::Address addressOf(NodeId node, int lane = 0);
  Xbyak::Address reserveSlot(NodeId node, int lane = 0);
  void freeSlot(NodeId node);

  int slotCount() const { return m_slotCount; }

 private:
  struct Location {
    std::int32_t slot = -1;
    std::uint32_t nextUse = 0;  // an index into the schedule's uses of the node
    std::int32_t inRegister = -1;
  };
  static constexpr int kRegisterCount = SimdAssembler::kScratch;

  std::uint32_t nextUseOf(NodeId node) const;
  bool isNeededLater(NodeId node) const;
  bool hasUseAfterThis(NodeId node) const;
  int freeRegister() const;
  int takeRegister();
  void evict(int index);
  void save(NodeId node);
  void loadInto(int target, NodeId node);
  Xbyak::Address variableAddress(std::size_t element, int lane);

  SimdAssembler& m_assembler;
  const Graph& m_graph;
  const Schedule& m_schedule;
  const Frame& m_frame;
  std::vector<Location> m_locations;
  std::array<NodeId, kRegisterCount> m_holders;
  std::uint32_t m_kept = 0;    // registers of the frame's constants; a bit a register
  std::uint32_t m_pinned = 0;  // registers that the current instruction needs, and the kept ones
  std::uint32_t m_now = 0;
  std::vector<std::int32_t> m_freeSlots;
  int m_slotCount = 0;
};

}  // namespace kelvarin::jit
