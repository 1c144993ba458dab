#include "cli/look/value_counts.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace kelvarin {

namespace {

constexpr int kLengthBits = 16;

}  // namespace

ValueCounts::ValueCounts(std::size_t bound)
    : m_bound(bound), m_slots(kFewestSlots), m_mask(kFewestSlots - 1) {}

void ValueCounts::addText(std::uint64_t hash, std::string_view text, std::uint64_t times) {
  Entry& entry = entryOf(hash);
  if (entry.count != 0) {
    entry.count += times;
    return;
  }
  entry.value = keep(text);
  entry.count = times - 1;
  begin(entry, hash);
}

void ValueCounts::begin(Entry& entry, std::uint64_t hash) {
  entry.hash = hash;
  ++entry.count;
  ++m_size;
  if (isExact() && (m_size > m_bound || m_texts.size() > kMaxTextBytes)) {
    beginEstimate();
  }
  while (!isExact() && m_size > kCandidates) {
    std::vector<std::uint64_t> counts;
    counts.reserve(m_size);
    for (const Entry& kept : m_slots) {
      if (kept.count != 0) {
        counts.push_back(kept.count);
      }
    }
    const auto median = counts.begin() + static_cast<std::ptrdiff_t>(counts.size() / 2);
    std::nth_element(counts.begin(), median, counts.end());
    const auto staying = std::ranges::count_if(
        counts, [taken = *median](std::uint64_t count) { return count > taken; });
    rebuild(std::bit_ceil(std::max(kCandidates, static_cast<std::size_t>(staying)) * 2), *median);
  }
  if (m_size * 2 > m_slots.size()) {
    rebuild(m_slots.size() * 2, 0);
  }
}

// Each value loses as many as are taken; those that have no more go.
void ValueCounts::rebuild(std::size_t slotCount, std::uint64_t taken) {
  std::vector<Entry> before(slotCount);
  before.swap(m_slots);
  m_mask = slotCount - 1;
  m_size = 0;
  std::string texts;
  for (Entry entry : before) {
    if (entry.count <= taken) {
      continue;
    }
    if (taken > 0 && !m_texts.empty()) {
      const std::string_view text = textOf(entry);
      entry.value = texts.size() << kLengthBits | text.size();
      texts += text;
    }
    entry.count -= taken;
    std::size_t slot = entry.hash & m_mask;
    while (m_slots[slot].count != 0) {
      slot = (slot + 1) & m_mask;
    }
    m_slots[slot] = entry;
    ++m_size;
  }
  if (taken > 0) {
    m_texts.swap(texts);
  }
}

void ValueCounts::beginEstimate() {
  m_estimate.emplace();
  for (const Entry& entry : m_slots) {
    if (entry.count != 0) {
      m_estimate->add(entry.hash);
    }
  }
}

std::uint64_t ValueCounts::keep(std::string_view text) {
  std::size_t size = std::min(text.size(), kTextBytesKept);
  while (size < text.size() && size > 0 && (text[size] & 0xC0) == 0x80) {
    --size;  // whole characters
  }
  const std::uint64_t begin = m_texts.size();
  m_texts.append(text.substr(0, size));
  return begin << kLengthBits | size;
}

std::string_view ValueCounts::textOf(const Entry& entry) const {
  constexpr std::uint64_t kLengthMask = (1u << kLengthBits) - 1;
  return std::string_view(m_texts).substr(entry.value >> kLengthBits, entry.value & kLengthMask);
}

std::uint64_t ValueCounts::distinctCount() const {
  return isExact() ? m_size : static_cast<std::uint64_t>(std::llround(m_estimate->count()));
}

std::vector<WeightedNumber> ValueCounts::sortedNumbers() const {
  std::vector<WeightedNumber> numbers;
  numbers.reserve(m_size);
  for (const Entry& entry : m_slots) {
    if (entry.count != 0) {
      numbers.push_back({std::bit_cast<double>(entry.value), entry.count});
    }
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

std::optional<ValueCounts::Frequent> ValueCounts::mostFrequent(bool areTexts) const {
  const Entry* best = nullptr;
  for (const Entry& entry : m_slots) {
    if (entry.count <= 1) {
      continue;
    }
    const bool isBetter =
        best == nullptr || entry.count > best->count ||
        (entry.count == best->count &&
         (areTexts ? textOf(entry) < textOf(*best)
                   : std::bit_cast<double>(entry.value) < std::bit_cast<double>(best->value)));
    best = isBetter ? &entry : best;
  }
  if (best == nullptr) {
    return std::nullopt;
  }
  return Frequent{areTexts ? 0 : best->value, areTexts ? std::string(textOf(*best)) : std::string(),
                  best->count};
}

}  // namespace kelvarin
