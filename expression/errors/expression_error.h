// Why an expression could not be compiled or evaluated, before it becomes a text for the user.
#pragma once

#include <QString>

namespace kelvarin {

struct ExpressionError {
  QString message;    // the library's text, or one of ours
  int position = -1;  // 0-based 16-bit unit of the user's expression; -1 when unknown
  QString token;      // the offending piece; empty when unknown
};

}  // namespace kelvarin
