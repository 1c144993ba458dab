// Prints a date piece by piece into memory of the caller.
//
// Used by DatePrinter.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

#include "expression/dates/two_digits.h"

namespace kelvarin {

class DateText {
 public:
  // The caller knows that all of it fits.
  explicit DateText(char* bytes) : m_begin(bytes), m_end(bytes) {}

  void append(std::string_view text) {
    std::memcpy(m_end, text.data(), text.size());
    m_end += text.size();
  }
  void append(char c) { *m_end++ = c; }
  void appendTwoDigits(int number) {
    putTwoDigits(m_end, number);
    m_end += 2;
  }

  std::size_t size() const { return static_cast<std::size_t>(m_end - m_begin); }

 private:
  char* m_begin;
  char* m_end;
};

}  // namespace kelvarin
