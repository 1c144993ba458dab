// One value of a row as a test types it and reads it back: a number or key, a text, or null.
#pragma once

#include <ostream>
#include <string>
#include <variant>
#include <vector>

#include "host/contract/meta_info.h"

namespace kelvarin::testing {

class Value {
 public:
  Value(std::nullptr_t) {}
  Value(int number) : m_state(static_cast<double>(number)) {}
  Value(unsigned number) : m_state(static_cast<double>(number)) {}
  Value(double number);  // the number whose bits mean missing becomes null
  Value(const char* text) : m_state(std::string(text)) {}
  Value(std::string text) : m_state(std::move(text)) {}

  bool isNull() const { return m_state.index() == 0; }
  const double* number() const { return std::get_if<double>(&m_state); }
  const std::string* text() const { return std::get_if<std::string>(&m_state); }

  // Numbers agree bit by bit, but for NaNs, which all agree.
  friend bool operator==(const Value& left, const Value& right);
  friend void PrintTo(const Value& value, std::ostream* out);

 private:
  std::variant<std::nullptr_t, double, std::string> m_state;
};

using Values = std::vector<Value>;

// Appends the bytes of a value in a column of a type. Throws std::invalid_argument, which fails the
// test, where the column cannot hold the value.
void appendBytes(std::vector<unsigned char>& bytes, const Value& value, MetaTypeColumn type);
// From a row's pointer slot.
Value valueFromBytes(const unsigned char* bytes, MetaTypeColumn type);

}  // namespace kelvarin::testing
