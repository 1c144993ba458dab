// The text of a printed date, without memory of its own for the usual ones.
//
// Made by DatePrinter, taken by the functions of dates.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include <QString>

#include "expression/dates/two_digits.h"

namespace kelvarin {

class DateText {
 public:
  static constexpr std::size_t kCapacity = 120;

  // The null text.
  DateText() = default;
  // Of any length, as QDateTime made it.
  explicit DateText(QString general) : m_isGeneral(true), m_general(std::move(general)) {}

  bool isNull() const { return m_size == 0 && m_general.isNull(); }
  bool isGeneral() const { return m_isGeneral; }
  const QString& general() const { return m_general; }
  std::string_view bytes() const { return {m_bytes.data(), m_size}; }  // where not general
  QString toString() const {
    return m_isGeneral ? m_general
                       : QString::fromUtf8(m_bytes.data(), static_cast<qsizetype>(m_size));
  }

  // The caller knows that all of it fits.
  void append(std::string_view text) {
    std::memcpy(m_bytes.data() + m_size, text.data(), text.size());
    m_size += text.size();
  }
  void append(char c) { m_bytes[m_size++] = c; }
  void appendTwoDigits(int number) { putTwoDigits(next(2), number); }
  // Where the caller writes `size` characters.
  char* next(std::size_t size) { return m_bytes.data() + std::exchange(m_size, m_size + size); }

 private:
  std::array<char, kCapacity> m_bytes;
  std::size_t m_size = 0;
  bool m_isGeneral = false;
  QString m_general;
};

}  // namespace kelvarin
