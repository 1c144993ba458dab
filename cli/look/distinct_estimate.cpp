#include "cli/look/distinct_estimate.h"

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace kelvarin {

namespace {

// The sums of x^(2^k) 2^(k-1) and of (1 - x^(2^-k))^2 2^-k, which correct for registers that are
// empty and for those that are full.
double sigma(double x) {
  if (x == 1.0) {
    return std::numeric_limits<double>::infinity();
  }
  double sum = x;
  double factor = 1.0;
  for (double before = -1.0; before != sum;) {
    x *= x;
    before = sum;
    sum += x * factor;
    factor += factor;
  }
  return sum;
}

double tau(double x) {
  if (x == 0.0 || x == 1.0) {
    return 0.0;
  }
  double sum = 1.0 - x;
  double factor = 1.0;
  for (double before = -1.0; before != sum;) {
    x = std::sqrt(x);
    before = sum;
    factor *= 0.5;
    sum -= (1.0 - x) * (1.0 - x) * factor;
  }
  return sum / 3.0;
}

}  // namespace

double DistinctEstimate::count() const {
  std::array<double, kRanks + 2> registersOfRank = {};
  for (const unsigned char rank : m_ranks) {
    registersOfRank[rank] += 1.0;
  }
  const auto registers = static_cast<double>(m_ranks.size());
  double sum = registers * tau(1.0 - registersOfRank[kRanks + 1] / registers);
  for (std::size_t rank = kRanks; rank > 0; --rank) {
    sum = 0.5 * (sum + registersOfRank[rank]);
  }
  sum += registers * sigma(registersOfRank[0] / registers);
  return registers * registers / (2.0 * std::numbers::ln2 * sum);
}

}  // namespace kelvarin
