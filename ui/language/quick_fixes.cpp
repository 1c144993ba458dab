#include "ui/language/quick_fixes.h"

#include <algorithm>

#include "expression/help/expression_hint.h"
#include "expression/tokens/expression_tokens.h"
#include "host/contract/nearest_names.h"
#include "ui/language/column_variable.h"
#include "ui/language/highlighting.h"
#include "ui/language/language_names.h"
#include "ui/language/messages.h"

namespace kelvarin {

namespace {

using ErrorKind = ExpressionError::Kind;

bool isError(const ExpressionCheck& check) {
  return check.kind == ExpressionCheck::Kind::error;
}

// Engines may report another one, or the bracket behind it.
FaultRange firstUnknownName(const Formula& formula) {
  for (const HighlightedSpan& span :
       highlightingOf(formula.output.expression, knownNamesOf(formula))) {
    if (span.kind == HighlightedSpan::Class::unknownName) {
      return {span.start, span.size};
    }
  }
  return {};
}

const Token* unclosedText(const ExpressionTokens& tokens) {
  const auto found = std::find_if(tokens.begin(), tokens.end(), [](const Token& token) {
    return token.fault == TokenFault::unclosed;
  });
  return found == tokens.end() ? nullptr : &*found;
}

class FixFinder {
 public:
  explicit FixFinder(const Formula& formula)
      : m_formula(formula), m_tokens(formula.output.expression) {}

  std::vector<QuickFix> run(const ExpressionCheck& check) {
    if (const FaultRange unknown = unknownNameOf(check, m_formula); unknown.start >= 0) {
      fixName(unknown);
    }
    if (isError(check)) {
      closeText();
      closeBrackets();
      joinTexts(check.error);
      writeDecimalPoint(check.error);
      writeDoubleQuotes(check.error);
    } else {
      compareInstead(check);
    }
    return std::move(m_fixes);
  }

 private:
  void fixName(const FaultRange& span) {
    const QString name = m_formula.output.expression.sliced(span.start, span.size);
    const QStringView rest = QStringView(m_formula.output.expression).sliced(span.start);
    const std::vector<PinColumns::Column>& columns = m_formula.columns.columns;
    for (const PinColumns::Column& column : columns) {
      const bool isWritten = !isVariableName(column.name) && rest.startsWith(column.name);
      if (isWritten) {  // with its blanks
        addColumn({span.start, column.name.size()}, column);
      } else if (column.name == name || variableNameFor(column.name) == name) {
        addColumn(span, column);
      }
    }
    const std::size_t next = tokenAfter(m_tokens.all(), indexAt(span.start));
    const bool isCalled = next != kNoToken && m_tokens[next].sign == "(";
    const LanguageMatch match = findInLanguage(name.toStdString());
    for (const LanguageEntry* entry : match.entries) {
      const QString meant = QString::fromStdString(entry->name);
      if (languageNames().contains(meant) && isCalled == (entry->kind == HelpKind::function)) {
        addName(span, meant);
      }
    }
    for (const QString& near : nearestNames(name, namesFor(isCalled))) {
      const auto column = std::find_if(
          columns.begin(), columns.end(),
          [&](const PinColumns::Column& one) { return one.name == near && !isVariable(near); });
      if (column == columns.end()) {
        addName(span, near);
      } else {
        addColumn(span, *column);
      }
    }
  }

  bool isVariable(const QString& name) const {
    return std::any_of(m_formula.variables.begin(), m_formula.variables.end(),
                       [&](const InputVariable& variable) { return variable.name() == name; });
  }

  std::size_t indexAt(qsizetype position) const {
    const auto found = std::find_if(m_tokens.begin(), m_tokens.end(), [&](const Token& token) {
      return positionOf(token) == position;
    });
    return static_cast<std::size_t>(found - m_tokens.begin());
  }

  // What can stand there.
  QStringList namesFor(bool isCalled) const {
    QStringList names;
    for (auto name = languageNames().begin(); name != languageNames().end(); ++name) {
      if ((name.value()->kind == HelpKind::function) == isCalled) {
        names += name.key();
      }
    }
    if (isCalled) {
      return names;
    }
    const KnownNames known = knownNamesOf(m_formula);
    for (const QSet<QString>* more : {&known.variables, &known.columns, &known.parameters}) {
      names += QStringList(more->begin(), more->end());
    }
    names.sort();
    return names;
  }

  void addName(const FaultRange& span, const QString& name) {
    add({language_messages::replaceBy(name), span.start, span.size, name, {}});
  }

  void addColumn(const FaultRange& span, const PinColumns::Column& column) {
    add({language_messages::useColumn(column.name), span.start, span.size,
         variableForColumn(column, m_formula.variables).name(), column.name});
  }

  void closeText() {
    if (unclosedText(m_tokens) != nullptr) {
      add({language_messages::closeText(),
           m_formula.output.expression.size(),
           0,
           QStringLiteral("\""),
           {}});
    }
  }

  void closeBrackets() {
    QString missing;
    for (const Token& token : m_tokens) {
      if (token.kind == TokenKind::opening) {
        missing.prepend(token.sign == "(" ? u')' : token.sign == "[" ? u']' : u'}');
      } else if (token.kind == TokenKind::closing) {
        if (!missing.startsWith(QLatin1Char(token.sign.front()))) {
          return;  // one too many, or of another kind
        }
        missing.remove(0, 1);
      }
    }
    constexpr qsizetype kFew = 20;
    const bool isText = unclosedText(m_tokens) != nullptr;
    if (!missing.isEmpty() && missing.size() <= kFew && !isText) {
      add({language_messages::closeBrackets(missing),
           m_formula.output.expression.size(),
           0,
           missing,
           {}});
    }
  }

  void joinTexts(const ExpressionError& error) {
    const bool isSum = error.kind == ErrorKind::wrongType && error.token == u"+" &&
                       error.found == ExpressionError::ValueType::text;
    if (isSum && error.position >= 0) {
      add({language_messages::joinTexts(), error.position, 1, QStringLiteral("//"), {}});
    }
  }

  // For the comma in `1,5`.
  void writeDecimalPoint(const ExpressionError& error) {
    const std::size_t index = indexAt(error.position);
    const bool isBetweenNumbers = index > 0 && index + 1 < m_tokens.size() &&
                                  m_tokens[index].sign == "," &&
                                  m_tokens[index - 1].kind == TokenKind::number &&
                                  m_tokens[index + 1].kind == TokenKind::number;
    if (isBetweenNumbers && error.kind == ErrorKind::unexpectedComma) {
      add({language_messages::replaceBy(QStringLiteral(".")),
           error.position,
           1,
           QStringLiteral("."),
           {}});
    }
  }

  // For `'abc'`.
  void writeDoubleQuotes(const ExpressionError& error) {
    const QString& expression = m_formula.output.expression;
    const std::size_t index = indexAt(error.position);
    if (index >= m_tokens.size() || m_tokens[index].sign != "'") {
      return;
    }
    const qsizetype end = expression.indexOf(u'\'', error.position + 1);
    const QString inner =
        end < 0 ? QString() : expression.sliced(error.position + 1, end - error.position - 1);
    if (end >= 0 && !inner.contains(u'"') && !inner.contains(u'\\')) {
      const QString quoted = u'"' + inner + u'"';
      add({language_messages::replaceBy(quoted), error.position, quoted.size(), quoted, {}});
    }
  }

  // A single assignment that there is a warning about.
  void compareInstead(const ExpressionCheck& check) {
    if (check.kind != ExpressionCheck::Kind::warning) {
      return;
    }
    const auto found = std::find_if(m_tokens.begin(), m_tokens.end(),
                                    [](const Token& token) { return token.sign == "="; });
    if (found != m_tokens.end()) {
      add({language_messages::compareInstead(),
           positionOf(*found),
           sizeOf(*found),
           QStringLiteral("=="),
           {}});
    }
  }

  void add(QuickFix fix) {
    const bool isKnown = std::any_of(m_fixes.begin(), m_fixes.end(), [&](const QuickFix& one) {
      return one.start == fix.start && one.replacement == fix.replacement;
    });
    if (!isKnown) {
      m_fixes.push_back(std::move(fix));
    }
  }

  const Formula& m_formula;
  ExpressionTokens m_tokens;
  std::vector<QuickFix> m_fixes;
};

// A token, else the last character before the position.
FaultRange rangeAt(const ExpressionTokens& tokens, qsizetype position) {
  FaultRange range;
  for (const Token& token : tokens) {
    if (token.kind == TokenKind::blank) {
      continue;
    }
    if (positionOf(token) > position) {
      break;
    }
    range = {positionOf(token), sizeOf(token)};
  }
  return range;
}

}  // namespace

FaultRange unknownNameOf(const ExpressionCheck& check, const Formula& formula) {
  const ExpressionError& error = check.error;
  const bool isName = error.kind == ErrorKind::undefinedName && !error.token.startsWith(u'\'');
  const bool mayBeBehind = error.kind == ErrorKind::unexpectedToken;
  if (!isError(check) || !(isName || mayBeBehind)) {
    return {};
  }
  const FaultRange unknown = firstUnknownName(formula);
  return isName || unknown.start <= error.position ? unknown : FaultRange{};
}

FaultRange faultRangeOf(const ExpressionCheck& check, const Formula& formula) {
  const QString& expression = formula.output.expression;
  const ExpressionTokens tokens(expression);
  if (!isError(check)) {
    return {};
  }
  if (const Token* text = unclosedText(tokens)) {
    return {positionOf(*text), sizeOf(*text)};
  }
  if (const FaultRange unknown = unknownNameOf(check, formula); unknown.start >= 0) {
    return unknown;
  }
  const ExpressionError& error = check.error;
  if (error.position < 0) {
    return {};
  }
  const QStringView rest = QStringView(expression).mid(error.position);
  if (!error.token.isEmpty() && rest.startsWith(error.token)) {
    return {error.position, error.token.size()};
  }
  return rangeAt(tokens, error.position);
}

std::vector<QuickFix> quickFixesOf(const ExpressionCheck& check, const Formula& formula) {
  return FixFinder(formula).run(check);
}

}  // namespace kelvarin
