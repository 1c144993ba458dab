#include "expression/help/unknown_name_hint.h"

#include <algorithm>

#include <QRegularExpression>

#include "expression/help/language_entries.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

namespace {

constexpr char kColumnWithoutVariable[] =
    "'%1' is a column of the input but not an input variable of this action. Add <InputVar column='%1'/>.";
constexpr char kOtherName[] = "There is no '%1' in expressions; use %2.";
constexpr char kOtherNameWithAdvice[] = "There is no '%1' in expressions; use %2. %3";
constexpr char kAdvice[] = "There is no '%1' in expressions: %2";
constexpr char kClockOff[] = "'%1' is offered when the action says add%2='1'.";
constexpr char kNearNames[] = "'%1' is neither an input variable nor part of the language. Did you mean %2?";
constexpr char kNothingNear[] =
    "'%1' is neither an input variable nor part of the language, which 'kelvarin functions' lists. A text of that "
    "wording is written \"%1\".";
constexpr char kVariables[] = " The variables are: %1.";

// A name that the library did not find, or an unknown function's: the library trips over its bracket.
QString unknownName(const QString& failure, const QString& expression) {
  static const QRegularExpression token(QStringLiteral("(?:Undefined|Unexpected) token \"([^\"]+)\" found"));
  if (const auto found = token.match(failure); found.hasMatch()) {
    return found.captured(1);
  }
  static const QRegularExpression bracket(
      QStringLiteral("Unexpected parenthesis \"\\(\" found at position (\\d+)"));
  const auto found = bracket.match(failure);
  if (!found.hasMatch()) {
    return {};
  }
  static const QRegularExpression nameAtEnd(
      QStringLiteral("([\\w]+)\\s*$"), QRegularExpression::UseUnicodePropertiesOption);
  return nameAtEnd.match(expression.left(found.captured(1).toInt())).captured(1);
}

QString text(const char* pattern, const QString& name) { return QString::fromLatin1(pattern).arg(name); }

QString text(const char* pattern, const QString& name, const QString& more) {
  return QString::fromLatin1(pattern).arg(name, more);
}

// Part of the language, yet unknown to the back-end: only the clock's names need leave.
QString hintForKnownName(const QString& name) {
  const bool isClock = name == QLatin1String("_now") || name == QLatin1String("_nowS");
  return isClock ? text(kClockOff, name, name.mid(1).replace(0, 1, u'N')) : QString();
}

QString joinedNames(const std::vector<const LanguageEntry*>& entries) {
  QStringList names;
  for (const LanguageEntry* entry : entries) {
    names += QString::fromStdString(entry->name);
  }
  return names.join(QLatin1String(" or "));
}

}  // namespace

QString unknownNameHint(const QString& failure, const QString& expression, const QStringList& variables,
                        const QStringList& columns, const char* advice) {
  const QString name = unknownName(failure, expression);
  if (name.isEmpty() || !(name.front().isLetter() || name.front() == u'_')) {
    return {};
  }
  if (columns.contains(name) && !variables.contains(name)) {
    return text(kColumnWithoutVariable, name);
  }
  const LanguageMatch match = findInLanguage(name.toStdString());
  if (std::any_of(match.entries.begin(), match.entries.end(), [&](const LanguageEntry* entry) {
        return std::find(entry->names.begin(), entry->names.end(), name.toStdString()) != entry->names.end();
      })) {
    return hintForKnownName(name);
  }
  if (!match.entries.empty()) {
    const QString names = joinedNames(match.entries);
    return match.advice == nullptr ? text(kOtherName, name, names)
                                   : QString::fromLatin1(kOtherNameWithAdvice)
                                         .arg(name, names, QString::fromUtf8(match.advice));
  }
  if (match.advice != nullptr) {
    return text(kAdvice, name, QString::fromUtf8(match.advice));
  }
  QStringList known = variables + columns;
  for (const LanguageEntry& entry : languageEntries()) {
    for (const std::string& entryName : entry.names) {
      const QString entryText = QString::fromStdString(entryName);
      const bool isSign = !entryText.front().isLetter() && entryText.front() != u'_';
      known += isSign ? QStringList() : QStringList{entryText};
    }
  }
  known.removeDuplicates();
  known.removeAll(name);
  const QStringList near = nearestNames(name, known);
  if (!near.isEmpty()) {
    return text(kNearNames, name, near.join(QLatin1String(" or ")));
  }
  constexpr qsizetype kFew = 20;
  const bool areShown = !variables.isEmpty() && variables.size() <= kFew;
  return text(kNothingNear, name) +
         (areShown ? text(kVariables, variables.join(QLatin1String(", "))) : QString()) +
         (advice == nullptr ? QString() : u' ' + text(advice, name));
}

}  // namespace kelvarin
