#include "columnar/codecs/packed_numbers.h"

#include <bit>
#include <cmath>

#include "columnar/codecs/integer_kernels.h"

namespace kelvarin {

namespace {

constexpr int kWidest = 64;
constexpr std::uint8_t kIsSplit = 0x80;
// The upper bits that have Huffman codes are at most so many: for few numbers, more would take a
// larger table than they save.
constexpr int kMaxUpperBits = 12;
constexpr int kMaxUpperBitsOfFew = 10;
constexpr int kMaxUpperBitsForSpeed = 8;
constexpr std::size_t kFewNumbers = 16384;
// Fewer numbers than this do not pay for the table.
constexpr std::size_t kMinNumbersForSplit = 48;

int bitsOf(std::span<const std::uint64_t> numbers) {
  std::uint64_t all = 0;
  for (const std::uint64_t number : numbers) {
    all |= number;
  }
  return static_cast<int>(std::bit_width(all));
}

void appendRuns(std::span<const std::uint64_t> numbers, int bits, ByteBuffer& out) {
  const CodeRuns cut(bits);
  std::uint32_t batch[kRowsInBatch];
  for (const CodeRuns::Run& run : cut.runs()) {
    const StoredCodes stored(out.append(codesSize(numbers.size(), run.width)), numbers.size(),
                             run.width);
    const std::uint64_t mask = (std::uint64_t{1} << run.width.bits()) - 1;
    for (std::size_t first = 0; first < numbers.size(); first += kRowsInBatch) {
      const auto part = numbers.subspan(first, std::min(kRowsInBatch, numbers.size() - first));
      for (std::size_t i = 0; i < part.size(); ++i) {
        batch[i] = static_cast<std::uint32_t>(part[i] >> run.shift & mask);
      }
      stored.store(first, {batch, part.size()});
    }
  }
}

// c * log2(c), from a table for the counts that most blocks have.
double weightedLogarithm(std::uint32_t count) {
  static const std::vector<float> table = [] {
    std::vector<float> values(4096);
    for (std::size_t i = 1; i < values.size(); ++i) {
      values[i] = static_cast<float>(static_cast<double>(i) * std::log2(static_cast<double>(i)));
    }
    return values;
  }();
  return count < table.size() ? static_cast<double>(table[count])
                              : static_cast<double>(count) * std::log2(static_cast<double>(count));
}

struct HuffmanEstimate {
  std::uint64_t size = 0;  // of codes and their table, in bytes
  // What codes of fewer bits can take at least, with the lower bits that they leave out.
  std::uint64_t minSize = 0;
};

HuffmanEstimate estimatedHuffmanSize(std::span<const std::uint32_t> counts, std::size_t numbers) {
  constexpr double kHead = 16;
  // Few numbers look less even than their distribution is, by about this for each different one,
  // which no code gains.
  constexpr double kBytesOfChance = 0.09;
  constexpr double kBytesOfSymbol = 0.6;
  double sum = 0;
  std::size_t different = 0;
  for (const std::uint32_t count : counts) {
    sum += weightedLogarithm(count);
    different += count > 0;
  }
  const double n = static_cast<double>(numbers);
  const double bits = n * std::log2(n) - sum;
  const double codes = kHead + bits / 8;
  const auto symbols = static_cast<double>(different);
  return {static_cast<std::uint64_t>(codes + kBytesOfSymbol * symbols),
          static_cast<std::uint64_t>(codes + kBytesOfChance * symbols)};
}

}  // namespace

CodeRuns::CodeRuns(int bits) {
  constexpr int kLong = 32;
  constexpr int kShort = 16;
  constexpr int kLast = 24;
  int shift = 0;
  for (int left = bits; left > 0;) {
    const int taken = left >= kLong ? kLong : left > kLast ? kShort : left;
    m_runs[m_count++] = {shift, *codeWidthOf(taken)};
    shift += taken;
    left -= taken;
  }
}

std::size_t CodeRuns::byteCount(std::size_t count) const {
  std::size_t size = 0;
  for (const Run& run : runs()) {
    size += codesSize(count, run.width);
  }
  return size;
}

PackedNumbersEncoder::Plan PackedNumbersEncoder::planOfEven(int bits, std::size_t count) {
  return {bits, bits, 1 + CodeRuns(bits).byteCount(count)};
}

PackedNumbersEncoder::Plan PackedNumbersEncoder::plan(std::span<const std::uint64_t> numbers) {
  Plan plan = planOfEven(bitsOf(numbers), numbers.size());
  considerSplits(numbers, plan);
  return plan;
}

std::size_t PackedNumbersEncoder::limitOfSplit(std::size_t plainSize) const {
  return m_preference == Preference::speed ? plainSize * 5 / 6 : plainSize * 63 / 64;
}

void PackedNumbersEncoder::considerSplits(std::span<const std::uint64_t> numbers, Plan& plan) {
  if (plan.bits < 2 || numbers.size() < kMinNumbersForSplit) {
    return;
  }
  const int maxUpper = m_preference == Preference::speed ? kMaxUpperBitsForSpeed
                       : numbers.size() < kFewNumbers    ? kMaxUpperBitsOfFew
                                                         : kMaxUpperBits;
  const std::size_t limit = limitOfSplit(plan.size);
  int lowBits = std::max(0, plan.bits - maxUpper);
  m_counts.assign(std::size_t{1} << (plan.bits - lowBits), 0);
  for (const std::uint64_t number : numbers) {
    ++m_counts[number >> lowBits];
  }
  for (; plan.bits - lowBits >= 2; ++lowBits) {
    const HuffmanEstimate estimate = estimatedHuffmanSize(m_counts, numbers.size());
    const std::size_t lowSize = CodeRuns(lowBits).byteCount(numbers.size());
    if (estimate.minSize + lowSize >= std::min(limit, plan.size)) {
      return;
    }
    if (estimate.size + lowSize < std::min(limit, plan.size)) {
      plan.lowBits = lowBits;
      plan.size = estimate.size + lowSize;
    }
    // The next width has pairs of these numbers.
    for (std::size_t i = 0; i < m_counts.size() / 2; ++i) {
      m_counts[i] = m_counts[2 * i] + m_counts[2 * i + 1];
    }
    m_counts.resize(m_counts.size() / 2);
  }
}

// False where the codes take more than they save, which the plan had not foreseen.
bool PackedNumbersEncoder::appendSplit(std::span<const std::uint64_t> numbers, const Plan& plan,
                                       ByteBuffer& out) {
  m_upper.resize(numbers.size());
  m_counts.assign(std::size_t{1} << (plan.bits - plan.lowBits), 0);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    m_upper[i] = static_cast<std::uint16_t>(numbers[i] >> plan.lowBits);
    ++m_counts[m_upper[i]];
  }
  m_huffman.fit(m_counts);
  const std::size_t size =
      m_huffman.encodedSize() + CodeRuns(plan.lowBits).byteCount(numbers.size());
  if (size >= limitOfSplit(CodeRuns(plan.bits).byteCount(numbers.size()))) {
    return false;
  }
  out.put(static_cast<std::uint8_t>(kIsSplit | plan.lowBits));
  m_huffman.append(m_upper, out);
  appendRuns(numbers, plan.lowBits, out);
  return true;
}

void PackedNumbersEncoder::append(std::span<const std::uint64_t> numbers, const Plan& plan,
                                  ByteBuffer& out) {
  if (plan.lowBits == plan.bits || !appendSplit(numbers, plan, out)) {
    out.put(static_cast<std::uint8_t>(plan.bits));
    appendRuns(numbers, plan.bits, out);
  }
}

bool PackedNumbers::take(ByteReader& reader, std::size_t count) {
  std::uint8_t head = 0;
  if (!reader.read(head)) {
    return false;
  }
  m_isSplit = (head & kIsSplit) != 0;
  const int bits = head & ~kIsSplit;
  if (bits > kWidest || (m_isSplit && !m_huffman.take(reader, count))) {
    return false;
  }
  if (m_isSplit && static_cast<int>(std::bit_width(m_huffman.alphabetSize())) + bits > kWidest) {
    return false;
  }
  m_lowBits = bits;
  m_runs = CodeRuns(bits);
  m_count = count;
  m_done = 0;
  return reader.readBytes(m_runs.byteCount(count), m_bytes);
}

std::uint64_t PackedNumbers::largest() const {
  const std::uint64_t upper = m_isSplit ? m_huffman.alphabetSize() : 1;
  // The product is 0 where it is 2^64.
  return m_lowBits == kWidest ? UINT64_MAX : (upper << m_lowBits) - 1;
}

bool PackedNumbers::next(std::uint64_t base, std::span<std::uint64_t> numbers) {
  if (m_runs.runs().empty()) {
    std::fill(numbers.begin(), numbers.end(), base);
  }
  const unsigned char* bytes = m_bytes.data();
  std::uint32_t codes[kRowsInBatch];
  for (const CodeRuns::Run& run : m_runs.runs()) {
    LoadedCodes(bytes, m_count, run.width).load(m_done, numbers.size(), codes);
    if (run.shift == 0) {
      kernels::startIntegers({codes, numbers.size()}, base, numbers.data());
    } else {
      kernels::addToIntegers(std::span(codes, numbers.size()), run.shift, numbers.data());
    }
    bytes += codesSize(m_count, run.width);
  }
  m_done += numbers.size();
  return !m_isSplit || addUpper(numbers);
}

bool PackedNumbers::addUpper(std::span<std::uint64_t> numbers) {
  std::uint16_t upper[kRowsInBatch];
  if (!m_huffman.next({upper, numbers.size()})) {
    return false;
  }
  kernels::addToIntegers(std::span<const std::uint16_t>(upper, numbers.size()), m_lowBits,
                         numbers.data());
  return true;
}

}  // namespace kelvarin
