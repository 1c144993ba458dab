// How many different values there are among those that were added, and which ones come most often.
//
// Values count as the same where their hashes of 64 bits are. Up to a bound all are counted; beyond
// it their number is estimated (HyperLogLog, within some 2 %), and only values that may be frequent
// are kept, with counts that are too low.
// Used by: column_profile.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace kelvarin {

class DistinctValues {
 public:
  struct Candidate {
    std::uint64_t hash;
    long long count;
    long long firstRow;  // at which it was seen
  };

  explicit DistinctValues(std::size_t bound) : m_bound(bound) {}

  void add(std::uint64_t hash, long long row);
  bool isExact() const { return m_isExact; }
  long long count() const;
  // The most frequent ones first, of equal ones the one that came first.
  std::vector<Candidate> mostFrequent(std::size_t limit) const;

 private:
  struct Seen {
    long long count;
    long long firstRow;
  };
  static constexpr int kIndexBits = 12;

  void dropRareOnes();
  double estimate() const;

  const std::size_t m_bound;
  bool m_isExact = true;
  std::unordered_map<std::uint64_t, Seen> m_seen;
  std::array<unsigned char, std::size_t{1} << kIndexBits> m_ranks{};
};

}  // namespace kelvarin
