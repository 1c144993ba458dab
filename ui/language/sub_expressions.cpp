#include "ui/language/sub_expressions.h"

#include <algorithm>
#include <utility>

#include "expression/tokens/expression_tokens.h"
#include "ui/language/operator_table.h"

namespace kelvarin {

namespace {

using Kind = ExpressionPart::Kind;

// Finds the parts in one pass with two stacks: finished parts, and operators and brackets that wait
// for what follows them.
class PartBuilder {
 public:
  PartBuilder(const QString& expression, const QSet<QString>& variables)
      : m_tokens(expression), m_variables(variables) {}

  // Empty where it is no whole expression.
  std::vector<ExpressionPart> build() {
    for (m_index = 0; m_index < m_tokens.size(); ++m_index) {
      const Token& token = m_tokens[m_index];
      if (token.kind == TokenKind::comment) {
        break;
      }
      if (token.kind == TokenKind::blank) {
        continue;
      }
      if (!(m_wantsOperand ? takeOperand(token) : takeOperator(token))) {
        return {};
      }
    }
    if (m_wantsOperand) {
      return {};
    }
    closeValues();
    const bool isWhole = m_waiting.empty() && m_finished.size() == 1;
    return isWhole ? std::move(m_parts) : std::vector<ExpressionPart>();
  }

 private:
  // What waits for a part behind it.
  struct Waiting {
    enum class Role { prefix, binary, question, colon, group, call, index, array };
    Role role = Role::binary;
    int precedence = 0;
    bool isAssignment = false;
    std::size_t token = 0;     // the sign, or the name of the call
    qsizetype start = 0;       // where the part begins that it will be
    std::size_t finished = 0;  // how many parts were finished before a bracket

    bool isOperator() const { return role == Role::prefix || role == Role::binary; }
    bool isBracket() const { return role >= Role::group; }
  };

  bool takeOperand(const Token& token) {
    switch (token.kind) {
      case TokenKind::number:
        addLeaf(Kind::number, token);
        return true;
      case TokenKind::text:
        addLeaf(Kind::text, token);
        return token.fault == TokenFault::none;
      case TokenKind::name:
        return takeName(token);
      case TokenKind::opening:
        return takeOpening(token);
      case TokenKind::closing:
        return closeEmpty(token);
      case TokenKind::operatorSign:
        return isPrefixSign(token.sign) && (wait(Waiting::Role::prefix, kPrefixPrecedence), true);
      default:
        return false;
    }
  }

  bool takeName(const Token& token) {
    if (!isFreeName(m_tokens.all(), m_index)) {
      return false;
    }
    if (!isCall(m_tokens.all(), m_index)) {
      addLeaf(Kind::name, token);
      return true;
    }
    wait(Waiting::Role::call);
    m_index = tokenAfter(m_tokens.all(), m_index);
    return true;
  }

  bool takeOpening(const Token& token) {
    if (token.sign == "[") {
      return false;
    }
    if (token.sign == "(" && isCast()) {
      wait(Waiting::Role::prefix, kPrefixPrecedence);
      m_index += 2;
      return true;
    }
    wait(token.sign == "(" ? Waiting::Role::group : Waiting::Role::array);
    return true;
  }

  // The libraries know a cast without blanks only.
  bool isCast() const {
    if (m_index + 2 >= m_tokens.size() || m_tokens[m_index + 2].sign != ")") {
      return false;
    }
    const QStringView name = m_tokens.textAt(m_index + 1);
    return isCastName(name) && !m_variables.contains(name.toString());
  }

  // The end of a call without arguments.
  bool closeEmpty(const Token& token) {
    const bool isEmptyCall = !m_waiting.empty() && token.sign == ")" &&
                             m_waiting.back().role == Waiting::Role::call &&
                             m_waiting.back().finished == m_finished.size();
    return isEmptyCall && close(token);
  }

  bool takeOperator(const Token& token) {
    switch (token.kind) {
      case TokenKind::unit:
        addPostfix(token);
        return true;
      case TokenKind::closing:
        return close(token);
      case TokenKind::separator:
        return separate(token);
      case TokenKind::opening:
        return token.sign == "[" && (beginIndex(), true);
      case TokenKind::name:
        return takeWord(token);
      case TokenKind::operatorSign:
        return takeSign(token);
      default:
        return false;
    }
  }

  bool takeWord(const Token& token) {
    const QStringView word = m_tokens.text(token);
    const std::string_view sign =
        m_variables.contains(word.toString()) ? std::string_view() : signOfWord(word);
    return !sign.empty() && takeBinary(sign);
  }

  bool takeSign(const Token& token) {
    if (isPostfixSign(token.sign)) {
      addPostfix(token);
      return true;
    }
    if (token.sign == "?") {
      closeOperators(kConditionPrecedence);
      wait(Waiting::Role::question);
      return true;
    }
    return token.sign == ":" ? takeColon() : takeBinary(token.sign);
  }

  bool takeBinary(std::string_view sign) {
    const BinaryOperator* line = binaryOperator(sign);
    if (line == nullptr) {
      return false;
    }
    closeOperators(line->precedence + (line->isRightAssociative ? 1 : 0));
    wait(Waiting::Role::binary, line->precedence);
    m_waiting.back().isAssignment = line->isAssignment;
    return true;
  }

  // Between the two values of a condition.
  bool takeColon() {
    closeValues();
    if (m_waiting.empty() || m_waiting.back().role != Waiting::Role::question) {
      return false;
    }
    m_waiting.back().role = Waiting::Role::colon;
    m_wantsOperand = true;
    return true;
  }

  void beginIndex() {
    wait(Waiting::Role::index);
    m_waiting.back().finished = m_finished.size() - 1;
    m_waiting.back().start = m_parts[m_finished.back()].outerStart;
  }

  bool separate(const Token& token) {
    closeValues();
    const bool takesSeveral = !m_waiting.empty() && m_waiting.back().isBracket() &&
                              m_waiting.back().role != Waiting::Role::group;
    m_wantsOperand = true;
    return takesSeveral && token.sign == ",";
  }

  bool close(const Token& token) {
    closeValues();
    if (m_waiting.empty() || closingOf(m_waiting.back().role) != token.sign) {
      return false;
    }
    const Waiting bracket = m_waiting.back();
    m_waiting.pop_back();
    m_wantsOperand = false;
    const qsizetype end = positionOf(token) + sizeOf(token);
    if (bracket.role == Waiting::Role::group) {
      ExpressionPart& inner = m_parts[m_finished.back()];
      inner.outerStart = bracket.start;
      inner.outerSize = end - bracket.start;
      return m_finished.size() == bracket.finished + 1;
    }
    const Kind kind = bracket.role == Waiting::Role::call    ? Kind::call
                      : bracket.role == Waiting::Role::index ? Kind::element
                                                             : Kind::array;
    const QString sign = kind == Kind::call ? m_tokens.textAt(bracket.token).toString() : QString();
    add(kind, sign, bracket.start, end, m_finished.size() - bracket.finished);
    return true;
  }

  static std::string_view closingOf(Waiting::Role role) {
    switch (role) {
      case Waiting::Role::group:
      case Waiting::Role::call:
        return ")";
      case Waiting::Role::index:
        return "]";
      case Waiting::Role::array:
        return "}";
      default:
        return {};
    }
  }

  // Those that bind at least so closely have got their last operand.
  void closeOperators(int precedence) {
    while (!m_waiting.empty() && m_waiting.back().isOperator() &&
           m_waiting.back().precedence >= precedence) {
      reduce();
    }
  }
  void closeValues() {
    while (!m_waiting.empty() &&
           (m_waiting.back().isOperator() || m_waiting.back().role == Waiting::Role::colon)) {
      reduce();
    }
  }

  void reduce() {
    const Waiting waiting = m_waiting.back();
    m_waiting.pop_back();
    const qsizetype end = m_parts[m_finished.back()].outerEnd();
    switch (waiting.role) {
      case Waiting::Role::prefix:
        add(Kind::prefix, signAt(waiting), waiting.start, end, 1);
        break;
      case Waiting::Role::colon:
        add(Kind::conditional, QStringLiteral("?:"), startOfLast(3), end, 3);
        break;
      default:
        add(waiting.isAssignment ? Kind::assignment : Kind::binary, signAt(waiting), startOfLast(2),
            end, 2);
    }
  }

  // A cast with its brackets.
  QString signAt(const Waiting& waiting) const {
    const QString sign = m_tokens.textAt(waiting.token).toString();
    return sign == u"(" ? sign + m_tokens.textAt(waiting.token + 1).toString() + u')' : sign;
  }

  qsizetype startOfLast(std::size_t count) const {
    return m_parts[m_finished[m_finished.size() - count]].outerStart;
  }

  void wait(Waiting::Role role, int precedence = 0) {
    m_waiting.push_back({.role = role,
                         .precedence = precedence,
                         .token = m_index,
                         .start = positionOf(m_tokens[m_index]),
                         .finished = m_finished.size()});
    m_wantsOperand = true;
  }

  void addLeaf(Kind kind, const Token& token) {
    const qsizetype start = positionOf(token);
    add(kind, m_tokens.text(token).toString(), start, start + sizeOf(token), 0);
    m_wantsOperand = false;
  }

  void addPostfix(const Token& token) {
    add(Kind::postfix, m_tokens.text(token).toString(), startOfLast(1),
        positionOf(token) + sizeOf(token), 1);
  }

  void add(Kind kind, const QString& sign, qsizetype start, qsizetype end, std::size_t count) {
    ExpressionPart part{.kind = kind,
                        .start = start,
                        .size = end - start,
                        .outerStart = start,
                        .outerSize = end - start,
                        .sign = sign};
    part.parts.assign(m_finished.end() - static_cast<std::ptrdiff_t>(count), m_finished.end());
    for (const std::size_t index : part.parts) {
      m_parts[index].parent = m_parts.size();
    }
    m_finished.resize(m_finished.size() - count);
    m_finished.push_back(m_parts.size());
    m_parts.push_back(std::move(part));
  }

  ExpressionTokens m_tokens;
  const QSet<QString>& m_variables;
  std::size_t m_index = 0;
  bool m_wantsOperand = true;
  std::vector<ExpressionPart> m_parts;
  std::vector<std::size_t> m_finished;
  std::vector<Waiting> m_waiting;
};

}  // namespace

SubExpressions::SubExpressions(const QString& expression, const QSet<QString>& variables)
    : m_expression(expression), m_parts(PartBuilder(expression, variables).build()) {}

QString SubExpressions::textOf(std::size_t index) const {
  return m_expression.sliced(m_parts[index].start, m_parts[index].size);
}

std::size_t SubExpressions::smallestAt(qsizetype start, qsizetype size) const {
  const auto isBlankAt = [this](qsizetype at) { return m_expression[at].isSpace(); };
  qsizetype begin = std::clamp<qsizetype>(start, 0, m_expression.size());
  qsizetype end = std::clamp<qsizetype>(start + size, begin, m_expression.size());
  while (begin < end && isBlankAt(begin)) {
    ++begin;
  }
  while (end > begin && isBlankAt(end - 1)) {
    --end;
  }
  if (begin == end) {  // a cursor: what is behind it, else what is before it
    const bool isBehind = begin < m_expression.size() && !isBlankAt(begin);
    (isBehind ? end : begin) += isBehind ? 1 : -1;
  }
  std::size_t smallest = ExpressionPart::kNone;
  for (std::size_t i = 0; i < m_parts.size(); ++i) {
    const ExpressionPart& part = m_parts[i];
    const bool covers = part.outerStart <= begin && end <= part.outerEnd();
    if (covers && part.hasValue() &&
        (smallest == ExpressionPart::kNone || part.size < m_parts[smallest].size)) {
      smallest = i;
    }
  }
  return smallest;
}

}  // namespace kelvarin
