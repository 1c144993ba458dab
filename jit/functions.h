// What the compiler knows of a function: its address, and its body where the compiler can write
// code for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>

namespace kelvarin::jit {

using Function1 = double (*)(double);
using Function2 = double (*)(double, double);
using Function3 = double (*)(double, double, double);
using Function = std::variant<Function1, Function2, Function3>;

constexpr int argumentCountOf(const Function& function) {
  return static_cast<int>(function.index()) + 1;
}

// Functions whose body the compiler can write itself. The function given with one must do the same;
// the reference evaluator calls it.
enum class Intrinsic : std::uint8_t {
  none,        // called
  isNull,      // 1 for the null pattern, else 0
  isNan,       // 1 for the pattern of the engine's own NaN, else 0
  isFinite,    // -1 for a finite number, else 0
  isTrue,      // 0 for zero and null, else 1
  logicalNot,  // null for null, 1 for zero, else 0
  square,      // x*x
  nvl,         // (a, b): b when a is null, else a
  nvl2,        // (a, b, c): c when a is null, else b
  nanvl,       // (a, b): b when a is a NaN, else a
  nanvl2,      // (a, b, c): c when a is a NaN, else b
  finitevl,    // (a, b): a when a is finite, else b
  finitevl2,   // (a, b, c): b when a is finite, else c
  floor2,      // (x, y): null for a null, else with q = x / y: x - (q - floor(q)) * y
  absolute,    // -x when x < 0, else x
  sign,        // -1 below zero, 1 above, else 0
  rint,        // floor(x + 0.5)
  squareRoot,
  truncate
};

constexpr int argumentCountOf(Intrinsic intrinsic) {
  switch (intrinsic) {
    case Intrinsic::none:
      return 0;
    case Intrinsic::nvl:
    case Intrinsic::nanvl:
    case Intrinsic::finitevl:
    case Intrinsic::floor2:
      return 2;
    case Intrinsic::nvl2:
    case Intrinsic::nanvl2:
    case Intrinsic::finitevl2:
      return 3;
    default:
      return 1;
  }
}

struct NamedFunction {
  Function function = {};
  Intrinsic intrinsic = Intrinsic::none;
};

}  // namespace kelvarin::jit
