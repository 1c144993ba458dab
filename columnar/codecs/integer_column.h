// A column of whole numbers of up to 64 bits inside encoded values: the digits of a field, days,
// lengths, the indices of a dictionary, or what numbers are when they are scaled.
//
// The numbers are stored as one that all have, as distances from the smallest one, as differences
// from the previous one, or as indices of the few that occur. Used by the encodings of texts and
// numbers. Layout: docs/gel-format.md, "Integer columns". Threads: any. Errors: a read returns
// false where the bytes are damaged.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "columnar/codecs/integer_history.h"
#include "columnar/codecs/packed_numbers.h"

namespace kelvarin {

enum class IntegerLayout : std::uint8_t {
  constant = 0,
  frameOfReference = 1,
  delta = 2,
  dictionary = 3,
};

class IntegerColumnEncoder {
 public:
  using Preference = PackedNumbersEncoder::Preference;
  explicit IntegerColumnEncoder(Preference preference = Preference::size) : m_packed(preference) {}

  // Appends the smallest form of the numbers, at least one.
  void append(std::span<const std::uint64_t> numbers, ByteBuffer& out);
  // The same with what the column's earlier blocks have shown, in less time.
  void append(std::span<const std::uint64_t> numbers, IntegerHistory& history, ByteBuffer& out);

 private:
  struct Choice {
    IntegerLayout layout = IntegerLayout::constant;
    PackedNumbersEncoder::Plan plan;
    std::size_t size = 0;  // estimated bytes
  };

  Choice choose(std::span<const std::uint64_t> numbers, std::uint64_t base,
                IntegerHistory& history);
  void considerDelta(std::span<const std::uint64_t> numbers, Choice& choice);
  void considerDictionary(std::span<const std::uint64_t> numbers, Choice& choice);
  bool areDifferencesSmaller(std::span<const std::uint64_t> numbers) const;
  [[nodiscard]] bool findEntries(std::span<const std::uint64_t> numbers);
  void sortEntries();
  void sortIndices();

  PackedNumbersEncoder m_packed;
  std::vector<std::uint64_t> m_distances;  // from the smallest number
  std::uint64_t m_range = 0;               // of the distances
  std::vector<std::uint64_t> m_differences;
  std::uint64_t m_smallestDifference = 0;
  std::vector<std::uint64_t> m_entries;  // in ascending order at last
  std::vector<std::uint16_t> m_order;    // where each of these was before
  std::vector<std::uint64_t> m_indices;  // of each number's entry
};

// Reads the numbers one after the other.
class IntegerColumn {
 public:
  // There are `count` numbers, at least one, none above `largest`; a number above it is damage.
  [[nodiscard]] bool take(ByteReader& reader, std::size_t count, std::uint64_t largest);
  // All numbers are the same one, without being stored for each.
  bool isConstant() const { return m_layout == IntegerLayout::constant; }

  // No number is larger.
  std::uint64_t largest() const { return m_largest; }

  // Makes sure that number() can be asked for another one. False where they are damaged or end.
  [[nodiscard]] bool hasNext() { return m_next < m_loaded || load(); }
  std::uint64_t number() { return m_numbers[m_next++]; }
  // How many more numbers there are without a call of hasNext(), and the next ones of these.
  std::size_t loadedCount() const { return m_loaded - m_next; }
  std::span<const std::uint64_t> loadedNumbers(std::size_t count) {
    m_next += count;
    return {m_numbers + m_next - count, count};
  }
  // Where the numbers are few different ones, they can be read as indices of these instead: all are
  // below valueCount(), which is 0 where they cannot.
  std::uint64_t valueCount() const { return m_valueCount; }
  // The next indices, kRowsInBatch of them until the last ones. None where they are damaged or end.
  std::span<const std::uint64_t> nextIndices();
  std::uint64_t valueOf(std::uint64_t index) const {
    return m_layout == IntegerLayout::dictionary ? m_entries[index] : m_base + index;
  }
  // The next numbers, some of those that are left. None where they are damaged or end.
  std::span<const std::uint64_t> nextNumbers() {
    const std::size_t first = hasNext() ? m_next : m_loaded;
    m_next = m_loaded;
    return {m_numbers + first, m_loaded - first};
  }

 private:
  [[nodiscard]] bool takeEntries(ByteReader& reader);
  [[nodiscard]] bool load();
  std::uint64_t addedToEach() const;
  [[nodiscard]] bool restore(std::span<std::uint64_t> numbers);
  std::span<std::uint64_t> beginBatch();

  IntegerLayout m_layout = IntegerLayout::constant;
  PackedNumbers m_packed;
  std::uint64_t m_base = 0;  // the constant, the smallest number, or the one before the next
  std::uint64_t m_smallestDifference = 0;
  std::uint64_t m_largest = 0;
  bool m_isBounded = false;  // no number can be above the largest one
  std::uint64_t m_valueCount = 0;
  std::vector<std::uint64_t> m_entries;
  std::size_t m_remaining = 0;  // that are not loaded yet
  bool m_isFirst = false;       // of differences, whose first number is the base itself
  std::size_t m_next = 0;
  std::size_t m_loaded = 0;
  std::uint64_t m_numbers[kRowsInBatch];
};

}  // namespace kelvarin
