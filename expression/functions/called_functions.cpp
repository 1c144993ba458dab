#include "expression/functions/called_functions.h"

#include <algorithm>

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

// Calls visit(token, line) for the calls of functions in the table.
template <typename Visitor>
void forEachCall(const QString& expression, Visitor visit) {
  const ExpressionTokens tokens(expression);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const FunctionLine* line = isCall(tokens.all(), i) ? lineNamed(tokens.textAt(i)) : nullptr;
    if (line != nullptr) {
      visit(tokens[i], *line);
    }
  }
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

std::optional<Token> callOf(Source source, const QString& expression) {
  return firstCall(expression,
                   [source](const FunctionLine& line) { return line.source == source; });
}

}  // namespace kelvarin
