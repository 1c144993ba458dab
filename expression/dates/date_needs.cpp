#include "expression/dates/date_needs.h"

#include <QStringView>

namespace kelvarin {

namespace {

struct DateFunction {
  const char* name;
  bool needsReference;
  bool needsFormat;
};

constexpr DateFunction kDateFunctions[] = {
    {"toET", true, true},
    {"toETF", true, true},
    {"toDate", true, true},
    {"etAdd", true, false},
    {"etDiffInMonth", true, false},
    {"etDiffInYear", true, false},
    {"etWeekNumber", true, false},
    {"etDayOfWeek", true, false},
    {"etFirstDayOfYear", true, false},
    {"dateAdd", false, true},
    {"dateAddS", false, true},
    {"datePrint", false, true},
    {"dateDiffInMonth", false, true},
    {"dateDiffInYear", false, true},
    {"dateDiffInDay", false, true},
    {"dateDiffInSecond", false, true},
    {"dateTimeLT", false, true},
    {"dateTimeLE", false, true},
    {"dateLT", false, true},
    {"dateLE", false, true},
    {"dateWeekNumber", false, true},
    {"dateDayOfWeek", false, true},
    {"dateFirstDayOfYear", false, true},
    {"dateEOM", false, true},
    {"dateEOQ", false, true},
};

bool isNameCharacter(QChar c) {
  return c.isLetterOrNumber() || c == u'_';
}

// The index behind a text literal that starts at `quote`.
qsizetype endOfLiteral(QStringView text, qsizetype quote) {
  qsizetype i = quote + 1;
  while (i < text.size() && text[i] != u'"') {
    i += text[i] == u'\\' ? 2 : 1;
  }
  return i + 1;
}

void addNeedsOf(QStringView name, DateNeeds& needs) {
  for (const DateFunction& function : kDateFunctions) {
    if (name == QLatin1String(function.name)) {
      needs.reference |= function.needsReference;
      needs.format |= function.needsFormat;
      return;
    }
  }
}

void addNeedsOfExpression(QStringView text, DateNeeds& needs) {
  qsizetype i = 0;
  while (i < text.size()) {
    if (text[i] == u'"') {
      i = endOfLiteral(text, i);
      continue;
    }
    const qsizetype start = i;
    while (i < text.size() && isNameCharacter(text[i])) {
      ++i;
    }
    if (i == start) {
      ++i;
      continue;
    }
    const QStringView rest = text.sliced(i).trimmed();
    if (rest.startsWith(u'(')) {
      addNeedsOf(text.sliced(start, i - start), needs);
    }
  }
}

}  // namespace

DateNeeds dateNeedsOf(const QStringList& expressions) {
  DateNeeds needs;
  for (const QString& expression : expressions) {
    addNeedsOfExpression(expression, needs);
  }
  return needs;
}

}  // namespace kelvarin
