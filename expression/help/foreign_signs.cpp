#include "expression/help/foreign_signs.h"

#include <QRegularExpression>

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

enum class Where {
  anywhere,
  behindOperand  // where no name can stand, so that a column may be called so
};

struct ForeignSign {
  const char* pattern;
  const char* hint;
  Where where = Where::anywhere;
};

constexpr char kBehindOperand[] = R"([\w\)\]"](?<!\band)(?<!\bor)\s+)";

constexpr ForeignSign kSigns[] = {
    {R"(['‘’“”„«»])", R"(Texts stand between straight double quotes: "text".)"},
    {R"(`)",
     "A column's name stands alone, without `...`. One with blanks or signs needs a label: "
     "<InputVar column='net price' label='net_price'/>."},
    {R"([$@]\w)", "A column's name stands alone, without a sign in front of it."},
    {R"([$@]\{)", "A graph parameter or a column is written by its name alone, without ${...}."},
    {R"((?:^|[^\w\)\]\}"\s])\s*\[)",
     "A column's name stands alone, without [...]. One with blanks or signs needs a label: "
     "<InputVar column='net price' label='net_price'/>."},
    {R"([^\W\d]\w*\.[^\W\d])",
     "Names have no points. A column with one needs a label, "
     "<InputVar column='t.price' label='price'/>, or in 'kelvarin calc' backquotes: `t.price`."},
    {R"(<>|≠)", "'Not equal' is written !=."},
    {R"(===|!==)", "'Equal' is written ==, and 'not equal' !=."},
    {R"(=>|≥)", "'Greater or equal' is written >=."},
    {R"(=<|≤)", "'Less or equal' is written <=."},
    {R"(\*\*)", "A power is written x ^ y."},
    {R"([×·])", "A product is written x * y."},
    {R"(÷)", "A quotient is written x / y."},
    {R"([–—−])", "The sign of a difference is the minus of the keyboard: x - y."},
    {R"(\d\.\d+\.\d)",
     "A number has one decimal point and no thousands separators: 1000000.5 for one million and a "
     "half."},
    {R"((?<![\w.])\d{1,3}(?: \d{3})+(?!\w))", "Numbers have no thousands separators: 1000000."},
    {R"((?<!\w)\d+_\d)", "Numbers have no thousands separators: 1000000."},
    {R"(;)", "Arguments are separated by commas, and an expression has no semicolon."},
    {R"((?:^|[^\w\)\]\}"\s!])\s*!(?!=))", "The opposite of a condition is written not(x)."},
    {R"(%\s*(?:$|\)))", "% is the remainder of a division: x % y. A percentage is x / 100."},
    {R"((?-i:AND|OR|And|Or)\b)", "'and' and 'or' are written in small letters, or && and ||.",
     Where::behindOperand},
    {R"(^\s*(?:if|case)\s+\w)", "A choice is written (condition ? a : b)."},
    {R"(is\s+not\s+null\b)", "Whether a value is there: not(isNull(x)).", Where::behindOperand},
    {R"(is\s+null\b)", "Whether a value is missing: isNull(x).", Where::behindOperand},
    {R"((?:not\s+)?in\b)", "'In a list' is written with comparisons: x == a || x == b.",
     Where::behindOperand},
    {R"((?:not\s+)?between\b)", "'Between' is written x >= a && x <= b.", Where::behindOperand},
    {R"((?:not\s+)?like\b)",
     R"(Patterns of texts are contains(s, "x"), startsWith(s, "x") and endsWith(s, "x").)",
     Where::behindOperand},
    {R"((?:^|[\(,&|=<>\s])not\s+[\w"])", "'not' is a function: not(x)."},
    {R"((?:then|else|when)\b)", "A choice is written (condition ? a : b).", Where::behindOperand},
    {R"(mod\b)", "The remainder of a division is written x % y.", Where::behindOperand},
    {R"((?:\+\+|--)\s*$)", "A value cannot be counted up. Write x + 1."},
};

}  // namespace

QString withoutTexts(const QString& expression) {
  const ExpressionTokens tokens(expression);
  QString rest = expression;
  for (const Token& token : tokens) {
    if (token.kind == TokenKind::text) {
      const bool isClosed = token.fault != TokenFault::unclosed;
      const qsizetype inside = sizeOf(token) - (isClosed ? 2 : 1);
      rest.replace(positionOf(token) + 1, inside, QString(inside, u' '));
    }
  }
  return rest;
}

QString foreignSignHint(const QString& expression) {
  const QString text = withoutTexts(expression);
  for (const ForeignSign& sign : kSigns) {
    const QString before =
        QString::fromLatin1(sign.where == Where::behindOperand ? kBehindOperand : "");
    const QRegularExpression pattern(
        before + QString::fromUtf8(sign.pattern),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    if (text.contains(pattern)) {
      return QString::fromUtf8(sign.hint);
    }
  }
  return {};
}

}  // namespace kelvarin
