#include "gui/preview/row_condition.h"

#include <algorithm>
#include <cmath>

#include <QStringList>

#include "host/contract/column_bytes.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

// The row's number and the words of the language cannot be columns there.
bool canBeName(const QString& name) {
  static const QStringList kTaken{QStringLiteral("_n"), QStringLiteral("and"),
                                  QStringLiteral("or")};
  const auto isNamed = [](QChar c) {
    return c == u'_' || c.unicode() >= 0x80 || (c.unicode() < 0x80 && c.isLetterOrNumber());
  };
  return !name.isEmpty() && !name.front().isDigit() && !kTaken.contains(name) &&
         std::all_of(name.begin(), name.end(), isNamed);
}

QString literalOf(std::string_view text) {
  QString literal = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  literal.replace(u'\\', QLatin1String("\\\\"));
  literal.replace(u'"', QLatin1String("\\\""));
  literal.replace(u'\n', QLatin1String("\\n"));
  literal.replace(u'\r', QLatin1String("\\r"));
  literal.replace(u'\t', QLatin1String("\\t"));
  return u'"' + literal + u'"';
}

QString testOfNumber(const QString& name, double number) {
  if (isNullNumber(number)) {
    return QStringLiteral("isNull(%1)").arg(name);
  }
  if (std::isnan(number)) {  // of which there are several; isNan() knows one
    return QStringLiteral("isNull(%1) == 0 && isNull(nanvl(%1, _null))").arg(name);
  }
  if (std::isinf(number)) {
    return QStringLiteral("%1 == %2")
        .arg(name, number > 0 ? QStringLiteral("_infinity") : QStringLiteral("-_infinity"));
  }
  return QStringLiteral("%1 == %2").arg(name, shortestText(number));
}

QString testOf(const QString& name, MetaTypeColumn type, const std::vector<unsigned char>& value) {
  const unsigned char* bytes = value.empty() ? nullptr : value.data();
  if (type == MetaTypeColumn::number) {
    return testOfNumber(name, numberFromBytes(bytes));
  }
  if (type == MetaTypeColumn::key) {
    const std::uint32_t key = keyFromBytes(bytes);
    return testOfNumber(name, isNullKey(key) ? kNullNumber : key);
  }
  return isNullText(bytes) ? QStringLiteral("isNull(%1)").arg(name)
                           : name + QLatin1String(" == ") + literalOf(textFromBytes(bytes));
}

}  // namespace

RowCondition conditionFor(const std::vector<ChosenValues>& chosen) {
  RowCondition condition;
  QStringList tests;
  const auto isTaken = [&](const QString& name) {
    return std::any_of(chosen.begin(), chosen.end(),
                       [&](const ChosenValues& other) { return other.column.name == name; });
  };
  int number = 0;
  for (const ChosenValues& values : chosen) {
    QString name = values.column.name;
    while (!canBeName(name)) {
      const QString next = QStringLiteral("v%1").arg(++number);
      name = isTaken(next) ? QString() : next;
    }
    condition.variables.push_back({values.column.name, name, values.column.meta});
    QStringList alternatives;
    for (const std::vector<unsigned char>& value : values.values) {
      const QString test = testOf(name, values.column.meta, value);
      if (!alternatives.contains(test)) {
        alternatives += test;
      }
    }
    const QString joined = alternatives.join(QLatin1String(" || "));
    tests += alternatives.size() > 1 && chosen.size() > 1 ? u'(' + joined + u')' : joined;
  }
  condition.expression = tests.join(QLatin1String(" && "));
  return condition;
}

RowCondition::Variable variableFor(const PinColumns::Column& column) {
  return {column.name, canBeName(column.name) ? column.name : QStringLiteral("value"), column.meta};
}

}  // namespace kelvarin
