// The parts of an expression as a tree: what is a whole sub-expression, where it begins and ends,
// and what it consists of.
//
// The precedence of the operators is that of the String Parser. Used by the step debugger's tree
// and by whoever shows the value of a part.
// Threads: read-only once it is made.
#pragma once

#include <cstddef>
#include <vector>

#include <QSet>
#include <QString>

namespace kelvarin {

struct ExpressionPart {
  enum class Kind {
    number,
    text,
    name,         // of a variable or a constant
    call,         // its parts are the arguments
    prefix,       // a sign or a cast before its part
    postfix,      // a unit, `!` or `'` behind its part
    binary,       // an operator between two parts
    conditional,  // condition, value if true, value otherwise
    assignment,   // the variable and its value
    element,      // of an array: the array and its indices
    array
  };

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  Kind kind = Kind::name;
  // Without round brackets that only enclose it, and with them.
  qsizetype start = 0;
  qsizetype size = 0;
  qsizetype outerStart = 0;
  qsizetype outerSize = 0;
  QString sign = {};                    // the operator, or the name of the function or variable
  std::vector<std::size_t> parts = {};  // their indices, from left to right
  std::size_t parent = kNone;

  qsizetype end() const { return start + size; }
  qsizetype outerEnd() const { return outerStart + outerSize; }
  // It has a value of its own, which can be computed and shown.
  bool hasValue() const { return kind != Kind::array; }
};

class SubExpressions {
 public:
  SubExpressions() = default;
  // A variable hides a word operator or a cast of its name.
  explicit SubExpressions(const QString& expression, const QSet<QString>& variables = {});

  const QString& expression() const { return m_expression; }
  // False where it is no whole expression; then there are no parts.
  bool isComplete() const { return !m_parts.empty(); }

  // The parts of each stand before it, so the last one is the whole expression. A long sum is a
  // deep tree: walk it without recursion.
  const std::vector<ExpressionPart>& parts() const { return m_parts; }
  const ExpressionPart& operator[](std::size_t index) const { return m_parts[index]; }
  std::size_t size() const { return m_parts.size(); }
  std::size_t root() const { return m_parts.empty() ? ExpressionPart::kNone : m_parts.size() - 1; }

  QString textOf(std::size_t index) const;
  // The smallest part that has a value and covers the characters, blanks at their ends apart;
  // kNone where there is none.
  std::size_t smallestAt(qsizetype start, qsizetype size) const;

 private:
  QString m_expression;
  std::vector<ExpressionPart> m_parts;
};

}  // namespace kelvarin
