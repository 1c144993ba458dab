#include "expression/help/expression_hint.h"

#include <algorithm>

#include "expression/help/foreign_signs.h"
#include "expression/help/language_entries.h"
#include "expression/help/messages.h"
#include "expression/help/missing_operator.h"
#include "expression/help/unknown_name_hint.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

QString attributeText(QString text) {
  return text.replace(u'&', QStringLiteral("&amp;"))
      .replace(u'<', QStringLiteral("&lt;"))
      .replace(u'\'', QStringLiteral("&apos;"));
}

// A column with blanks or signs in its name, written as it is or as a name would have them.
QString hintAtUnnamable(const QString& expression, const HintNames& names) {
  const QString text = withoutTexts(expression);
  for (const QString& variable : names.variables) {
    if (!isVariableName(variable) && !names.columns.contains(variable) && text.contains(variable)) {
      return messages::labelIsNoName(variable, variableNameFor(variable));
    }
  }
  for (const QString& column : names.columns + names.variables) {
    const QString label = variableNameFor(column);
    const bool isMeant = text.contains(column) || text.contains(label);
    if (!isVariableName(column) && isMeant && !names.variables.contains(label)) {
      return messages::needsLabel(column, attributeText(column), label);
    }
  }
  return {};
}

// What people mean by a call that a function of that name does not take.
constexpr struct {
  const char* function;
  const char* advice;
} kAdviceOnCalls[] = {
    {"substring", "\n  The rest of the text from index s on: right(x, strlen(x) - s)"},
    {"substr", "\n  The rest of the text from index s on: right(x, strlen(x) - s)"},
    {"atan", "\n  The angle of the point (x,y): atan2(y, x)"},
    {"atan2",
     "\n  In an expression with texts it takes no second argument: compute the angle in an output "
     "of its own, from numbers alone."},
    {"log", "\n  The logarithm to the base b: ln(x) / ln(b)"},
};

QString familyOf(const QString& function) {
  const auto last = std::find_if(function.rbegin(), function.rend(),
                                 [](QChar c) { return !isDigitCharacter(c.unicode()); });
  return function.first(function.rend() - last).toLower();
}

// As declared, else as its signature shows; 0 for what is no function.
int argumentCountOf(const LanguageEntry& entry) {
  const QString help = QString::fromStdString(entry.help);
  const qsizetype bracket = help.indexOf(u'(');
  if (entry.kind != HelpKind::function || bracket < 0) {
    return 0;
  }
  const QString arguments = help.sliced(bracket, help.indexOf(u')') - bracket);
  return entry.argumentCount.value_or(static_cast<int>(arguments.count(u',')) + 1);
}

// The functions whose names differ in the number at their end, as round and round2, if they take
// more arguments or fewer, as wanted.
QString otherCalls(const LanguageEntry& entry, bool wantsMore) {
  const int own = argumentCountOf(entry);
  const QString family = familyOf(QString::fromStdString(entry.name));
  QStringList shown;
  QString calls;
  for (const LanguageEntry& other : languageEntries()) {
    const int count = argumentCountOf(other);
    const QString name = QString::fromStdString(other.name);
    const bool isWanted = count > 0 && (wantsMore ? count > own : count < own);
    if (isWanted && familyOf(name) == family && !shown.contains(name, Qt::CaseInsensitive)) {
      shown += name;
      const QString help = QString::fromStdString(other.help);
      calls += messages::otherArguments(count, name, help.sliced(help.indexOf(u'(')));
    }
  }
  return calls;
}

// A function that got too few arguments, or too many.
QString hintAtArguments(const ExpressionError& error) {
  const bool areTooMany = error.kind == ExpressionError::Kind::tooManyArguments;
  if (!areTooMany && error.kind != ExpressionError::Kind::tooFewArguments) {
    return {};
  }
  const LanguageMatch match = findInLanguage(error.token.toStdString());
  if (match.entries.empty()) {
    return {};
  }
  const LanguageEntry& entry = *match.entries.front();
  QString hint = messages::signature(error.token, QString::fromStdString(entry.help)) +
                 otherCalls(entry, areTooMany);
  for (const auto& [function, advice] : kAdviceOnCalls) {
    hint += error.token == QLatin1String(function) ? QString::fromLatin1(advice) : QString();
  }
  return hint;
}

QString hintAtTypes(const ExpressionError& error) {
  using Type = ExpressionError::ValueType;
  if (error.kind == ExpressionError::Kind::textForNumber) {
    return messages::textForNumberColumn();
  }
  if (error.kind != ExpressionError::Kind::wrongType) {
    return {};
  }
  if (error.found == Type::text) {
    const QString joining = error.token == u"+" ? messages::joinTexts() : QString();
    return joining + messages::textIsNoNumber();
  }
  if (error.found == Type::condition) {
    return messages::joinConditions();
  }
  return error.wanted == Type::condition ? messages::noCondition()
         : error.wanted == Type::text    ? messages::numberIsNoText()
                                         : QString();
}

QString hintAtUnclosedText(const ExpressionError& error, const ExpressionTokens& tokens) {
  if (error.kind != ExpressionError::Kind::unclosedText) {
    return {};
  }
  const auto unclosed = std::find_if(tokens.begin(), tokens.end(), [](const Token& token) {
    return token.fault == TokenFault::unclosed;
  });
  return unclosed == tokens.end() ? QString() : messages::unclosedText(unclosed->start);
}

// A number that no double holds is none to the libraries.
QString hintAtLargeNumber(const ExpressionError& error, const ExpressionTokens& tokens) {
  if (error.kind != ExpressionError::Kind::undefinedName) {
    return {};
  }
  const auto found = std::find_if(tokens.begin(), tokens.end(), [&](const Token& token) {
    return token.kind == TokenKind::number && positionOf(token) == error.position;
  });
  const QString text = found == tokens.end() ? QString() : tokens.text(*found).toString();
  const bool isLarge = text.contains(u'e', Qt::CaseInsensitive) && !text.contains(u'-') &&
                       !text.startsWith(QLatin1String("0x"));
  return isLarge ? messages::tooLarge(text) : QString();
}

bool isComma(const ExpressionTokens& tokens, std::size_t index) {
  return tokens[index].sign == "," && index > 0 && index + 1 < tokens.size() &&
         tokens[index - 1].kind == TokenKind::number && tokens[index + 1].kind == TokenKind::number;
}

// The commas between groups of three digits that stand in a row behind the one at the index.
std::size_t groupsFrom(const ExpressionTokens& tokens, std::size_t index) {
  constexpr std::size_t kDigits = 3;
  std::size_t count = 0;
  while (index < tokens.size() && isComma(tokens, index) && tokens[index + 1].size == kDigits) {
    ++count;
    index += 2;
  }
  return count;
}

QString hintAtComma(const ExpressionError& error, const ExpressionTokens& tokens) {
  if (error.kind != ExpressionError::Kind::unexpectedComma) {
    return {};
  }
  QString hint;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (!isComma(tokens, i)) {
      continue;
    }
    if (tokens[i - 1].size <= 3 && groupsFrom(tokens, i) >= 2) {
      return messages::thousands();
    }
    hint = messages::decimalPoint();
  }
  return hint;
}

}  // namespace

QString variableNameFor(const QString& column) {
  QString label = column.trimmed();
  for (QChar& c : label) {
    c = isNameCharacter(c.unicode()) ? c : QChar(u'_');
  }
  return isVariableName(label) ? label : u'_' + label;
}

QString expressionHint(const ExpressionError& error, const QString& expression,
                       const HintNames& names) {
  if (expression.trimmed().isEmpty()) {
    return messages::emptyExpression();
  }
  const ExpressionTokens tokens(expression);
  for (const QString& hint :
       {hintAtUnclosedText(error, tokens), hintAtUnnamable(expression, names),
        foreignSignHint(expression), hintAtArguments(error), hintAtTypes(error),
        hintAtComma(error, tokens), hintAtLargeNumber(error, tokens),
        missingOperatorHint(error, expression, names.variables)}) {
    if (!hint.isEmpty()) {
      return hint;
    }
  }
  return unknownNameHint(error, expression, names.variables, names.columns, names.adviceOnUnknown,
                         names.languageList);
}

}  // namespace kelvarin
