#include "columnar/codecs/integer_column.h"

#include <algorithm>
#include <bit>
#include <numeric>

#include "columnar/codecs/integer_kernels.h"
#include "columnar/codecs/short_number.h"
#include "columnar/codecs/text_hash.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxEntries = kMaxHuffmanSymbols;
// Fewer numbers are not worth the search for another layout.
constexpr std::size_t kMinNumbersForSearch = 16;

std::uint64_t zigzag(std::uint64_t difference) {
  const auto signedDifference = static_cast<std::int64_t>(difference);
  return difference << 1 ^ static_cast<std::uint64_t>(signedDifference >> 63);
}

std::uint64_t unzigzag(std::uint64_t code) {
  return code >> 1 ^ (0 - (code & 1));
}

}  // namespace

void IntegerColumnEncoder::append(std::span<const std::uint64_t> numbers, ByteBuffer& out) {
  IntegerHistory empty;
  append(numbers, empty, out);
}

void IntegerColumnEncoder::append(std::span<const std::uint64_t> numbers, IntegerHistory& history,
                                  ByteBuffer& out) {
  const auto [base, largest] = kernels::boundsOf(numbers);
  m_range = largest - base;
  if (m_range == 0) {
    out.put(static_cast<std::uint8_t>(IntegerLayout::constant));
    return appendShortNumber(base, out);
  }
  m_distances.resize(numbers.size());
  std::transform(numbers.begin(), numbers.end(), m_distances.begin(),
                 [first = base](std::uint64_t number) { return number - first; });
  const Choice choice = choose(numbers, base, history);
  out.put(static_cast<std::uint8_t>(choice.layout));
  if (choice.layout == IntegerLayout::frameOfReference) {
    appendShortNumber(base, out);
    m_packed.append(m_distances, choice.plan, out);
  } else if (choice.layout == IntegerLayout::delta) {
    appendShortNumber(numbers[0], out);
    appendShortNumber(zigzag(m_smallestDifference), out);
    m_packed.append(m_differences, choice.plan, out);
  } else {
    appendShortNumber(m_entries.size() - 1, out);
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
      appendShortNumber(i == 0 ? m_entries[0] : m_entries[i] - m_entries[i - 1], out);
    }
    m_packed.append(m_indices, choice.plan, out);
  }
}

IntegerColumnEncoder::Choice IntegerColumnEncoder::choose(std::span<const std::uint64_t> numbers,
                                                          std::uint64_t base,
                                                          IntegerHistory& history) {
  const int bits = static_cast<int>(std::bit_width(m_range));
  const auto even = PackedNumbersEncoder::planOfEven(bits, numbers.size());
  Choice choice{IntegerLayout::frameOfReference, even, shortNumberSize(base) + even.size};
  if (history.areEven(bits) && !areDifferencesSmaller(numbers)) {
    history.setUsed();
    return choice;
  }
  m_packed.considerSplits(m_distances, choice.plan);
  choice.size = shortNumberSize(base) + choice.plan.size;
  if (numbers.size() >= kMinNumbersForSearch) {
    considerDelta(numbers, choice);
    considerDictionary(numbers, choice);
  }
  history.setCompared(
      choice.layout == IntegerLayout::frameOfReference && choice.plan.lowBits == bits, bits);
  return choice;
}

// Whether the first differences have fewer bits than the numbers in the mean.
bool IntegerColumnEncoder::areDifferencesSmaller(std::span<const std::uint64_t> numbers) const {
  constexpr std::size_t kTrial = 256;
  int saved = 0;
  for (std::size_t i = 1; i < std::min(numbers.size(), kTrial); ++i) {
    saved += static_cast<int>(std::bit_width(m_distances[i])) -
             static_cast<int>(std::bit_width(zigzag(numbers[i] - numbers[i - 1])));
  }
  return saved > 0;
}

void IntegerColumnEncoder::considerDelta(std::span<const std::uint64_t> numbers, Choice& choice) {
  if (!areDifferencesSmaller(numbers)) {
    return;
  }
  auto smallest = static_cast<std::int64_t>(numbers[1] - numbers[0]);
  m_differences.resize(numbers.size() - 1);
  for (std::size_t i = 1; i < numbers.size(); ++i) {
    const std::uint64_t difference = numbers[i] - numbers[i - 1];
    m_differences[i - 1] = difference;
    smallest = std::min(smallest, static_cast<std::int64_t>(difference));
  }
  m_smallestDifference = static_cast<std::uint64_t>(smallest);
  for (std::uint64_t& difference : m_differences) {
    difference -= m_smallestDifference;
  }
  const auto plan = m_packed.plan(m_differences);
  const std::size_t size =
      shortNumberSize(numbers[0]) + shortNumberSize(zigzag(m_smallestDifference)) + plan.size;
  if (size < choice.size) {
    choice = {IntegerLayout::delta, plan, size};
  }
}

void IntegerColumnEncoder::considerDictionary(std::span<const std::uint64_t> numbers,
                                              Choice& choice) {
  if (!findEntries(numbers)) {
    return;
  }
  sortEntries();
  std::size_t size = shortNumberSize(m_entries.size() - 1) + shortNumberSize(m_entries[0]);
  for (std::size_t i = 1; i < m_entries.size(); ++i) {
    size += shortNumberSize(m_entries[i] - m_entries[i - 1]);
  }
  if (size >= choice.size) {
    return;
  }
  sortIndices();
  const auto plan = m_packed.plan(m_indices);
  size += plan.size;
  if (size < choice.size) {
    choice = {IntegerLayout::dictionary, plan, size};
  }
}

// The indices are in the order in which the entries occur. False where too many numbers differ, or
// where they stand so close that indices gain nothing.
bool IntegerColumnEncoder::findEntries(std::span<const std::uint64_t> numbers) {
  constexpr std::size_t kSlots = 2 * kMaxEntries;
  // The search ends early where the first numbers nearly all differ.
  constexpr std::size_t kTrial = 256;
  constexpr std::size_t kMaxInTrial = 250;
  const std::size_t maxEntries =
      std::min({kMaxEntries, numbers.size() / 4,
                static_cast<std::size_t>(std::min<std::uint64_t>(m_range, kMaxEntries * 2) / 2)});
  std::uint16_t slots[kSlots] = {};  // indices of entries, from 1
  m_entries.clear();
  m_indices.resize(numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    std::size_t slot = mixed(m_distances[i] + 1, 0x9E3779B97F4A7C15ull) % kSlots;
    while (slots[slot] != 0 && m_entries[slots[slot] - 1u] != numbers[i]) {
      slot = (slot + 1) % kSlots;
    }
    if (slots[slot] == 0) {
      m_entries.push_back(numbers[i]);
      slots[slot] = static_cast<std::uint16_t>(m_entries.size());
      if (m_entries.size() > maxEntries || (i < kTrial && m_entries.size() > kMaxInTrial)) {
        return false;
      }
    }
    m_indices[i] = slots[slot] - 1u;
  }
  return true;
}

void IntegerColumnEncoder::sortEntries() {
  m_order.resize(m_entries.size());
  std::iota(m_order.begin(), m_order.end(), 0);
  std::sort(m_order.begin(), m_order.end(), [this](std::uint16_t left, std::uint16_t right) {
    return m_entries[left] < m_entries[right];
  });
  std::sort(m_entries.begin(), m_entries.end());
}

// The indices follow the entries into ascending order.
void IntegerColumnEncoder::sortIndices() {
  std::vector<std::uint64_t> sorted(m_order.size());
  for (std::size_t i = 0; i < m_order.size(); ++i) {
    sorted[m_order[i]] = i;
  }
  for (std::uint64_t& index : m_indices) {
    index = sorted[index];
  }
}

bool IntegerColumn::take(ByteReader& reader, std::size_t count, std::uint64_t largest) {
  std::uint8_t layout = 0;
  if (count == 0 || !reader.read(layout)) {
    return false;
  }
  m_layout = static_cast<IntegerLayout>(layout);
  m_largest = largest;
  m_remaining = count;
  m_next = m_loaded = 0;
  m_isBounded = false;
  m_valueCount = 0;
  std::uint64_t step = 0;
  switch (m_layout) {
    case IntegerLayout::constant:
      m_valueCount = 1;
      return readShortNumber(reader, m_base) && m_base <= largest;
    case IntegerLayout::frameOfReference:
      if (!readShortNumber(reader, m_base) || !m_packed.take(reader, count)) {
        return false;
      }
      if (m_base <= largest) {
        m_isBounded = m_packed.largest() <= largest - m_base;
        m_valueCount = std::min(m_packed.largest(), largest - m_base) + 1;
        m_largest = m_base + (m_valueCount - 1);
      }
      return true;
    case IntegerLayout::delta:
      if (count < 2 || !readShortNumber(reader, m_base) || !readShortNumber(reader, step)) {
        return false;
      }
      m_smallestDifference = unzigzag(step);
      m_isFirst = true;
      return m_packed.take(reader, count - 1);
    case IntegerLayout::dictionary:
      if (!takeEntries(reader) || !m_packed.take(reader, count)) {
        return false;
      }
      if (const std::uint64_t entry = *std::max_element(m_entries.begin(), m_entries.end());
          entry <= largest) {
        m_valueCount = m_entries.size();
        m_largest = entry;
      }
      return true;
  }
  return false;
}

bool IntegerColumn::takeEntries(ByteReader& reader) {
  std::uint64_t last = 0;
  if (!readShortNumber(reader, last) || last >= kMaxEntries) {
    return false;
  }
  m_entries.resize(last + 1);
  std::uint64_t entry = 0;
  for (std::uint64_t& each : m_entries) {
    std::uint64_t difference = 0;
    if (!readShortNumber(reader, difference)) {
      return false;
    }
    entry += difference;
    each = entry;
  }
  return true;
}

std::span<std::uint64_t> IntegerColumn::beginBatch() {
  m_loaded = std::min(kRowsInBatch, m_remaining);
  m_remaining -= m_loaded;
  m_next = 0;
  return {m_numbers, m_loaded};
}

std::span<const std::uint64_t> IntegerColumn::nextIndices() {
  const std::span indices = beginBatch();
  m_next = m_loaded;
  if (m_layout == IntegerLayout::constant) {
    std::fill(indices.begin(), indices.end(), 0);
    return indices;
  }
  const bool isSound = !indices.empty() && m_packed.next(0, indices) && m_valueCount > 0 &&
                       kernels::areAtMost(indices, m_valueCount - 1);
  return isSound ? indices : indices.first(0);
}

bool IntegerColumn::load() {
  const std::span numbers = beginBatch();
  const std::size_t count = numbers.size();
  if (count == 0) {
    return false;
  }
  if (m_layout == IntegerLayout::constant) {
    std::fill(numbers.begin(), numbers.end(), m_base);
    return true;
  }
  if (m_isFirst) {
    // One number is loaded alone, so that the differences go on in whole batches.
    m_isFirst = false;
    m_remaining += count - 1;
    m_loaded = 1;
    m_numbers[0] = m_base;
    return m_base <= m_largest;
  }
  if (!m_packed.next(addedToEach(), numbers) || !restore(numbers)) {
    return false;
  }
  return m_isBounded || kernels::areAtMost(numbers, m_largest);
}

std::uint64_t IntegerColumn::addedToEach() const {
  switch (m_layout) {
    case IntegerLayout::frameOfReference:
      return m_base;
    case IntegerLayout::delta:
      return m_smallestDifference;
    default:
      return 0;
  }
}

// Sums up differences, looks up entries.
bool IntegerColumn::restore(std::span<std::uint64_t> numbers) {
  if (m_layout == IntegerLayout::delta) {
    for (std::uint64_t& number : numbers) {
      m_base += number;
      number = m_base;
    }
    return true;
  }
  if (m_layout == IntegerLayout::frameOfReference) {
    return true;
  }
  if (!kernels::areAtMost(numbers, m_entries.size() - 1)) {
    return false;
  }
  for (std::uint64_t& number : numbers) {
    number = m_entries[number];
  }
  return true;
}

}  // namespace kelvarin
