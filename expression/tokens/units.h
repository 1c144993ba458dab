// Units behind a value, in braces: `3{k}` is 3000, the product of both.
#pragma once

#include <array>
#include <string_view>

namespace kelvarin {

struct Unit {
  std::string_view text;
  double factor;
};

inline constexpr std::array kUnits = {Unit{"{n}", 1e-9}, Unit{"{u}", 1e-6}, Unit{"{mu}", 1e-6},
                                      Unit{"{m}", 1e-3}, Unit{"{k}", 1e3},  Unit{"{M}", 1e6},
                                      Unit{"{G}", 1e9}};

}  // namespace kelvarin
