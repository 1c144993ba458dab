// A graph -> two functions of machine code, one for a row and one for columns.
//
// Used by native_compiler.cpp. The code is written into ordinary memory and can run from any
// address. Where the processor has AVX2 the function for columns takes four rows at a time; both
// functions return the same bits.
#pragma once

#include <memory>
#include <optional>
#include <span>

#include "jit/graph.h"
#include "jit/instruction_set.h"

namespace kelvarin::jit {

struct MachineCode {
  std::unique_ptr<std::uint8_t[]> memory;
  std::size_t offset = 0;  // in memory, where the code starts
  std::size_t size = 0;
  std::size_t rowFunction = 0;      // from the start: double(const double* values)
  std::size_t columnsFunction = 0;  // from the start: void(const double* const* columns,
                                    // std::size_t rowCount, double* results)

  std::span<const std::uint8_t> bytes() const { return {memory.get() + offset, size}; }
};

// Nothing when the code needs too much of the stack, or the processor is of another kind. The
// instruction set is not `none`.
std::optional<MachineCode> generateCode(const Graph& graph, NodeId root,
                                        std::span<const std::size_t> elements,
                                        InstructionSet instructionSet);

}  // namespace kelvarin::jit
