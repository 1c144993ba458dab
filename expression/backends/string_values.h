// Values of the String back-end: how a null text is carried, and numbers that serve as conditions.
#pragma once

#include <string_view>

#include <mpParser.h>

namespace kelvarin {

// Bytes that no UTF-8 text holds; the library copies them like any text.
inline constexpr std::string_view kNullTextBytes{"\xFF\x00\xFF", 3};

inline bool isNullTextValue(const mup::IValue& value) {
  return value.GetString() == kNullTextBytes;
}

inline bool isNumber(const mup::IValue& value) {
  const char type = value.GetType();
  return type == 'f' || type == 'i';
}

// The result of a test. The library's conditions take booleans only and its arithmetic takes none;
// this number is accepted by both. The library reuses result objects, so any value assigned later
// makes it a plain value again.
class TestValue final : public mup::Value {
 public:
  explicit TestValue(double number) : mup::Value(number) {}

  bool GetBool() const override { return m_isTest ? GetFloat() != 0.0 : mup::Value::GetBool(); }
  bool isTest() const { return m_isTest; }

  mup::IToken* Clone() const override { return new TestValue(*this); }

  mup::IValue& operator=(mup::int_type value) override { return assign(value); }
  mup::IValue& operator=(mup::float_type value) override { return assign(value); }
  mup::IValue& operator=(mup::string_type value) override { return assign(std::move(value)); }
  mup::IValue& operator=(bool value) override { return assign(value); }
  mup::IValue& operator=(const mup::matrix_type& value) override { return assign(value); }
  mup::IValue& operator=(const mup::cmplx_type& value) override { return assign(value); }
  mup::IValue& operator=(const mup::char_type* value) override { return assign(value); }

 private:
  template <typename T>
  mup::IValue& assign(T&& value) {
    m_isTest = false;
    return mup::Value::operator=(std::forward<T>(value));
  }

  bool m_isTest = true;
};

}  // namespace kelvarin
