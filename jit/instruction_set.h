// The instructions that machine code may use.
#pragma once

#include <cstdint>

namespace kelvarin::jit {

// Each one includes those before it; `none` leaves everything to the reference evaluator.
enum class InstructionSet : std::uint8_t { none, sse2, sse41, avx2 };

// What this processor has.
InstructionSet bestInstructionSet();

}  // namespace kelvarin::jit
