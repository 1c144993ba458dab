#include "jit/instruction_set.h"

namespace kelvarin::jit {

InstructionSet bestInstructionSet() {
#if defined(__x86_64__) && defined(__linux__)
  if (__builtin_cpu_supports("avx2")) {
    return InstructionSet::avx2;
  }
  return __builtin_cpu_supports("sse4.1") ? InstructionSet::sse41 : InstructionSet::sse2;
#else
  return InstructionSet::none;
#endif
}

}  // namespace kelvarin::jit
