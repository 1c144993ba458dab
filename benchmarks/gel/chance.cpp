#include "benchmarks/gel/chance.h"

#include <algorithm>
#include <numeric>

namespace kelvarin {

WeightedChoice::WeightedChoice(std::vector<double> weights) : m_ends(std::move(weights)) {
  const double sum = std::accumulate(m_ends.begin(), m_ends.end(), 0.0);
  double end = 0.0;
  for (double& weight : m_ends) {
    end += weight / sum;
    weight = end;
  }
}

WeightedChoice WeightedChoice::zipf(std::size_t count, double exponent) {
  std::vector<double> weights;
  for (std::size_t rank = 1; rank <= count; ++rank) {
    weights.push_back(std::pow(static_cast<double>(rank), -exponent));
  }
  return WeightedChoice(std::move(weights));
}

std::size_t WeightedChoice::drawn(double fraction) const {
  const auto found = std::upper_bound(m_ends.begin(), m_ends.end(), fraction);
  return std::min(static_cast<std::size_t>(found - m_ends.begin()), m_ends.size() - 1);
}

}  // namespace kelvarin
