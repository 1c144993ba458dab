// How dates and times of day are written in the texts of a column, such as 2024-02-29T07:05:00.
//
// Every component has a fixed width, so a moment is printed by putting components at fixed
// positions. Moments are numbers: the days since the beginning of year 0, the minutes or seconds of
// the day, or both together, and a fraction of a second. Only dates of the Gregorian calendar,
// extended to years before it, and times below 24:00 are moments.
// Used by the templates of texts.
// Layout: docs/gel-format.md, "Shaped texts".
// Threads: any.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/byte_cursor.h"

namespace kelvarin {

// Each stands for its digits: four for a year, one of a fraction, else two.
enum class MomentComponent : unsigned char {
  year = 0,
  month = 1,
  day = 2,
  hour = 3,
  minute = 4,
  second = 5,
  fractionDigit = 6,
};

class MomentPattern {
 public:
  static constexpr std::size_t kMaxSize = 32;  // printed
  static constexpr int kMaxFractionDigits = 7;

  // Components, and all other characters as they are. False where the components make no moment,
  // or where a number of 64 bits cannot hold it.
  [[nodiscard]] bool compile(std::string_view pattern);

  std::size_t size() const { return m_size; }
  std::uint64_t largest() const { return m_largest; }
  // Larger moments are printed as larger texts: years first, then ever smaller components.
  bool isSortable() const;

  // `text` has size() bytes. False when they are no moment in this pattern.
  [[nodiscard]] bool parse(const unsigned char* text, std::uint64_t& moment) const;
  // Writes one or two words of 16 bytes, of which the first size() bytes count.
  void print(std::uint64_t moment, unsigned char* out) const { printAll({&moment, 1}, out, 0); }
  // Prints each so many bytes behind the one before.
  void printAll(std::span<const std::uint64_t> moments, unsigned char* out, std::size_t step) const;

 private:
  static constexpr int kAbsent = -1;
  static constexpr std::size_t kMaxInBatch = 128;
  static constexpr std::size_t kComponents = 7;

  // Which digit stands at each position, of those that are put together for printing.
  using Digits = std::array<unsigned char, kMaxSize>;
  struct PrintedWord;

  [[nodiscard]] bool add(unsigned char component);
  void chooseDigits();
  void printBatch(std::span<const std::uint64_t> moments, unsigned char* out,
                  std::size_t step) const;
  [[nodiscard]] bool isWhole() const;
  int at(MomentComponent component) const { return m_at[static_cast<std::size_t>(component)]; }
  bool has(MomentComponent component) const { return at(component) != kAbsent; }
  bool hasCharacters(const unsigned char* text) const;
  [[nodiscard]] bool parseDate(const unsigned char* text, std::uint64_t& days) const;
  [[nodiscard]] bool parseTime(const unsigned char* text, std::uint64_t& time) const;
  std::array<int, kComponents> m_at{};
  int m_fractionDigits = 0;
  std::size_t m_size = 0;
  std::uint64_t m_largest = 0;
  std::array<unsigned char, kMaxSize> m_characters{};  // 0 where components stand
  std::array<unsigned char, kMaxSize> m_fixed{};       // 0 there as well, else all bits set
  Digits m_digits{};                                   // of date and time of day
  Digits m_fraction{};
};

}  // namespace kelvarin
