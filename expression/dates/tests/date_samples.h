// Random formats, instants and texts that are dates or nearly so, for comparisons with QDateTime.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

#include <QString>

namespace kelvarin {

class DateSamples {
 public:
  explicit DateSamples(std::uint64_t seed) : m_random(seed) {}

  std::size_t below(std::size_t end) { return static_cast<std::size_t>(m_random() % end); }

  QString format() {
    static const char* pieces[] = {"yyyy", "yy",  "M",  "MM", "MMM", "MMMM", "d",  "dd", "ddd",
                                   "dddd", "h",   "hh", "H",  "HH",  "m",    "mm", "s",  "ss",
                                   "zzz",  "AP",  "ap", "a",  "A",   "z",    "''", "zz", "yyyyy",
                                   "'x'",  "'h'", " ",  "-",  "/",   ".",    ":",  ",",  "T",
                                   "Z",    "1",   "_",  "é",  "'de'"};
    constexpr std::size_t separators = 29;  // where they begin
    QString format;
    for (std::size_t count = 1 + below(8); count > 0; --count) {
      format += QString::fromUtf8(pieces[below(std::size(pieces))]);
      if (below(2) == 0) {
        format += QString::fromUtf8(pieces[separators + below(std::size(pieces) - separators)]);
      }
    }
    return format;
  }

  // Of the last 200 years, of four-digit years, or of 100,000 years before and after them.
  std::int64_t instant() {
    constexpr std::int64_t year = 31'556'952'000;
    switch (below(8)) {
      case 0:
        return within(-100'000 * year, 200'000 * year);
      case 1:
        return within(-62'135'596'800'000, 9'999 * year);
      case 2:
        return within(0, 100 * year) / 86'400'000 * 86'400'000;
      default:
        return within(-2'208'988'800'000, 200 * year);
    }
  }

  // With up to three faults.
  std::string spoilt(std::string text) {
    static const char* additions[] = {"0", "1",  "9",  " ",   "-",      "+",    ":",  "a", "T",
                                      ".", "PM", "am", "é",   ",",      "\xFF", "00", "Z", "31",
                                      "٣", "24", "60", "Mar", "Monday", "\n",   "UTC"};
    for (std::size_t count = below(4); count > 0; --count) {
      const std::size_t index = text.empty() ? 0 : below(text.size());
      switch (below(4)) {
        case 0:
          text.erase(index, 1 + below(2));
          break;
        case 1:
          text.insert(index, additions[below(std::size(additions))]);
          break;
        case 2:
          text += additions[below(std::size(additions))];
          break;
        default:
          text.replace(index, text.empty() ? 0 : 1, 1, "0123456789 -/:.aAP"[below(18)]);
      }
    }
    return text;
  }

 private:
  std::int64_t within(std::int64_t start, std::int64_t size) {
    return start + static_cast<std::int64_t>(m_random() % static_cast<std::uint64_t>(size));
  }

  std::mt19937_64 m_random;
};

// More of them than in a usual run, where the variable RANDOM_DATES_COUNT asks for it.
inline std::size_t dateSampleCount(std::size_t usual) {
  const char* asked = std::getenv("RANDOM_DATES_COUNT");
  return asked == nullptr ? usual : std::strtoull(asked, nullptr, 10);
}

}  // namespace kelvarin
