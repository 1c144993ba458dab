#include "cli/calc/named_expression.h"

#include "cli/calc/messages.h"
#include "cli/column_type_name.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

// The parts of an argument, as far as it has them.
struct Parts {
  QString name;
  QStringView type;  // null: there is no colon
  QStringView expression;
  bool hasEqualsSign = false;
};

QStringView withoutBlanksBefore(QStringView text) {
  while (!text.isEmpty() && text.front().isSpace()) {
    text = text.sliced(1);
  }
  return text;
}

QStringView takeName(QStringView& text, QString& name) {
  if (const auto quoted = quotedNameAtStart(text)) {
    name = quoted->name;
    return text.sliced(quoted->size);
  }
  const auto size = static_cast<qsizetype>(sizeOfName(unitsOf(text)));
  name = text.first(size).toString();
  return text.sliced(size);
}

Parts partsOf(QStringView argument) {
  Parts parts;
  QStringView rest = withoutBlanksBefore(takeName(argument, parts.name));
  if (parts.name.isEmpty()) {
    return parts;
  }
  if (rest.startsWith(u':')) {
    rest = withoutBlanksBefore(rest.sliced(1));
    const auto size = static_cast<qsizetype>(sizeOfName(unitsOf(rest)));
    parts.type = rest.first(size);
    rest = withoutBlanksBefore(rest.sliced(size));
  }
  parts.hasEqualsSign = rest.startsWith(u'=') && !rest.startsWith(u"==");
  parts.expression = parts.hasEqualsSign ? rest.sliced(1) : QStringView();
  return parts;
}

}  // namespace

std::optional<QuotedName> quotedNameAtStart(QStringView text) {
  if (!text.startsWith(kNameQuote)) {
    return std::nullopt;
  }
  QuotedName quoted;
  for (qsizetype i = 1; i < text.size(); ++i) {
    if (text[i] == kNameQuote && (i + 1 == text.size() || text[i + 1] != kNameQuote)) {
      quoted.size = i + 1;
      return quoted.name.isEmpty() ? std::nullopt : std::optional(quoted);
    }
    quoted.name += text[i];
    i += text[i] == kNameQuote ? 1 : 0;
  }
  return std::nullopt;
}

QString inNameQuotes(const QString& name) {
  const QString quote = QChar(kNameQuote);
  return quote + QString(name).replace(quote, quote + quote) + quote;
}

bool isNamedExpression(const QString& argument) {
  return partsOf(argument).hasEqualsSign;
}

Result<NamedExpression, QString> namedExpressionOf(const QString& argument) {
  const Parts parts = partsOf(argument);
  NamedExpression named{parts.name, std::nullopt, parts.expression.toString()};
  if (!parts.type.isNull()) {
    named.type = columnTypeNamed(parts.type);
    if (!named.type) {
      return Failure{calc_messages::unknownType(parts.name, parts.type.toString())};
    }
  }
  if (named.expression.trimmed().isEmpty()) {
    return Failure{calc_messages::withoutExpression(parts.name)};
  }
  return named;
}

}  // namespace kelvarin
