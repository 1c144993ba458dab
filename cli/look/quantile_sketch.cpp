#include "cli/look/quantile_sketch.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace kelvarin {

void QuantileSketch::add(std::span<const double> numbers) {
  if (!m_isExact) {
    sample(numbers);
    return;
  }
  const std::size_t kept = std::min(numbers.size(), kExactNumbers - m_all.size());
  m_all.insert(m_all.end(), numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(kept));
  if (kept == numbers.size()) {
    return;
  }
  m_isExact = false;
  beginBuffer();
  sample(std::exchange(m_all, {}));
  sample(numbers.subspan(kept));
}

void QuantileSketch::sample(std::span<const double> numbers) {
  for (const double number : numbers) {
    if (m_groupIndex == m_groupChoice) {
      m_filling.numbers.push_back(number);
    }
    ++m_count;
    if (++m_groupIndex < m_groupSize) {
      continue;
    }
    m_groupIndex = 0;
    m_groupChoice = m_groupSize == 1 ? 0 : m_random() % m_groupSize;
    if (m_filling.numbers.size() == kBufferSize) {
      endBuffer();
      beginBuffer();
    }
  }
}

// The more numbers there have been, the fewer of those to come are taken.
void QuantileSketch::beginBuffer() {
  const std::uint64_t full = m_count / (kBufferSize << (kLevelsAboveSampler - 1));
  m_filling.level = static_cast<int>(std::bit_width(full));
  m_filling.numbers.reserve(kBufferSize);
  m_groupSize = std::uint64_t{1} << m_filling.level;
  m_groupChoice = m_groupSize == 1 ? 0 : m_random() % m_groupSize;
}

void QuantileSketch::endBuffer() {
  std::sort(m_filling.numbers.begin(), m_filling.numbers.end());
  m_buffers.push_back(std::exchange(m_filling, {}));
  while (m_buffers.size() >= kBuffers) {
    const std::size_t before = m_buffers.size();
    joinBuffers();
    if (m_buffers.size() == before) {
      return;
    }
  }
}

// Two of the lowest level that has two.
void QuantileSketch::joinBuffers() {
  std::stable_sort(m_buffers.begin(), m_buffers.end(),
                   [](const Buffer& a, const Buffer& b) { return a.level < b.level; });
  const auto first =
      std::adjacent_find(m_buffers.begin(), m_buffers.end(),
                         [](const Buffer& a, const Buffer& b) { return a.level == b.level; });
  if (first == m_buffers.end()) {
    return;
  }
  *first = joined(*first, *(first + 1));
  m_buffers.erase(first + 1);
}

QuantileSketch::Buffer QuantileSketch::joined(const Buffer& a, const Buffer& b) {
  std::vector<double> both(a.numbers.size() + b.numbers.size());
  std::merge(a.numbers.begin(), a.numbers.end(), b.numbers.begin(), b.numbers.end(), both.begin());
  Buffer half{a.level + 1, {}};
  half.numbers.reserve(kBufferSize);
  for (std::size_t i = m_random() & 1; i < both.size(); i += 2) {
    half.numbers.push_back(both[i]);
  }
  return half;
}

std::vector<double> QuantileSketch::quantiles(std::span<const double> shares) const {
  std::vector<WeightedNumber> all;
  std::uint64_t total = 0;
  const auto append = [&](const std::vector<double>& numbers, int level) {
    for (const double number : numbers) {
      all.push_back({number, std::uint64_t{1} << level});
      total += all.back().count;
    }
  };
  append(m_all, 0);
  append(m_filling.numbers, m_filling.level);
  for (const Buffer& buffer : m_buffers) {
    append(buffer.numbers, buffer.level);
  }
  std::sort(all.begin(), all.end());
  if (m_isExact) {
    return exactQuantiles(all, shares);
  }
  std::vector<double> quantiles;
  for (const double share : shares) {
    const double rank = share * static_cast<double>(total);
    std::uint64_t passed = all.front().count;
    std::size_t i = 0;
    while (i + 1 < all.size() && static_cast<double>(passed) < rank) {
      passed += all[++i].count;
    }
    quantiles.push_back(all[i].number);
  }
  return quantiles;
}

std::vector<double> exactQuantiles(std::span<const WeightedNumber> numbers,
                                   std::span<const double> shares) {
  std::uint64_t total = 0;
  for (const WeightedNumber& number : numbers) {
    total += number.count;
  }
  const auto numberAt = [numbers](std::uint64_t position) {
    std::size_t i = 0;
    for (; position >= numbers[i].count; ++i) {
      position -= numbers[i].count;
    }
    return numbers[i].number;
  };
  std::vector<double> quantiles;
  for (const double share : shares) {
    const double position = share * static_cast<double>(total - 1);
    const auto below = static_cast<std::uint64_t>(position);
    const double low = numberAt(below);
    const double high = numberAt(std::min(below + 1, total - 1));
    const double part = position - static_cast<double>(below);
    quantiles.push_back(part == 0.0 || low == high ? low : low + part * (high - low));
  }
  return quantiles;
}

}  // namespace kelvarin
