#include "cli/look/moments.h"

#include <array>
#include <cmath>
#include <numeric>

#include "base/null_number.h"

namespace kelvarin {

namespace {

// Several sums at once do not wait for one another.
template <typename Term>
double sumOf(std::span<const double> numbers, Term term) {
  constexpr std::size_t kLanes = 8;
  std::array<double, kLanes> sums = {};
  std::size_t i = 0;
  for (; i + kLanes <= numbers.size(); i += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      sums[lane] += term(numbers[i + lane]);
    }
  }
  double sum = std::accumulate(sums.begin(), sums.end(), 0.0);
  for (; i < numbers.size(); ++i) {
    sum += term(numbers[i]);
  }
  return sum;
}

}  // namespace

void Moments::addBlock(std::span<const double> numbers) {
  if (numbers.empty()) {
    return;
  }
  const auto added = static_cast<double>(numbers.size());
  const double mean = sumOf(numbers, [](double x) { return x; }) / added;
  const double squares = sumOf(numbers, [mean](double x) { return (x - mean) * (x - mean); });
  const auto before = static_cast<double>(m_count);
  const double all = before + added;
  const double step = mean - m_mean;
  m_mean = m_count == 0 ? mean : m_mean + step * (added / all);
  m_squares += squares + (m_count == 0 ? 0.0 : step * step * (before * added / all));
  m_count += numbers.size();
}

double Moments::deviation() const {
  return m_count < 2 ? kNotANumber : std::sqrt(m_squares / static_cast<double>(m_count - 1));
}

}  // namespace kelvarin
