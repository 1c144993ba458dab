#include "gui/preview/column_profile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <random>
#include <string>
#include <unordered_map>

#include "base/mixed_bits.h"
#include "gui/preview/distinct_values.h"
#include "host/contract/column_bytes.h"
#include "host/contract/shown_value.h"

namespace kelvarin {

namespace {

constexpr std::size_t kBins = 24;
// Quantiles of more numbers are those of so many, drawn at random.
constexpr std::size_t kSample = 100'000;
constexpr std::array kShares{0.0, 0.05, 0.25, 0.5, 0.75, 0.95, 1.0};
constexpr long long kRowsBetweenLooks = 1 << 12;

double numberOf(MetaTypeColumn type, const unsigned char* bytes) {
  if (type == MetaTypeColumn::number) {
    return numberFromBytes(bytes);
  }
  const std::uint32_t key = keyFromBytes(bytes);
  return isNullKey(key) ? kNullNumber : key;
}

// The two zeros are one value, and so are all NaNs.
std::uint64_t hashOfNumber(double number) {
  return mixedBits(std::isnan(number) ? kNotANumberBits
                                      : std::bit_cast<std::uint64_t>(number + 0.0));
}

std::uint64_t hashOf(MetaTypeColumn type, const unsigned char* bytes) {
  return fixedSizeOf(type) != 0 ? hashOfNumber(numberOf(type, bytes))
                                : std::hash<std::string_view>()(textFromBytes(bytes));
}

// A random choice of the same number from all that come.
class Sample {
 public:
  void add(double number) {
    ++m_count;
    if (m_numbers.size() < kSample) {
      m_numbers.push_back(number);
    } else if (const auto index = m_random() % m_count; index < kSample) {
      m_numbers[index] = number;
    }
  }
  bool isAll() const { return m_count == m_numbers.size(); }
  std::vector<ColumnProfile::Quantile> quantiles() {
    std::vector<ColumnProfile::Quantile> result;
    if (m_numbers.empty()) {
      return result;
    }
    std::sort(m_numbers.begin(), m_numbers.end());
    for (const double share : kShares) {
      const double position = share * static_cast<double>(m_numbers.size() - 1);
      result.push_back({share, m_numbers[static_cast<std::size_t>(std::lround(position))]});
    }
    return result;
  }

 private:
  std::vector<double> m_numbers;
  std::size_t m_count = 0;
  std::mt19937_64 m_random;  // the same rows have the same profile
};

class Profiling {
 public:
  Profiling(const PreviewRows& rows, int column, long long rowCount, const StopFlag& isStopped)
      : m_rows(rows), m_column(column), m_isStopped(isStopped) {
    m_profile.type = rows.columns()[static_cast<std::size_t>(column)].meta;
    m_profile.rowCount = rowCount;
  }

  std::optional<ColumnProfile> make() {
    const bool isOfTexts = m_profile.isOfTexts();
    const bool isRead = visit([&](long long row, const unsigned char* bytes) {
      if (isOfTexts) {
        addText(row, bytes);
      } else {
        addNumber(row, bytes);
      }
    });
    if (!isRead) {
      return std::nullopt;
    }
    m_profile.distinctCount = m_distinct.count();
    m_profile.isDistinctExact = m_distinct.isExact();
    m_frequent = m_distinct.mostFrequent(kFrequentValues);
    finishRange();
    if (!countAgain() || !nameFrequentOnes()) {
      return std::nullopt;
    }
    return std::move(m_profile);
  }

 private:
  template <typename Function>
  bool visit(Function function) {
    return m_rows.visit(m_column, 0, m_profile.rowCount,
                        [&](long long row, const unsigned char* bytes) {
                          function(row, bytes);
                          return row % kRowsBetweenLooks != 0 || !m_isStopped;
                        });
  }

  void addNumber(long long row, const unsigned char* bytes) {
    const double number = numberOf(m_profile.type, bytes);
    if (isNullNumber(number)) {
      ++m_profile.nullCount;
      return;
    }
    m_distinct.add(hashOfNumber(number), row);
    if (std::isnan(number)) {
      ++m_profile.notANumberCount;
      return;
    }
    m_sample.add(number);
    m_least = std::min(m_least, number);
    m_largest = std::max(m_largest, number);
    if (std::isfinite(number)) {
      m_leastFinite = std::min(m_leastFinite, number);
      m_largestFinite = std::max(m_largestFinite, number);
      ++m_finiteCount;
      const auto count = static_cast<double>(m_finiteCount);
      m_profile.mean += number / count - m_profile.mean / count;
      m_isWhole = m_isWhole && number == std::floor(number);
    }
  }

  void addText(long long row, const unsigned char* bytes) {
    if (isNullText(bytes)) {
      ++m_profile.nullCount;
      return;
    }
    const std::string_view text = textFromBytes(bytes);
    const auto size = static_cast<long long>(text.size());
    m_distinct.add(hashOf(m_profile.type, bytes), row);
    m_profile.emptyCount += size == 0 ? 1 : 0;
    if (!m_profile.hasRange) {
      m_profile.hasRange = true;
      m_firstText = m_lastText = text;
      m_profile.shortestText = m_profile.longestText = size;
      return;
    }
    if (text < m_firstText) {
      m_firstText = text;
    } else if (text > m_lastText) {
      m_lastText = text;
    }
    m_profile.shortestText = std::min(m_profile.shortestText, size);
    m_profile.longestText = std::max(m_profile.longestText, size);
  }

  void finishRange() {
    if (m_profile.isOfTexts()) {
      m_profile.minimum = shownText(QString::fromStdString(m_firstText)).text;
      m_profile.maximum = shownText(QString::fromStdString(m_lastText)).text;
      return;
    }
    m_profile.areQuantilesExact = m_sample.isAll();
    m_profile.quantiles = m_sample.quantiles();
    m_profile.hasRange = m_least <= m_largest;
    if (!m_profile.hasRange) {
      return;
    }
    m_profile.minimum = shownNumber(m_least).text;
    m_profile.maximum = shownNumber(m_largest).text;
    m_profile.quantiles.front().value = m_least;
    m_profile.quantiles.back().value = m_largest;
    layOutBins();
  }

  // Whole numbers that lie close together get a bin each.
  void layOutBins() {
    if (m_finiteCount == 0) {
      return;
    }
    const double range = m_largestFinite - m_leastFinite;
    if (range == 0.0) {
      m_profile.bins.push_back({m_leastFinite, m_largestFinite, 0});
      return;
    }
    const bool isEachItsOwn = m_isWhole && range < static_cast<double>(kBins);
    const std::size_t count = isEachItsOwn ? static_cast<std::size_t>(range) + 1 : kBins;
    const double end = isEachItsOwn ? m_largestFinite + 1.0 : m_largestFinite;
    // Halves, for the range of the largest doubles is no double.
    m_binWidth = (end / 2.0 - m_leastFinite / 2.0) / (static_cast<double>(count) / 2.0);
    for (std::size_t i = 0; i < count; ++i) {
      const double first = m_leastFinite + static_cast<double>(i) * m_binWidth;
      m_profile.bins.push_back({first, i + 1 == count ? end : first + m_binWidth, 0});
    }
  }

  // The second look at the values, where one is needed.
  bool countAgain() {
    const bool areCountsKnown = m_profile.isDistinctExact;
    if (m_profile.bins.empty() && areCountsKnown) {
      return true;
    }
    std::unordered_map<std::uint64_t, DistinctValues::Candidate*> candidates;
    for (DistinctValues::Candidate& candidate : m_frequent) {
      if (!areCountsKnown) {
        candidate.count = 0;
        candidates.emplace(candidate.hash, &candidate);
      }
    }
    const bool isRead = visit([&](long long, const unsigned char* bytes) {
      if (!m_profile.bins.empty()) {
        addToBin(numberOf(m_profile.type, bytes));
      }
      if (!areCountsKnown) {
        const auto found = candidates.find(hashOf(m_profile.type, bytes));
        if (found != candidates.end() && !isMissing(bytes)) {
          ++found->second->count;
        }
      }
    });
    std::stable_sort(m_frequent.begin(), m_frequent.end(),
                     [](const auto& a, const auto& b) { return a.count > b.count; });
    return isRead;
  }

  bool isMissing(const unsigned char* bytes) const {
    return m_profile.isOfTexts() ? isNullText(bytes)
                                 : isNullNumber(numberOf(m_profile.type, bytes));
  }

  void addToBin(double number) {
    if (!std::isfinite(number)) {
      return;
    }
    const double position =
        m_binWidth == 0.0 ? 0.0 : number / m_binWidth - m_leastFinite / m_binWidth;
    const auto last = static_cast<double>(m_profile.bins.size() - 1);
    ++m_profile.bins[static_cast<std::size_t>(std::clamp(position, 0.0, last))].count;
  }

  bool nameFrequentOnes() {
    for (const DistinctValues::Candidate& candidate : m_frequent) {
      const bool isRead = m_rows.visit(
          m_column, candidate.firstRow, candidate.firstRow + 1,
          [&](long long, const unsigned char* bytes) {
            m_profile.frequent.push_back({shownBytes(m_profile.type, bytes).text, candidate.count});
            return true;
          });
      if (!isRead) {
        return false;
      }
    }
    return true;
  }

  const PreviewRows& m_rows;
  const int m_column;
  const StopFlag& m_isStopped;
  ColumnProfile m_profile;
  DistinctValues m_distinct{kCountedValues};
  std::vector<DistinctValues::Candidate> m_frequent;
  Sample m_sample;
  double m_least = kInfinity;
  double m_largest = -kInfinity;
  double m_leastFinite = kInfinity;
  double m_largestFinite = -kInfinity;
  long long m_finiteCount = 0;
  bool m_isWhole = true;
  double m_binWidth = 0.0;
  std::string m_firstText;
  std::string m_lastText;
};

}  // namespace

std::optional<ColumnProfile> profileOf(const PreviewRows& rows, int column, long long rowCount,
                                       const StopFlag& isStopped) {
  return Profiling(rows, column, rowCount, isStopped).make();
}

}  // namespace kelvarin
