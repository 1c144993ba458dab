#include "expression/help/unknown_name_hint.h"

#include <algorithm>

#include "expression/help/language_entries.h"
#include "expression/help/messages.h"
#include "expression/tokens/expression_tokens.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

namespace {

// A name that the library did not find, or an unknown function's, whose bracket it reports.
QString unknownName(const ExpressionError& error, const QString& expression) {
  if (error.kind == ExpressionError::Kind::undefinedName) {
    return error.token;
  }
  if (error.kind != ExpressionError::Kind::unexpectedToken || error.token != u"(") {
    return {};
  }
  const ExpressionTokens tokens(expression);
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (isCall(tokens.all(), i) &&
        positionOf(tokens[tokenAfter(tokens.all(), i)]) == error.position) {
      return tokens.textAt(i).toString();
    }
  }
  return {};
}

// Part of the language, yet unknown to the back-end: only the clock's names need leave.
QString hintForKnownName(const QString& name) {
  return name == u"_now"    ? messages::clockIsOff(name, QStringLiteral("addNow"))
         : name == u"_nowS" ? messages::clockIsOff(name, QStringLiteral("addNowS"))
                            : QString();
}

QString joinedNames(const std::vector<const LanguageEntry*>& entries) {
  QStringList names;
  for (const LanguageEntry* entry : entries) {
    names += QString::fromStdString(entry->name);
  }
  return names.join(QLatin1String(" or "));
}

}  // namespace

QString unknownNameHint(const ExpressionError& error, const QString& expression,
                        const QStringList& variables, const QStringList& columns,
                        const char* advice, const char* languageList) {
  const QString name = unknownName(error, expression);
  if (name.isEmpty() || !(name.front().isLetter() || name.front() == u'_')) {
    return {};
  }
  if (columns.contains(name) && !variables.contains(name)) {
    return messages::columnWithoutVariable(name);
  }
  const LanguageMatch match = findInLanguage(name.toStdString());
  if (std::any_of(match.entries.begin(), match.entries.end(), [&](const LanguageEntry* entry) {
        return std::find(entry->names.begin(), entry->names.end(), name.toStdString()) !=
               entry->names.end();
      })) {
    return hintForKnownName(name);
  }
  if (!match.entries.empty()) {
    const QString names = joinedNames(match.entries);
    const QString more =
        match.advice == nullptr ? QString() : u' ' + QString::fromUtf8(match.advice);
    return messages::otherName(name, names) + more;
  }
  if (match.advice != nullptr) {
    return messages::otherWriting(name, QString::fromUtf8(match.advice));
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
    return messages::nearNames(name, near.join(QLatin1String(" or ")));
  }
  constexpr qsizetype kFew = 20;
  const bool areShown = !variables.isEmpty() && variables.size() <= kFew;
  return messages::nothingNear(name, languageList) +
         (areShown ? messages::variables(variables.join(QLatin1String(", "))) : QString()) +
         (advice == nullptr ? QString() : u' ' + QString::fromLatin1(advice).arg(name));
}

}  // namespace kelvarin
