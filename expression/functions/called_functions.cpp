#include "expression/functions/called_functions.h"

#include <algorithm>
#include <string>
#include <vector>

#include "expression/functions/function_table.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

const FunctionLine* lineNamed(QStringView name) {
  const std::vector<FunctionLine>& table = functionTable();
  const auto found = std::find_if(table.begin(), table.end(), [name](const FunctionLine& line) {
    return name == QLatin1String(line.name);
  });
  return found == table.end() ? nullptr : &*found;
}

// Calls visit(index of the token, line) for the calls of functions in the table.
template <typename Visitor>
void forEachCallIn(const ExpressionTokens& tokens, Visitor visit) {
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const FunctionLine* line = isCall(tokens.all(), i) ? lineNamed(tokens.textAt(i)) : nullptr;
    if (line != nullptr) {
      visit(i, *line);
    }
  }
}

// The same with the token itself.
template <typename Visitor>
void forEachCall(const QString& expression, Visitor visit) {
  const ExpressionTokens tokens(expression);
  forEachCallIn(tokens,
                [&](std::size_t index, const FunctionLine& line) { visit(tokens[index], line); });
}

template <typename Condition>
std::optional<Token> firstCall(const QString& expression, Condition condition) {
  std::optional<Token> first;
  forEachCall(expression, [&](const Token& token, const FunctionLine& line) {
    if (!first && condition(line)) {
      first = token;
    }
  });
  return first;
}

// For each argument of the call at the index the token that is all of it, or kNoToken.
std::vector<std::size_t> singleTokensOf(const ExpressionTokens& tokens, std::size_t call) {
  std::vector<std::size_t> arguments;
  std::size_t begin = tokenAfter(tokens.all(), call);  // its bracket
  int depth = 1;
  for (std::size_t i = begin + 1; i < tokens.size() && depth > 0; ++i) {
    const TokenKind kind = tokens[i].kind;
    depth += kind == TokenKind::opening ? 1 : kind == TokenKind::closing ? -1 : 0;
    const bool isEnd = depth == 0 || (depth == 1 && kind == TokenKind::separator);
    if (isEnd) {
      const std::size_t first = tokenAfter(tokens.all(), begin);
      const bool isSingle = first == tokenBefore(tokens.all(), i) && first != begin;
      arguments.push_back(isSingle ? first : kNoToken);
      begin = i;
    }
  }
  return arguments;
}

std::optional<std::string> textOf(const ExpressionTokens& tokens, std::size_t index) {
  if (index == kNoToken || tokens[index].kind != TokenKind::text) {
    return std::nullopt;
  }
  const auto text = textOfLiteral(unitsOf(tokens.textAt(index)));
  return text ? std::optional(QString::fromStdU16String(*text).toStdString()) : std::nullopt;
}

// Where in the expression the unit of a literal's text stands, past escapes before it.
std::size_t positionInLiteral(const ExpressionTokens& tokens, const Token& literal,
                              std::size_t unit) {
  const QStringView written = tokens.text(literal);
  qsizetype i = 1;
  for (; unit > 0; --unit) {
    i += written[i] == u'\\' ? 2 : 1;
  }
  return literal.start + static_cast<std::size_t>(i);
}

}  // namespace

DateNeeds dateNeedsOf(const QStringList& expressions) {
  DateNeeds needs;
  for (const QString& expression : expressions) {
    forEachCall(expression, [&](const Token&, const FunctionLine& line) {
      needs.reference |= line.needs.reference;
      needs.format |= line.needs.format;
    });
  }
  return needs;
}

DateStatus prepareDates(DateContext& dates, const QStringList& expressions, bool hasDateInputs) {
  return dates.prepare(hasDateInputs ? DateNeeds{.reference = true, .format = true}
                                     : dateNeedsOf(expressions));
}

std::optional<Token> undebuggableCall(const QString& expression) {
  return firstCall(expression, [](const FunctionLine& line) { return !line.isDebuggable(); });
}

QString debuggableSpelling(QStringView name) {
  const FunctionLine* own = lineNamed(name);
  for (const FunctionLine& line : functionTable()) {
    const bool isSpelling = name.compare(QLatin1String(line.name), Qt::CaseInsensitive) == 0;
    if (isSpelling && own != nullptr && line.isDebuggable() &&
        line.argumentCount == own->argumentCount) {
      return QString::fromLatin1(line.name);
    }
  }
  return {};
}

std::optional<FaultyLiteral> faultyLiteral(const QString& expression) {
  const ExpressionTokens tokens(expression);
  std::optional<FaultyLiteral> first;
  forEachCallIn(tokens, [&](std::size_t call, const FunctionLine& line) {
    if (first || line.checkOfConstants == nullptr) {
      return;
    }
    const std::vector<std::size_t> arguments = singleTokensOf(tokens, call);
    if (static_cast<int>(arguments.size()) != line.argumentCount) {
      return;
    }
    std::vector<std::optional<std::string>> constants;
    constants.reserve(arguments.size());
    for (const std::size_t argument : arguments) {
      constants.push_back(textOf(tokens, argument));
    }
    if (const std::optional<ConstantFault> fault = line.checkOfConstants(constants)) {
      const Token& literal = tokens[arguments[fault->argument]];
      first = FaultyLiteral{
          literal, fault->message,
          fault->position ? positionInLiteral(tokens, literal, *fault->position) : literal.start};
    }
  });
  return first;
}

std::optional<Token> callOf(Source source, const QString& expression) {
  return firstCall(expression,
                   [source](const FunctionLine& line) { return line.source == source; });
}

}  // namespace kelvarin
