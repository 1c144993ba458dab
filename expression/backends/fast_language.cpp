#include "expression/backends/fast_language.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

#include "expression/backends/fast_signs.h"
#include "expression/tokens/units.h"
#include "jit/arithmetic.h"

namespace kelvarin {

namespace {

double remainder(double x, double y) {
  return std::fmod(x, y);
}

template <std::size_t unit>
double withUnit(double x) {
  return jit::multiply(x, kUnits[unit].factor);
}

template <std::size_t... units>
void addUnits(mu::Parser& parser, std::index_sequence<units...>) {
  (parser.DefinePostfixOprt(std::string(kUnits[units].text), withUnit<units>), ...);
}

// The libraries' hexadecimal numbers: `0x` and up to 32 bits.
int readHexadecimal(const char* text, int* position, double* value) {
  constexpr int prefix = 2;
  if (text[0] != '0' || text[1] != 'x') {
    return 0;
  }
  std::uint32_t number = 0;
  const char* begin = text + prefix;
  const auto [end, error] = std::from_chars(begin, begin + std::strlen(begin), number, 16);
  if (error != std::errc()) {
    return 0;
  }
  *position += prefix + static_cast<int>(end - begin);
  *value = number;
  return 1;
}

}  // namespace

void addLanguage(mu::Parser& parser) {
  parser.EnableOptimizer(false);  // it reorders products, which changes their last bits
  parser.DefineOprt("%", remainder, mu::prMUL_DIV, mu::oaLEFT);
  parser.DefineInfixOprt("-", jit::negate);
  addUnits(parser, std::make_index_sequence<kUnits.size()>());
  parser.AddValIdent(readHexadecimal);
  addSigns(parser);
}

}  // namespace kelvarin
