#include "expression/batches/typed_parser.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "expression/backends/expression_text.h"
#include "expression/batches/tree_builder.h"
#include "expression/functions/function_table.h"

namespace kelvarin {

namespace {

struct BinarySign {
  std::string_view sign;
  int priority;
  Operation operation;
};

constexpr int kMaxDepth = 1000;
constexpr int kLowestPriority = 1;
constexpr int kPriorityOfPower = 9;

constexpr BinarySign kBinarySigns[] = {{"||", kLowestPriority, Operation::either},
                                       {"&&", 2, Operation::both},
                                       {"|", 3, Operation::bitOr},
                                       {"&", 4, Operation::bitAnd},
                                       {"<", 5, Operation::less},
                                       {"<=", 5, Operation::lessOrEqual},
                                       {">", 5, Operation::greater},
                                       {">=", 5, Operation::greaterOrEqual},
                                       {"==", 5, Operation::equal},
                                       {"!=", 5, Operation::notEqual},
                                       {"<<", 6, Operation::shiftLeft},
                                       {">>", 6, Operation::shiftRight},
                                       {"+", 7, Operation::add},
                                       {"-", 7, Operation::subtract},
                                       {"//", 7, Operation::join},
                                       {"*", 8, Operation::multiply},
                                       {"/", 8, Operation::divide},
                                       {"%", 8, Operation::remainder},
                                       {"^", kPriorityOfPower, Operation::power}};

struct LibraryFunction {
  std::string_view name;
  Number1 function;
};

// Those of the String Parser's library whose results are the C library's.
constexpr LibraryFunction kLibraryFunctions[] = {
    {"sin", std::sin},   {"cos", std::cos},   {"tan", std::tan},   {"asin", std::asin},
    {"acos", std::acos}, {"atan", std::atan}, {"sinh", std::sinh}, {"cosh", std::cosh},
    {"tanh", std::tanh}, {"log", std::log},   {"ln", std::log},    {"log10", std::log10},
    {"sqrt", std::sqrt}, {"exp", std::exp}};

const BinarySign* binarySign(std::string_view sign) {
  for (const BinarySign& known : kBinarySigns) {
    if (known.sign == sign) {
      return &known;
    }
  }
  return nullptr;
}

const FunctionLine* tableFunction(const QString& name) {
  for (const FunctionLine& line : functionTable()) {
    if ((line.backends & kInString) != 0 && name == QLatin1String(line.name)) {
      return &line;
    }
  }
  return nullptr;
}

Number1 libraryFunction(const QString& name) {
  for (const LibraryFunction& known : kLibraryFunctions) {
    if (name == QLatin1String(known.name.data(), static_cast<qsizetype>(known.name.size()))) {
      return known.function;
    }
  }
  return nullptr;
}

// Hexadecimal numbers have at most 31 bits.
std::optional<double> valueOfLiteral(const std::string& literal) {
  const char* end = literal.data() + literal.size();
  double number = 0.0;
  if (!literal.starts_with("0x")) {
    const auto read = std::from_chars(literal.data(), end, number);
    return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
  }
  constexpr int kBase = 16;
  std::int32_t whole = 0;
  const auto read = std::from_chars(literal.data() + 2, end, whole, kBase);
  return read.ec == std::errc() && read.ptr == end ? std::optional<double>(whole) : std::nullopt;
}

class TypedParser {
 public:
  TypedParser(const QString& expression, const ExpressionScope& scope)
      : m_expression(expression),
        m_scope(scope),
        m_tokens(withSignsForWords(expression, namesOf(scope.variables))) {
    for (std::size_t i = 0; i < m_tokens.size(); ++i) {
      const TokenKind kind = m_tokens[i].kind;
      if (kind != TokenKind::blank && kind != TokenKind::comment) {
        m_parts.push_back(i);
      }
    }
  }

  Result<TypedTree, BatchRefusal> parse() {
    const NewNode root = parseExpression();
    if (root && m_next == m_parts.size()) {
      return m_builder.take(*root);
    }
    return Failure{refusalAt(root ? m_next : m_refused)};
  }

 private:
  // The token that comes next; one without a sign at the end.
  const Token& token() const {
    static const Token end;
    return m_next < m_parts.size() ? m_tokens[m_parts[m_next]] : end;
  }
  bool isAt(std::string_view sign) const { return token().sign == sign; }
  bool accept(std::string_view sign) {
    const bool isThere = isAt(sign);
    m_next += isThere ? 1 : 0;
    return isThere;
  }
  QStringView text() const { return m_tokens.textAt(m_parts[m_next]); }

  NewNode refuse(std::size_t part) {
    m_refused = part;
    return std::nullopt;
  }
  NewNode refuseNext() { return refuse(m_next); }
  // A node, or the refusal of the token at `part`.
  NewNode checked(NewNode node, std::size_t part) { return node ? node : refuse(part); }

  // With the token as it is written, where it was rewritten to be parsed.
  BatchRefusal refusalAt(std::size_t part) const {
    if (part >= m_parts.size()) {
      return {};
    }
    const std::size_t start = m_tokens[m_parts[part]].start;
    const ExpressionTokens written(m_expression);
    const auto token = std::ranges::find(written, start, &Token::start);
    return {written.text(*token).toString(), static_cast<int>(start)};
  }

  NewNode parseExpression() {
    const NewNode condition = parseOperators(kLowestPriority);
    const std::size_t sign = m_next;
    if (!condition || !accept("?")) {
      return condition;
    }
    const NewNode first = parseExpression();
    if (!first || !accept(":")) {
      return first ? refuseNext() : first;
    }
    const NewNode second = parseExpression();
    return second ? checked(m_builder.choice(*condition, *first, *second), sign) : second;
  }

  NewNode parseOperators(int lowestPriority) {
    if (m_depth == kMaxDepth) {
      return refuseNext();
    }
    ++m_depth;
    const NewNode node = parseOperatorsAtDepth(lowestPriority);
    --m_depth;
    return node;
  }

  NewNode parseOperatorsAtDepth(int lowestPriority) {
    NewNode left = parseOperand();
    while (left) {
      const std::size_t part = m_next;
      const BinarySign* sign = binarySign(token().sign);
      if (sign == nullptr || sign->priority < lowestPriority) {
        break;
      }
      ++m_next;
      const bool isRightToLeft = sign->operation == Operation::power;
      const NewNode right = parseOperators(sign->priority + (isRightToLeft ? 0 : 1));
      left = right ? checked(m_builder.binary(sign->operation, *left, *right), part) : right;
    }
    return left;
  }

  NewNode parseOperand() {
    const std::size_t part = m_next;
    if (accept("-")) {
      const NewNode operand = parseBehindPrefix();
      return operand ? checked(m_builder.negated(*operand), part) : operand;
    }
    if (const std::optional<bool> toInteger = acceptCast()) {
      const NewNode operand = parseBehindPrefix();
      return operand ? checked(m_builder.cast(*operand, *toInteger), part) : operand;
    }
    NewNode operand = parseValue();
    while (operand && token().kind == TokenKind::unit) {
      operand = checked(m_builder.withUnit(*operand, factorOfUnit()), m_next);
      ++m_next;
    }
    return operand;
  }

  // The library takes a second sign for one of the number behind it, which binds closer than `^`.
  NewNode parseBehindPrefix() {
    return isAt("-") ? refuseNext() : parseOperators(kPriorityOfPower);
  }

  double factorOfUnit() const {
    for (const Unit& unit : kUnits) {
      if (unit.text == token().sign) {
        return unit.factor;
      }
    }
    return kNotANumber;
  }

  // `(int)` or `(float)` in one piece, as the library reads it; true for the former.
  std::optional<bool> acceptCast() {
    if (!isAt("(")) {
      return std::nullopt;
    }
    const std::size_t open = m_parts[m_next];
    if (open + 2 >= m_tokens.size() || m_tokens[open + 2].sign != ")") {
      return std::nullopt;
    }
    const QStringView type = m_tokens.textAt(open + 1);
    if ((type != u"int" && type != u"float") || isVariableOrConstant(type.toString())) {
      return std::nullopt;
    }
    m_next += 3;
    return type == u"int";
  }

  NewNode parseValue() {
    switch (token().kind) {
      case TokenKind::number:
        return parseNumber();
      case TokenKind::text:
        return parseText();
      case TokenKind::name:
        return isCall(m_tokens.all(), m_parts[m_next]) ? parseCall() : parseName();
      default:
        break;
    }
    if (!accept("(")) {
      return refuseNext();
    }
    const NewNode inside = parseExpression();
    return inside && !accept(")") ? refuseNext() : inside;
  }

  NewNode parseNumber() {
    const std::size_t index = m_parts[m_next];
    const bool hasTail = index + 1 < m_tokens.size() && m_tokens[index + 1].kind == TokenKind::name;
    const std::optional<double> value = valueOfLiteral(text().toLatin1().toStdString());
    if (hasTail || !value) {
      return refuseNext();
    }
    ++m_next;
    return m_builder.number(*value);
  }

  NewNode parseText() {
    const auto literal = textOfLiteral(unitsOf(text()));
    if (!literal) {
      return refuseNext();
    }
    ++m_next;
    return m_builder.text(QString::fromStdU16String(*literal).toStdString());
  }

  const StoredVariable* variableOf(const QString& name) const {
    const auto& variables = m_scope.variables.variables();
    const auto found = std::ranges::find(variables, name, &StoredVariable::name);
    return found == variables.end() ? nullptr : &*found;
  }

  const NamedConstant* constantOf(const QString& name) const {
    const auto found = std::ranges::find_if(m_scope.constants, [&](const NamedConstant& constant) {
      return (constant.backends & kInString) != 0 && constant.name == name;
    });
    return found == m_scope.constants.end() ? nullptr : &*found;
  }

  bool isVariableOrConstant(const QString& name) const {
    return variableOf(name) != nullptr || constantOf(name) != nullptr;
  }

  NewNode parseName() {
    const QString name = text().toString();
    if (!isFreeName(m_tokens.all(), m_parts[m_next])) {
      return refuseNext();
    }
    if (const StoredVariable* variable = variableOf(name)) {
      ++m_next;
      return m_builder.variable(variable->index, variable->isText);
    }
    if (const NamedConstant* constant = constantOf(name)) {
      ++m_next;
      return valueOf(*constant);
    }
    return refuseNext();
  }

  NodeIndex valueOf(const NamedConstant& constant) {
    if (!constant.isText) {
      return m_builder.number(constant.number);
    }
    return constant.text.isNull() ? m_builder.nullText()
                                  : m_builder.text(constant.text.toStdString());
  }

  NewNode parseCall() {
    const std::size_t part = m_next;
    const QString name = text().toString();
    const FunctionLine* line = tableFunction(name);
    const Number1 ofLibrary = line == nullptr ? libraryFunction(name) : nullptr;
    const bool isPure = line == nullptr || line->source == Source::arguments;
    if ((line == nullptr && ofLibrary == nullptr) || !isPure) {
      return refuseNext();
    }
    m_next += 2;
    std::vector<NodeIndex> arguments;
    if (!parseArguments(arguments)) {
      return std::nullopt;
    }
    if (line == nullptr) {
      return arguments.size() == 1 ? checked(m_builder.call(ofLibrary, arguments.front()), part)
                                   : refuse(part);
    }
    const bool isCountRight = line->argumentCount == kAnyArgumentCount
                                  ? !arguments.empty()
                                  : static_cast<int>(arguments.size()) == line->argumentCount;
    return isCountRight ? checked(m_builder.call(*line, std::move(arguments)), part) : refuse(part);
  }

  // Up to the closing bracket; false where something is refused.
  bool parseArguments(std::vector<NodeIndex>& arguments) {
    if (accept(")")) {
      return true;
    }
    do {
      const NewNode argument = parseExpression();
      if (!argument) {
        return false;
      }
      arguments.push_back(*argument);
    } while (accept(","));
    if (!accept(")")) {
      refuseNext();
      return false;
    }
    return true;
  }

  const QString& m_expression;
  const ExpressionScope& m_scope;
  TreeBuilder m_builder;
  ExpressionTokens m_tokens;
  std::vector<std::size_t> m_parts;  // indices of the tokens that mean something
  std::size_t m_next = 0;            // in m_parts
  std::size_t m_refused = 0;
  int m_depth = 0;
};

}  // namespace

Result<TypedTree, BatchRefusal> typedTreeOf(const QString& expression,
                                            const ExpressionScope& scope) {
  return TypedParser(expression, scope).parse();
}

}  // namespace kelvarin
