#include "expression/help/expression_hint.h"

#include <algorithm>

#include "expression/help/foreign_signs.h"
#include "expression/help/unknown_name_hint.h"

namespace kelvarin {

namespace {

constexpr char kNeedsLabel[] =
    "Expressions cannot name the column '%1' as it is. Give it a label, <InputVar column='%2' "
    "label='%3'/>, and write %3.";

bool isNameCharacter(QChar c) {
  return c == u'_' || c.isLetterOrNumber();
}

bool isName(const QString& text) {
  return !text.isEmpty() && !text.front().isDigit() &&
         std::all_of(text.begin(), text.end(), isNameCharacter);
}

QString labelFor(const QString& column) {
  QString label = column.trimmed();
  for (QChar& c : label) {
    c = isNameCharacter(c) ? c : QChar(u'_');
  }
  return label.isEmpty() || label.front().isDigit() ? u'_' + label : label;
}

QString attributeText(QString text) {
  return text.replace(u'&', QStringLiteral("&amp;"))
      .replace(u'<', QStringLiteral("&lt;"))
      .replace(u'\'', QStringLiteral("&apos;"));
}

// A column with blanks or signs in its name, written as it is or as a name would have them.
QString hintAtUnnamable(const QString& expression, const HintNames& names) {
  const QString text = withoutTexts(expression);
  for (const QString& column : names.columns + names.variables) {
    const QString label = labelFor(column);
    const bool isMeant = text.contains(column) || text.contains(label);
    if (!isName(column) && isMeant && !names.variables.contains(label)) {
      return QString::fromLatin1(kNeedsLabel).arg(column, attributeText(column), label);
    }
  }
  return {};
}

}  // namespace

QString expressionHint(const ExpressionError& error, const QString& expression,
                       const HintNames& names) {
  if (const QString hint = hintAtUnnamable(expression, names); !hint.isEmpty()) {
    return hint;
  }
  if (const QString hint = foreignSignHint(expression); !hint.isEmpty()) {
    return hint;
  }
  return unknownNameHint(error.message, expression, names.variables, names.columns);
}

}  // namespace kelvarin
