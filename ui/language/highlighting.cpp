#include "ui/language/highlighting.h"

#include <algorithm>

#include "expression/tokens/expression_tokens.h"
#include "ui/language/language_names.h"
#include "ui/language/operator_table.h"
#include "ui/language/outside_sources.h"

namespace kelvarin {

namespace {

using Class = HighlightedSpan::Class;

// The index of each bracket's partner, in one pass; kNoToken for all else.
std::vector<std::size_t> partnersIn(const Tokens& tokens) {
  std::vector<std::size_t> partners(tokens.size(), kNoToken);
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (tokens[i].kind == TokenKind::opening) {
      open.push_back(i);
    }
    if (tokens[i].kind != TokenKind::closing || open.empty()) {
      continue;
    }
    const std::string_view opening = tokens[open.back()].sign;
    const std::string_view closing = opening == "(" ? ")" : opening == "[" ? "]" : "}";
    if (closing == tokens[i].sign) {
      partners[i] = open.back();
      partners[open.back()] = i;
      open.pop_back();
    }
  }
  return partners;
}

class Classifier {
 public:
  Classifier(const ExpressionTokens& tokens, const KnownNames& names)
      : m_tokens(tokens), m_names(names), m_partners(partnersIn(tokens.all())) {}

  Class classOf(std::size_t index) const {
    const Token& token = m_tokens[index];
    switch (token.kind) {
      case TokenKind::name:
        return classOfName(index);
      case TokenKind::number:
        return Class::number;
      case TokenKind::text:
        return token.fault == TokenFault::none ? Class::text : Class::fault;
      case TokenKind::operatorSign:
        return Class::operatorSign;
      case TokenKind::unit:
        return Class::unit;
      case TokenKind::opening:
      case TokenKind::closing:
        return classOfBracket(index);
      case TokenKind::separator:
        return Class::separator;
      default:
        return Class::fault;
    }
  }

 private:
  Class classOfBracket(std::size_t index) const {
    if (m_partners[index] == kNoToken) {
      return Class::fault;
    }
    const std::size_t opening = std::min(index, m_partners[index]);
    const bool isCast = opening + 2 == m_partners[opening] && isCastAt(opening + 1);
    return isCast ? Class::operatorSign : Class::bracket;
  }

  // The name between two brackets.
  bool isCastAt(std::size_t index) const {
    const QStringView name = m_tokens.textAt(index);
    return index > 0 && index + 1 < m_tokens.size() && m_tokens[index - 1].sign == "(" &&
           m_tokens[index + 1].sign == ")" && isCastName(name) &&
           !m_names.variables.contains(name.toString());
  }

  Class classOfName(std::size_t index) const {
    const QString name = m_tokens.textAt(index).toString();
    const bool isCalled = isCall(m_tokens.all(), index);
    if (!isFreeName(m_tokens.all(), index)) {
      return Class::fault;
    }
    if (!isCalled && m_names.variables.contains(name)) {
      return Class::variable;
    }
    if (isCastAt(index)) {
      return Class::operatorSign;
    }
    const LanguageEntry* entry = languageNames().value(name);
    if (isCalled) {
      return entry != nullptr && entry->kind == HelpKind::function ? Class::function
                                                                   : classOfWord(entry);
    }
    const bool isConstant = entry != nullptr && entry->kind == HelpKind::constant;
    if (m_names.parameters.contains(name) || (isConstant && !m_names.notOffered.contains(name))) {
      return Class::constant;
    }
    return classOfWord(entry);
  }

  // `and` and its like, also in front of a bracket.
  static Class classOfWord(const LanguageEntry* entry) {
    return entry != nullptr && entry->kind == HelpKind::sign ? Class::operatorSign
                                                             : Class::unknownName;
  }

  const ExpressionTokens& m_tokens;
  const KnownNames& m_names;
  std::vector<std::size_t> m_partners;
};

}  // namespace

KnownNames knownNamesOf(const Formula& formula) {
  KnownNames names;
  names.variables = variableNamesOf(formula);
  for (const PinColumns::Column& column : formula.columns.columns) {
    if (!names.variables.contains(column.name)) {
      names.columns.insert(column.name);
    }
  }
  names.notOffered = namesNotOffered(formula);
  const QMap<QString, QString>& values = formula.parameters.values();
  for (auto value = values.begin(); value != values.end(); ++value) {
    names.parameters.insert(value.key());
  }
  return names;
}

std::vector<HighlightedSpan> highlightingOf(const QString& expression, const KnownNames& names) {
  const ExpressionTokens tokens(expression);
  const Classifier classifier(tokens, names);
  std::vector<HighlightedSpan> spans;
  spans.reserve(tokens.size());
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const TokenKind kind = tokens[i].kind;
    if (kind != TokenKind::blank && kind != TokenKind::comment) {
      spans.push_back({classifier.classOf(i), positionOf(tokens[i]), sizeOf(tokens[i])});
    }
  }
  return spans;
}

BracketPair bracketsAt(const QString& expression, qsizetype cursor) {
  const ExpressionTokens tokens(expression);
  const std::vector<std::size_t> partners = partnersIn(tokens.all());
  for (const qsizetype position : {cursor, cursor - 1}) {
    const auto found = std::find_if(tokens.begin(), tokens.end(), [&](const Token& token) {
      const bool isBracket = token.kind == TokenKind::opening || token.kind == TokenKind::closing;
      return isBracket && positionOf(token) == position;
    });
    if (found == tokens.end()) {
      continue;
    }
    const std::size_t partner = partners[static_cast<std::size_t>(found - tokens.begin())];
    return {position, partner == kNoToken ? -1 : positionOf(tokens[partner])};
  }
  return {};
}

WordAt wordAt(const QString& expression, qsizetype cursor) {
  const ExpressionTokens tokens(expression);
  for (const Token& token : tokens) {
    const qsizetype start = positionOf(token);
    const qsizetype end = start + sizeOf(token);
    if (token.kind == TokenKind::name && start <= cursor && cursor <= end) {
      return {start, end - start, tokens.text(token).toString()};
    }
  }
  return {};
}

}  // namespace kelvarin
