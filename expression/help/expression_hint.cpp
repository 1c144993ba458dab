#include "expression/help/expression_hint.h"

#include <algorithm>

#include <QRegularExpression>

#include "expression/errors/messages.h"
#include "expression/help/foreign_signs.h"
#include "expression/help/language_entries.h"
#include "expression/help/unknown_name_hint.h"

namespace kelvarin {

namespace {

constexpr char kNeedsLabel[] =
    "Expressions cannot name the column '%1' as it is. Give it a label, <InputVar column='%2' "
    "label='%3'/>, and write %3.";

constexpr char kSignature[] = "How '%1' is called: %2";
constexpr char kDecimalPoint[] = "Decimals are written with a point: 3.5. A comma separates arguments.";
constexpr char kJoinTexts[] = "Texts are joined with //, as in a // b. ";
constexpr char kTextIsNoNumber[] = "One value is a text. atof(s) gives the number that a text holds.";
constexpr char kNumberIsNoText[] =
    "One value is a number where a text is needed. itoa(x) and ftoa(x) make texts of numbers, and "
    "texts of your own stand between double quotes.";
constexpr char kNoCondition[] =
    "One value is a number where a condition is needed. Compare it, as in x != 0, or write "
    "isTrue(x).";
constexpr char kTextForNumberColumn[] =
    "The result is a text. Write meta='U' for a column of texts, or atof(...) for the number that the "
    "text holds.";

constexpr char kLabelIsNoName[] =
    "The label '%1' is no name, so expressions cannot use it. Write label='%2', and %2 in the "
    "expression.";
constexpr char kJoinConditions[] = "Conditions are joined with && (and) and || (or).";

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
  for (const QString& variable : names.variables) {
    if (!isName(variable) && !names.columns.contains(variable) && text.contains(variable)) {
      return QString::fromLatin1(kLabelIsNoName).arg(variable, labelFor(variable));
    }
  }
  for (const QString& column : names.columns + names.variables) {
    const QString label = labelFor(column);
    const bool isMeant = text.contains(column) || text.contains(label);
    if (!isName(column) && isMeant && !names.variables.contains(label)) {
      return QString::fromLatin1(kNeedsLabel).arg(column, attributeText(column), label);
    }
  }
  return {};
}

// A function that got too few arguments, or too many.
QString hintAtArguments(const QString& message) {
  static const QRegularExpression pattern(
      QStringLiteral("Too (?:few|many) (?:parameters|arguments) .*function:? \"?(\\w+)"));
  const auto found = pattern.match(message);
  if (!found.hasMatch()) {
    return {};
  }
  const QString name = found.captured(1);
  const LanguageMatch match = findInLanguage(name.toStdString());
  return match.entries.empty() ? QString()
                               : QString::fromLatin1(kSignature)
                                     .arg(name, QString::fromStdString(match.entries.front()->help));
}

// A value of the wrong type, in the library's words: s is a text, i and f are numbers, b is a
// condition.
QString hintAtTypes(const ExpressionError& error) {
  const QString& message = error.message;
  if (message.contains(QLatin1String(messages::kStringForNumber))) {
    return QString::fromLatin1(kTextForNumberColumn);
  }
  static const QRegularExpression pattern(
      QStringLiteral("is of type '(\\w)'.*(?:type '(\\w)' was expected|to type '(\\w)')"));
  const auto found = pattern.match(message);
  if (!found.hasMatch()) {
    return {};
  }
  const QString given = found.captured(1);
  const QString wanted = found.captured(2) + found.captured(3);
  if (given == u"s") {
    const char* joining = error.token == u"+" ? kJoinTexts : "";
    return QString::fromLatin1(joining) + QString::fromLatin1(kTextIsNoNumber);
  }
  if (given == u"b") {
    return QString::fromLatin1(kJoinConditions);
  }
  return wanted == u"b"   ? QString::fromLatin1(kNoCondition)
         : wanted == u"s" ? QString::fromLatin1(kNumberIsNoText)
                          : QString();
}

QString hintAtDecimalComma(const QString& message, const QString& expression) {
  static const QRegularExpression pattern(QStringLiteral("\\d,\\d"));
  const bool isAboutComma = message.contains(QLatin1String("comma"));
  return isAboutComma && withoutTexts(expression).contains(pattern)
             ? QString::fromLatin1(kDecimalPoint)
             : QString();
}

}  // namespace

QString expressionHint(const ExpressionError& error, const QString& expression,
                       const HintNames& names) {
  for (const QString& hint :
       {hintAtUnnamable(expression, names), foreignSignHint(expression),
        hintAtArguments(error.message), hintAtTypes(error),
        hintAtDecimalComma(error.message, expression)}) {
    if (!hint.isEmpty()) {
      return hint;
    }
  }
  return unknownNameHint(error.message, expression, names.variables, names.columns);
}

}  // namespace kelvarin
