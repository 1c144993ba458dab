#include "gui/preview/distinct_values.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace kelvarin {

void DistinctValues::add(std::uint64_t hash, long long row) {
  const auto index = static_cast<std::size_t>(hash >> (64 - kIndexBits));
  const int rank = std::countl_zero(hash << kIndexBits | std::uint64_t{1} << (kIndexBits - 1)) + 1;
  m_ranks[index] = std::max(m_ranks[index], static_cast<unsigned char>(rank));
  const auto [seen, isNew] = m_seen.try_emplace(hash, Seen{0, row});
  ++seen->second.count;
  if (m_seen.size() > m_bound) {
    m_isExact = false;
    dropRareOnes();
  }
}

long long DistinctValues::count() const {
  return m_isExact ? static_cast<long long>(m_seen.size()) : std::llround(estimate());
}

std::vector<DistinctValues::Candidate> DistinctValues::mostFrequent(std::size_t limit) const {
  std::vector<Candidate> candidates;
  candidates.reserve(m_seen.size());
  for (const auto& [hash, seen] : m_seen) {
    candidates.push_back({hash, seen.count, seen.firstRow});
  }
  const auto end =
      candidates.begin() + static_cast<std::ptrdiff_t>(std::min(limit, candidates.size()));
  std::partial_sort(candidates.begin(), end, candidates.end(),
                    [](const Candidate& a, const Candidate& b) {
                      return a.count != b.count ? a.count > b.count : a.firstRow < b.firstRow;
                    });
  candidates.erase(end, candidates.end());
  return candidates;
}

// Each value loses as many as half of them have, and that half goes. So whatever comes more often
// than twice in as many rows as there are values stays.
void DistinctValues::dropRareOnes() {
  std::vector<long long> counts;
  counts.reserve(m_seen.size());
  for (const auto& [hash, seen] : m_seen) {
    counts.push_back(seen.count);
  }
  const auto median = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() / 2);
  std::nth_element(counts.begin(), median, counts.end());
  for (auto& [hash, seen] : m_seen) {
    seen.count -= *median;
  }
  std::erase_if(m_seen, [](const auto& entry) { return entry.second.count <= 0; });
}

double DistinctValues::estimate() const {
  const auto size = static_cast<double>(m_ranks.size());
  double sum = 0.0;
  for (const unsigned char rank : m_ranks) {
    sum += std::ldexp(1.0, -rank);
  }
  return 0.7213 / (1.0 + 1.079 / size) * size * size / sum;
}

}  // namespace kelvarin
