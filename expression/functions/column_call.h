// One function or operator for many rows at once: columns of arguments, and the column of results.
//
// Filled by the steps of a ColumnProgram (expression/batches); bodies of the function table that
// have a form for columns take it.
#pragma once

#include <cstddef>
#include <span>

#include "expression/functions/column_text.h"
#include "expression/functions/function_context.h"
#include "expression/functions/function_values.h"
#include "expression/functions/text_arena.h"

namespace kelvarin {

// A column of numbers or of texts; the other pointer is null.
struct ColumnArgument {
  const double* numbers = nullptr;
  const ColumnText* texts = nullptr;
  bool isConstant = false;  // every row has the value of the first one

  FunctionArgument at(std::size_t row) const {
    if (texts == nullptr) {
      return FunctionArgument(numbers[row]);
    }
    return texts[row].isNull() ? FunctionArgument::nullText() : FunctionArgument(texts[row].view());
  }
};

struct ColumnCall {
  std::span<const ColumnArgument> arguments;
  std::size_t rows = 0;
  // Of the results, one of both.
  double* numbers = nullptr;
  ColumnText* texts = nullptr;

  FunctionContext& context;
  TextArena& arena;             // for texts that are made
  std::size_t longestText = 0;  // a row with a longer one is not evaluated here
  std::size_t maxBytes = 0;     // behind the row that exceeds them the call ends
};

// Stores the texts that a call makes for its rows, in their order.
class MadeTexts {
 public:
  explicit MadeTexts(const ColumnCall& call)
      : m_call(call), m_bytesBefore(call.arena.usedBytes()) {}

  // False where the call must end. A text that reads as the null text in the String Parser is null.
  bool add(std::string_view text) {
    if (text.size() > m_call.longestText) [[unlikely]] {
      return false;
    }
    m_call.texts[m_rows++] = isNullText(text) ? ColumnText() : ColumnText(text);
    return hasMemory();
  }
  bool addNull() {
    m_call.texts[m_rows++] = ColumnText();
    return true;
  }
  // As it is, from an argument.
  bool add(const ColumnText& text) {
    m_call.texts[m_rows++] = text;
    return true;
  }
  std::size_t rows() const { return m_rows; }

 private:
  static bool isNullText(std::string_view text) {
    return text == std::string_view("\xFF\x00\xFF", 3);
  }
  bool hasMemory() const { return m_call.arena.usedBytes() - m_bytesBefore <= m_call.maxBytes; }

  const ColumnCall& m_call;
  const std::size_t m_bytesBefore;
  std::size_t m_rows = 0;
};

}  // namespace kelvarin
