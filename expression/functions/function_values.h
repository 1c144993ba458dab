// Arguments and results of functions that take values of any type, without a type of any expression
// library.
//
// Texts are UTF-8; the null text is apart from the empty one.
#pragma once

#include <string>
#include <string_view>

#include <QString>

#include "base/null_number.h"
#include "expression/functions/text_arena.h"

namespace kelvarin {

class FunctionArgument {
 public:
  FunctionArgument() = default;
  explicit FunctionArgument(double number) : m_number(number) {}
  explicit FunctionArgument(std::string_view text)
      : m_kind(Kind::text), m_number(kNullNumber), m_text(text) {}
  static FunctionArgument nullText() {
    FunctionArgument argument{std::string_view()};
    argument.m_kind = Kind::nullText;
    return argument;
  }

  bool isText() const { return m_kind != Kind::number; }
  bool isNull() const {
    return m_kind == Kind::nullText || (m_kind == Kind::number && isNullNumber(m_number));
  }
  double number() const { return m_number; }        // null for a text
  std::string_view text() const { return m_text; }  // empty for a number and for the null text

 private:
  enum class Kind { number, text, nullText };

  Kind m_kind = Kind::number;
  double m_number = kNullNumber;
  std::string_view m_text;
};

// One object serves many calls, so that the text keeps its memory.
class FunctionResult {
 public:
  enum class Kind { number, text, nullText, argument, failure };

  void setNumber(double number) {
    m_kind = Kind::number;
    m_number = number;
  }
  void setText(std::string_view text) {
    m_kind = Kind::text;
    m_text.assign(text);
  }
  void setNullText() { m_kind = Kind::nullText; }
  // The argument at `index` as it is, whatever its type.
  void setArgument(int index) {
    m_kind = Kind::argument;
    m_argument = index;
  }

  // The row fails with this message.
  void setFailure(const QString& message) {
    m_kind = Kind::failure;
    m_message = message;
  }

  // For texts that a body makes, until the next call.
  TextArena& arena() { return m_arena; }

  Kind kind() const { return m_kind; }
  double number() const { return m_number; }
  const std::string& text() const { return m_text; }
  int argument() const { return m_argument; }
  const QString& message() const { return m_message; }

 private:
  Kind m_kind = Kind::number;
  double m_number = kNullNumber;
  int m_argument = 0;
  QString m_message;
  std::string m_text;
  TextArena m_arena;
};

}  // namespace kelvarin
