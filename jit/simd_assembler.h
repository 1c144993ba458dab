// Instructions on doubles, one or four at a time, in one form for all instruction sets.
//
// Used by body_emitter.cpp and code_generator.cpp. Where the processor has AVX2 an instruction has
// a target and two sources; elsewhere the target is copied from the first source. The first source
// decides which NaN an operation returns, as in arithmetic.h.
// Register 15 is scratch.
// Errors: throws Xbyak::Error when the buffer is full.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include <xbyak/xbyak.h>

#include "jit/instruction_set.h"

namespace kelvarin::jit {

enum class Lanes : std::uint8_t { one, four };

class SimdAssembler : public Xbyak::CodeGenerator {
 public:
  using Operand = Xbyak::Operand;
  using Address = Xbyak::Address;

  enum class Arithmetic : std::uint8_t { add, subtract, multiply, divide, smaller, larger };
  enum class Bitwise : std::uint8_t { both, either, exclusive, second };  // second: ~a & b
  enum class Comparison : std::uint8_t {
    equal = 0,
    less = 1,
    lessOrEqual = 2,
    unordered = 3,
    notEqual = 4,
    ordered = 7
  };

  static constexpr int kScratch = 15;

  SimdAssembler(void* buffer, std::size_t size, InstructionSet instructionSet);

  bool hasFourLanes() const { return m_isAvx; }
  void setLanes(Lanes lanes) { m_lanes = lanes; }
  Lanes lanes() const { return m_lanes; }

  Xbyak::Xmm vectorRegister(int index) const;
  // A constant in all lanes, aligned for every instruction; written by emitConstants().
  Address constant(std::uint64_t bits);
  void emitConstants();
  // Starts anew, in an empty buffer.
  void restart();

  void copy(int target, int source);
  void load(int target, const Address& source);
  void store(const Address& target, int source);
  void loadZero(int target);

  void compute(Arithmetic operation, int target, int a, const Operand& b);
  void combine(Bitwise operation, int target, int a, const Operand& b);
  void compare(Comparison comparison, int target, int a, const Operand& b);
  void compareBits(int target, int a, const Operand& b);
  void select(int target, int mask, int a, int b);
  void squareRoot(int target, int source);
  // Without SSE4.1 there is no instruction for these; see canRound().
  void roundDown(int target, int source) { round(target, source, 1); }
  void truncate(int target, int source) { round(target, source, 3); }
  bool canRound() const { return m_instructionSet >= InstructionSet::sse41; }
  void negate(int target, int source);
  void absolute(int target, int source);
  void compareFinite(int target, int source);
  // A bit a lane.
  void moveMask(const Xbyak::Reg32& target, int source);

 private:
  // Copies `a` to the target and returns where b is then.
  const Operand& prepare(int target, int a, const Operand& b);
  void round(int target, int source, int mode);
  bool isScalar() const { return m_lanes == Lanes::one; }

  InstructionSet m_instructionSet;
  bool m_isAvx;
  Lanes m_lanes = Lanes::one;
  Xbyak::Label m_constantsLabel;
  std::vector<std::uint64_t> m_constants;
  std::unordered_map<std::uint64_t, int> m_constantIndices;
  Xbyak::Xmm m_scratch;
};

}  // namespace kelvarin::jit
