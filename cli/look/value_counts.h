// How many different values a column has, and which of them comes most often, in bounded memory.
//
// Up to a bound all values are counted. Beyond it their number is estimated, and of the values only
// those are kept that may be frequent: when there are too many, all lose as often as the half of
// them come that come least, and that half goes (Anderson and others, "A high-performance algorithm
// for identifying frequent items in data streams", 2017). Counts are then too low by no more than
// what was taken. Values are the same where their hashes of 64 bits are.
// Used by: column_statistics.h.
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/look/distinct_estimate.h"
#include "cli/look/quantile_sketch.h"

namespace kelvarin {

class ValueCounts {
 public:
  struct Frequent {
    std::uint64_t number = 0;  // of values that are numbers
    std::string text;          // of texts; the beginning of a long one
    std::uint64_t count = 0;
  };

  // Up to `bound` values are counted exactly.
  explicit ValueCounts(std::size_t bound);

  void addNumber(std::uint64_t hash, std::uint64_t bits) {
    Entry& entry = entryOf(hash);
    if (entry.count == 0) [[unlikely]] {
      entry.value = bits;
      begin(entry, hash);
      return;
    }
    ++entry.count;
  }
  void addText(std::uint64_t hash, std::string_view text, std::uint64_t times = 1);

  // Whether so many more values can be counted exactly.
  bool canCountMore(std::size_t values) const { return isExact() && m_size + values <= m_bound; }
  bool isExact() const { return !m_estimate; }
  std::uint64_t distinctCount() const;
  // Of numbers that were counted exactly: each with how often it comes, in their order.
  std::vector<WeightedNumber> sortedNumbers() const;
  // Of several that come as often, the smallest one. None where no value comes twice. `areTexts`
  // says what was added.
  std::optional<Frequent> mostFrequent(bool areTexts) const;

 private:
  struct Entry {
    std::uint64_t hash;
    std::uint64_t count;  // 0: nothing stands here
    std::uint64_t value;  // the bits of a number, or where a text begins and its length
  };
  static constexpr std::size_t kFewestSlots = 64;
  static constexpr std::size_t kCandidates = 3 * 1024;
  static constexpr std::size_t kTextBytesKept = 200;
  static constexpr std::size_t kMaxTextBytes = 8 << 20;

  Entry& entryOf(std::uint64_t hash) {
    if (m_estimate) {
      m_estimate->add(hash);
    }
    std::size_t slot = hash & m_mask;
    while (m_slots[slot].count != 0 && m_slots[slot].hash != hash) {
      slot = (slot + 1) & m_mask;
    }
    return m_slots[slot];
  }
  // Counts its first value, and grows or drops for the next ones.
  void begin(Entry& entry, std::uint64_t hash);
  void rebuild(std::size_t slotCount, std::uint64_t taken);
  void beginEstimate();
  std::string_view textOf(const Entry& entry) const;
  std::uint64_t keep(std::string_view text);

  const std::size_t m_bound;
  std::vector<Entry> m_slots;
  std::size_t m_mask;
  std::size_t m_size = 0;
  std::string m_texts;
  std::optional<DistinctEstimate> m_estimate;  // beyond the bound
};

}  // namespace kelvarin
