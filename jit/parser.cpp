#include "jit/parser.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "jit/lexer.h"
#include "jit/messages.h"

namespace kelvarin::jit {

namespace {

struct BinaryOperator {
  int precedence;  // 0: no binary operator
  StepKind step;
};

// A sign binds like a product, and a power more tightly than both.
BinaryOperator binaryOperator(TokenKind kind) {
  switch (kind) {
    case TokenKind::either:
      return {1, StepKind::either};
    case TokenKind::both:
      return {2, StepKind::both};
    case TokenKind::less:
      return {3, StepKind::less};
    case TokenKind::lessOrEqual:
      return {3, StepKind::lessOrEqual};
    case TokenKind::greater:
      return {3, StepKind::greater};
    case TokenKind::greaterOrEqual:
      return {3, StepKind::greaterOrEqual};
    case TokenKind::equal:
      return {3, StepKind::equal};
    case TokenKind::notEqual:
      return {3, StepKind::notEqual};
    case TokenKind::plus:
      return {4, StepKind::add};
    case TokenKind::minus:
      return {4, StepKind::subtract};
    case TokenKind::times:
      return {5, StepKind::multiply};
    case TokenKind::over:
      return {5, StepKind::divide};
    case TokenKind::remainder:
      return {5, StepKind::remainder};
    default:
      return {0, StepKind::constant};
  }
}

constexpr int kLowestPrecedence = 1;

StepKind stepOf(Accumulation accumulation) {
  switch (accumulation) {
    case Accumulation::smallest:
      return StepKind::smaller;
    case Accumulation::largest:
      return StepKind::larger;
    default:
      return StepKind::add;
  }
}

bool isSum(Accumulation accumulation) {
  return accumulation == Accumulation::sum || accumulation == Accumulation::average;
}

// Recursive descent; each operation returns false after it has set the failure.
class Parser {
 public:
  Parser(std::string_view text, std::span<const Symbols* const> scopes, CompileFailure& failure)
      : m_lexer(text), m_scopes(scopes), m_failure(failure) {}

  bool parse() {
    if (!advance()) {
      return false;
    }
    if (m_token.kind == TokenKind::end) {
      return refuse(CompileStatus::syntaxError, messages::empty());
    }
    return parseConditional() && expectEnd();
  }

  Expression takeExpression() { return std::move(m_expression); }

 private:
  class Level {
   public:
    explicit Level(int& depth) : m_depth(depth) { ++m_depth; }
    ~Level() { --m_depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    bool isTooDeep() const { return m_depth > kMaximumNesting; }

   private:
    int& m_depth;
  };

  bool parseConditional() {
    const Level level(m_nesting);
    if (level.isTooDeep()) {
      return refuseDepth();
    }
    if (!parseBinary(kLowestPrecedence)) {
      return false;
    }
    return m_token.kind != TokenKind::question || parseArms();
  }

  // After the condition.
  bool parseArms() {
    const std::size_t question = m_token.position;
    const std::size_t skipUnless = addJump(StepKind::skipUnless);
    --m_stackDepth;
    if (!advance() || !parseConditional()) {
      return false;
    }
    if (m_token.kind != TokenKind::colon) {
      m_failure = {CompileStatus::syntaxError, static_cast<int>(question),
                   messages::colonExpected()};
      return false;
    }
    const std::size_t skip = addJump(StepKind::skip);
    --m_stackDepth;
    m_expression.steps[skipUnless].element = m_expression.steps.size();
    if (!advance() || !parseConditional()) {
      return false;
    }
    m_expression.steps[skip].element = m_expression.steps.size();
    m_expression.steps.push_back({.kind = StepKind::choose});
    return true;
  }

  bool parseBinary(int minimumPrecedence) {
    if (!parseSigned()) {
      return false;
    }
    while (true) {
      const BinaryOperator found = binaryOperator(m_token.kind);
      if (found.precedence < minimumPrecedence) {
        return true;
      }
      if (!advance() || !parseBinary(found.precedence + 1)) {
        return false;
      }
      addBinary(found.step);
    }
  }

  // One sign at most.
  bool parseSigned() {
    const TokenKind sign = m_token.kind;
    if (sign != TokenKind::minus && sign != TokenKind::plus) {
      return parsePower();
    }
    if (!advance() || !parsePower()) {
      return false;
    }
    if (sign == TokenKind::minus) {
      m_expression.steps.push_back({.kind = StepKind::negate});
    }
    return true;
  }

  // From right to left.
  bool parsePower() {
    if (!parseWithUnit()) {
      return false;
    }
    if (m_token.kind != TokenKind::power) {
      return true;
    }
    const Level level(m_nesting);
    if (level.isTooDeep()) {
      return refuseDepth();
    }
    if (!advance() || !parseSigned()) {
      return false;
    }
    addBinary(StepKind::power);
    return true;
  }

  bool parseWithUnit() {
    if (!parseValue()) {
      return false;
    }
    if (m_token.kind != TokenKind::unit) {
      return true;
    }
    if (!addNumber(m_token.number)) {
      return false;
    }
    addBinary(StepKind::multiply);
    return advance();
  }

  bool parseValue() {
    switch (m_token.kind) {
      case TokenKind::number:
        return addNumber(m_token.number) && advance();
      case TokenKind::name:
        return m_lexer.isAtBracket() ? parseCall() : parseName();
      case TokenKind::open:
        return advance() && parseConditional() && expectClose();
      case TokenKind::end:
        return refuse(CompileStatus::syntaxError, messages::valueExpected());
      default:
        return refuseToken();
    }
  }

  bool parseName() {
    for (const Symbols* symbols : m_scopes) {
      if (const NamedVariable* variable = symbols->variables.find(m_token.text)) {
        return addVariable(variable->element) && advance();
      }
      if (const NamedConstant* constant = symbols->constants.find(m_token.text)) {
        return addNumber(constant->value) && advance();
      }
    }
    return refuse(CompileStatus::unknownName, messages::unknownVariable(m_token.text));
  }

  bool parseCall() {
    for (const Symbols* symbols : m_scopes) {
      if (const FunctionSymbol* found = symbols->functions.find(m_token.text)) {
        if (const auto* function = std::get_if<NamedFunction>(found)) {
          return parseArguments(*function);
        }
        return parseAccumulation(std::get<Accumulation>(*found));
      }
    }
    return refuse(CompileStatus::unknownName, messages::unknownFunction(m_token.text));
  }

  bool parseArguments(const NamedFunction& function) {
    const std::string_view name = m_token.text;
    if (!advance() || !advance()) {  // the name and its bracket
      return false;
    }
    const int count = argumentCountOf(function.function);
    for (int i = 0; i < count; ++i) {
      if (i > 0 && !expectComma(name)) {
        return false;
      }
      if (!parseArgument(name)) {
        return false;
      }
    }
    if (m_token.kind == TokenKind::comma) {
      return refuse(CompileStatus::syntaxError, messages::tooManyArguments(name));
    }
    m_expression.steps.push_back({.kind = StepKind::call, .function = function});
    m_stackDepth -= static_cast<std::size_t>(count) - 1;
    return expectClose();
  }

  bool parseAccumulation(Accumulation accumulation) {
    const std::string_view name = m_token.text;
    if (!advance() || !advance()) {
      return false;
    }
    if (isSum(accumulation) && !addNumber(0.0)) {
      return false;
    }
    std::size_t count = 0;
    do {
      if ((count > 0 && !advance()) || !parseArgument(name)) {
        return false;
      }
      if (count > 0 || isSum(accumulation)) {
        addBinary(stepOf(accumulation));
      }
      ++count;
    } while (m_token.kind == TokenKind::comma);
    if (accumulation == Accumulation::average) {
      if (!addNumber(static_cast<double>(count))) {
        return false;
      }
      addBinary(StepKind::divide);
    }
    return expectClose();
  }

  bool parseArgument(std::string_view function) {
    if (m_token.kind == TokenKind::close) {
      return refuse(CompileStatus::syntaxError, messages::tooFewArguments(function));
    }
    return parseConditional();
  }

  bool expectComma(std::string_view function) {
    if (m_token.kind == TokenKind::comma) {
      return advance();
    }
    if (m_token.kind == TokenKind::close) {
      return refuse(CompileStatus::syntaxError, messages::tooFewArguments(function));
    }
    return refuseUnlessEnd();
  }

  bool expectClose() { return m_token.kind == TokenKind::close ? advance() : refuseUnlessEnd(); }

  bool expectEnd() { return m_token.kind == TokenKind::end || refuseToken(); }

  bool refuseUnlessEnd() {
    if (m_token.kind == TokenKind::end) {
      return refuse(CompileStatus::syntaxError, messages::bracketExpected());
    }
    return refuseToken();
  }

  bool refuseToken() {
    if (m_token.kind == TokenKind::assign) {
      return refuse(CompileStatus::unsupported, messages::assignment());
    }
    if (m_token.kind == TokenKind::comma) {
      return refuse(CompileStatus::unsupported, messages::severalResults());
    }
    return refuse(CompileStatus::syntaxError, messages::unexpectedText(m_token.text));
  }

  bool refuseDepth() { return refuse(CompileStatus::tooLarge, messages::tooDeep(kMaximumNesting)); }

  bool refuse(CompileStatus status, std::string reason) {
    m_failure = {status, static_cast<int>(m_token.position), std::move(reason)};
    return false;
  }

  bool advance() {
    m_token = m_lexer.next();
    if (m_token.kind == TokenKind::invalid) {
      m_failure = m_lexer.failure();
      return false;
    }
    return true;
  }

  // The value that a step leaves on the stack.
  bool reserveValue() {
    ++m_stackDepth;
    return m_stackDepth <= kMaximumStackDepth || refuseDepth();
  }

  bool addNumber(double number) {
    m_expression.steps.push_back({.kind = StepKind::constant, .number = number});
    return reserveValue();
  }

  bool addVariable(std::size_t element) {
    constexpr std::size_t limit = std::numeric_limits<std::int32_t>::max() / sizeof(double);
    if (element >= limit) {
      return refuse(CompileStatus::tooLarge, messages::elementOutOfRange(m_token.text));
    }
    std::vector<std::size_t>& elements = m_expression.elements;
    if (std::find(elements.begin(), elements.end(), element) == elements.end()) {
      elements.push_back(element);
    }
    m_expression.steps.push_back({.kind = StepKind::variable, .element = element});
    return reserveValue();
  }

  void addBinary(StepKind kind) {
    m_expression.steps.push_back({.kind = kind});
    --m_stackDepth;
  }

  std::size_t addJump(StepKind kind) {
    m_expression.steps.push_back({.kind = kind});
    return m_expression.steps.size() - 1;
  }

  Lexer m_lexer;
  std::span<const Symbols* const> m_scopes;
  CompileFailure& m_failure;
  Token m_token;
  Expression m_expression;
  int m_nesting = 0;
  std::size_t m_stackDepth = 0;
};

}  // namespace

std::optional<Expression> parse(std::string_view text, std::span<const Symbols* const> scopes,
                                CompileFailure& failure) {
  if (text.size() > kMaximumExpressionLength) {
    failure = {CompileStatus::tooLarge, static_cast<int>(kMaximumExpressionLength),
               messages::tooLong(kMaximumExpressionLength)};
    return std::nullopt;
  }
  Parser parser(text, scopes, failure);
  if (!parser.parse()) {
    return std::nullopt;
  }
  return parser.takeExpression();
}

}  // namespace kelvarin::jit
