#include "host/testing/value.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "host/contract/column_bytes.h"

namespace kelvarin::testing {

namespace {

template <typename T>
void append(std::vector<unsigned char>& bytes, T value) {
  const std::size_t end = bytes.size();
  bytes.resize(end + sizeof value);
  std::memcpy(bytes.data() + end, &value, sizeof value);
}

void appendText(std::vector<unsigned char>& bytes, const std::string* text) {
  if (text == nullptr) {
    throw std::invalid_argument("a number was given for a text column");
  }
  append(bytes, static_cast<std::uint32_t>(text->size()));
  bytes.insert(bytes.end(), text->begin(), text->end());
}

void appendNumber(std::vector<unsigned char>& bytes, const double* number, bool isKey) {
  if (number == nullptr) {
    throw std::invalid_argument("a text was given for a number or key column");
  }
  if (!isKey) {
    append(bytes, *number);
  } else if (*number < 0 || *number > 4294967295.0 || *number != std::floor(*number)) {
    throw std::invalid_argument("the number given for a key column is no unsigned 32-bit integer");
  } else {
    append(bytes, static_cast<std::uint32_t>(*number));
  }
}

}  // namespace

Value::Value(double number) {
  if (!isNullNumber(number)) {
    m_state = number;
  }
}

bool operator==(const Value& left, const Value& right) {
  if (left.number() == nullptr || right.number() == nullptr) {
    return left.m_state == right.m_state;
  }
  return (std::isnan(*left.number()) && std::isnan(*right.number())) ||
         std::bit_cast<std::uint64_t>(*left.number()) ==
             std::bit_cast<std::uint64_t>(*right.number());
}

void PrintTo(const Value& value, std::ostream* out) {
  if (value.isNull()) {
    *out << "null";
  } else if (value.text() != nullptr) {
    *out << '"' << *value.text() << '"';
  } else {
    out->precision(17);
    *out << *value.number();
  }
}

void appendBytes(std::vector<unsigned char>& bytes, const Value& value, MetaTypeColumn type) {
  const bool isNumber = type == MetaTypeColumn::number;
  const bool isKey = type == MetaTypeColumn::key;
  if (value.isNull() && isNumber) {
    append(bytes, kNullNumber);
  } else if (value.isNull()) {
    append(bytes, isKey ? kNullKey : kNullTextLength);
  } else if (isNumber || isKey) {
    appendNumber(bytes, value.number(), isKey);
  } else {
    appendText(bytes, value.text());
  }
}

Value valueFromBytes(const unsigned char* bytes, MetaTypeColumn type) {
  switch (type) {
    case MetaTypeColumn::number:
      return numberFromBytes(bytes);
    case MetaTypeColumn::key: {
      const std::uint32_t key = keyFromBytes(bytes);
      return isNullKey(key) ? Value(nullptr) : Value(key);
    }
    default:
      return isNullText(bytes) ? Value(nullptr) : Value(std::string(textFromBytes(bytes)));
  }
}

}  // namespace kelvarin::testing
