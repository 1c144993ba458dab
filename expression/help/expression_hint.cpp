#include "expression/help/expression_hint.h"

#include <algorithm>

#include <QRegularExpression>

#include "expression/errors/messages.h"
#include "expression/errors/expression_mark.h"
#include "expression/help/foreign_signs.h"
#include "expression/help/language_entries.h"
#include "expression/help/missing_operator.h"
#include "expression/help/unknown_name_hint.h"

namespace kelvarin {

namespace {

constexpr char kNeedsLabel[] =
    "Expressions cannot name the column '%1' as it is. Give it a label, <InputVar column='%2' "
    "label='%3'/>, and write %3.";

constexpr char kSignature[] = "How '%1' is called: %2";
constexpr char kOtherArguments[] = "\n  With %1 argument(s): %2%3";
constexpr char kThousands[] =
    "Numbers have no thousands separators: 1000000. A comma separates arguments.";
constexpr char kTooLarge[] = "'%1' is too large for a number: the largest is about 1.8e308.";
constexpr char kUnclosedText[] =
    "The closing quote is missing of the text that opens at position %1. Write it: \"text\". A "
    "quote inside a text is written \\\".";
constexpr char kEmpty[] = "The expression is empty. Write one, for instance: price * 2";
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
  static const QRegularExpression digitsAtEnd(QStringLiteral("\\d+$"));
  return QString(function).remove(digitsAtEnd).toLower();
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
      calls += QString::fromLatin1(kOtherArguments)
                   .arg(QString::number(count), name, help.sliced(help.indexOf(u'(')));
    }
  }
  return calls;
}

// A function that got too few arguments, or too many.
QString hintAtArguments(const QString& message) {
  static const QRegularExpression pattern(
      QStringLiteral("Too (few|many) (?:parameters|arguments) .*function:? \"?(\\w+)"));
  const auto found = pattern.match(message);
  if (!found.hasMatch()) {
    return {};
  }
  const QString name = found.captured(2);
  const LanguageMatch match = findInLanguage(name.toStdString());
  if (match.entries.empty()) {
    return {};
  }
  const LanguageEntry& entry = *match.entries.front();
  QString hint = QString::fromLatin1(kSignature).arg(name, QString::fromStdString(entry.help)) +
                 otherCalls(entry, found.captured(1) == u"many");
  for (const auto& [function, advice] : kAdviceOnCalls) {
    hint += name == QLatin1String(function) ? QString::fromLatin1(advice) : QString();
  }
  return hint;
}

// A value of the wrong type, in the library's words: s is a text, i and f are numbers, b is a
// condition.
QString hintAtTypes(const ExpressionError& error) {
  const QString& message = error.message;
  if (error.kind == ExpressionError::Kind::textForNumber) {
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

QString hintAtUnclosedText(const QString& message, const QString& expression) {
  const qsizetype quote = unclosedText(expression);
  return quote >= 0 && message.contains(QLatin1String("Unterminated string"))
             ? QString::fromLatin1(kUnclosedText).arg(quote)
             : QString();
}

QString hintAtLargeNumber(const QString& message) {
  static const QRegularExpression pattern(
      QStringLiteral("^Undefined token \"([\\d.]+e\\+?\\d+)\""),
      QRegularExpression::CaseInsensitiveOption);
  const auto found = pattern.match(message);
  return found.hasMatch() ? QString::fromLatin1(kTooLarge).arg(found.captured(1)) : QString();
}

QString hintAtEmptiness(const QString& expression) {
  return expression.trimmed().isEmpty() ? QString::fromLatin1(kEmpty) : QString();
}

QString hintAtComma(const QString& message, const QString& expression) {
  static const QRegularExpression thousands(
      QStringLiteral("(?<!\\d)\\d{1,3}(?:,\\d{3}){2,}(?!\\d)"));
  static const QRegularExpression pattern(QStringLiteral("\\d,\\d"));
  const bool isAboutComma = message.contains(QLatin1String("comma"));
  const QString text = withoutTexts(expression);
  if (!isAboutComma || !text.contains(pattern)) {
    return {};
  }
  return QString::fromLatin1(text.contains(thousands) ? kThousands : kDecimalPoint);
}

}  // namespace

QString expressionHint(const ExpressionError& error, const QString& expression,
                       const HintNames& names) {
  for (const QString& hint :
       {hintAtEmptiness(expression), hintAtUnclosedText(error.message, expression),
        hintAtUnnamable(expression, names), foreignSignHint(expression),
        hintAtArguments(error.message), hintAtTypes(error),
        hintAtComma(error.message, expression), hintAtLargeNumber(error.message),
        missingOperatorHint(error, expression, names.variables)}) {
    if (!hint.isEmpty()) {
      return hint;
    }
  }
  return unknownNameHint(error.message, expression, names.variables, names.columns,
                         names.adviceOnUnknown);
}

}  // namespace kelvarin
