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
  std::optional<Token> first;
  forEachCall(expression, [&](const Token& token, const FunctionLine& line) {
    if (!first && !line.isDebuggable()) {
      first = token;
    }
  });
  return first;
}

}  // namespace kelvarin
