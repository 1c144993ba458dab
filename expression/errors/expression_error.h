// Why an expression could not be compiled or evaluated, before it becomes a text for the user.
//
// Made by the back-ends from what their libraries report, and by the evaluator. Whoever wants to
// know what happened asks for the kind; the message is for people.
#pragma once

#include <QString>

namespace kelvarin {

struct ExpressionError {
  enum class Kind : unsigned char {
    other,            // the message says it
    undefinedName,    // the token means nothing to the engine
    unexpectedToken,  // the token means something, but not where it stands
    unexpectedComma,
    unclosedText,
    tooFewArguments,   // the token is the function
    tooManyArguments,  // the token is the function
    wrongType,         // of a value that a function or an operator takes; see `found` and `wanted`
    notOneValue,       // the result is an array, or there are several
    refusedCharacter,  // one that no expression, or none of this engine, may hold
    tooLarge,          // too long, too deep, or too much memory
    textForNumber,     // the result, for a column of numbers
    numberForText,     // the result, for a column of texts
    dateFormatUnknown,
    referenceTimeUnparsable
  };
  enum class ValueType : unsigned char { unknown, number, text, condition, array };

  QString message;     // the library's text, or one of ours
  int position = -1;   // 0-based UTF-16 unit of the user's expression; -1 when unknown
  QString token = {};  // the offending piece; empty when unknown
  Kind kind = Kind::other;
  // For wrongType, as far as they are known.
  ValueType found = ValueType::unknown;
  ValueType wanted = ValueType::unknown;
};

}  // namespace kelvarin
