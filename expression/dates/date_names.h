// The names of months, weekdays and halves of the day in one language, in UTF-8.
//
// Used by the compiled formats of dates, to read and to print.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QStringList>

namespace kelvarin {

class DateNameList {
 public:
  DateNameList() = default;
  explicit DateNameList(const QStringList& names);

  static constexpr int kNone = -1;
  // The one that the text starts with.
  int indexOf(std::string_view text) const;
  // No two can be mistaken for each other at the start of a text.
  bool areDistinct() const;
  std::size_t longest() const;
  std::string_view operator[](int index) const {
    return m_names[static_cast<std::size_t>(index)].text;
  }

 private:
  struct Name {
    std::string text;
    std::uint64_t start = 0;  // its first characters, and which bits of them count
    std::uint64_t bits = 0;
  };

  std::vector<Name> m_names;
};

struct DateNames {
  DateNameList months;
  DateNameList shortMonths;
  DateNameList weekdays;  // from Monday
  DateNameList shortWeekdays;
  DateNameList halfDays;  // AM and PM, in capitals
  DateNameList lowerHalfDays;
};

// In the language of the system's locale, else in English.
std::shared_ptr<const DateNames> dateNames(bool isOfLocale);
// Its numbers are written with the digits 0 to 9.
bool hasLatinDigits(bool isOfLocale);

}  // namespace kelvarin
