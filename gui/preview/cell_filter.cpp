#include "gui/preview/cell_filter.h"

#include <cmath>

#include <QCoreApplication>

#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

bool isAnyOf(QStringView text, const QString& first, const QString& second) {
  return text.compare(first, Qt::CaseInsensitive) == 0 ||
         text.compare(second, Qt::CaseInsensitive) == 0;
}

QString fromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

Result<CellFilter, QString> CellFilter::parse(const QString& text, MetaTypeColumn type) {
  struct Operator {
    QLatin1String sign;
    Test test;
  };
  // A longer sign stands before those that it begins with.
  static constexpr Operator kOperators[] = {
      {QLatin1String("!="), Test::differ},    {QLatin1String("<>"), Test::differ},
      {QLatin1String("<="), Test::lessEqual}, {QLatin1String(">="), Test::greaterEqual},
      {QLatin1String("=="), Test::equal},     {QLatin1String("="), Test::equal},
      {QLatin1String("<"), Test::less},       {QLatin1String(">"), Test::greater}};

  CellFilter filter(type);
  QStringView rest = QStringView(text).trimmed();
  const QString null = QStringLiteral("null");
  if (isAnyOf(rest, null, QStringLiteral("= null"))) {
    filter.m_state = State::missing;
    return filter;
  }
  if (isAnyOf(rest, QStringLiteral("!null"), QStringLiteral("!= null"))) {
    filter.m_state = State::present;
    return filter;
  }
  const bool isText = fixedSizeOf(type) == 0;
  if (!isText && isAnyOf(rest, QStringLiteral("nan"), QStringLiteral("= nan"))) {
    filter.m_state = State::notANumber;
    return filter;
  }
  if (isText && isAnyOf(rest, QStringLiteral("empty"), QStringLiteral("\"\""))) {
    filter.m_state = State::emptyText;
    return filter;
  }
  filter.m_test = isText ? Test::contains : Test::equal;
  for (const Operator& candidate : kOperators) {
    if (rest.startsWith(candidate.sign)) {
      filter.m_test = candidate.test;
      rest = rest.sliced(candidate.sign.size()).trimmed();
      break;
    }
  }
  if (filter.setOperand(rest)) {
    return filter;
  }
  return Failure{QCoreApplication::translate(
                     "CellFilter",
                     "'%1' is no number. Write a number, a comparison such as > 5, a range such "
                     "as 1..5, null or nan.")
                     .arg(rest)};
}

bool CellFilter::setOperand(QStringView text) {
  if (fixedSizeOf(m_type) == 0) {
    const bool isQuoted = text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"');
    m_text = (isQuoted ? text.sliced(1, text.size() - 2) : text).toString();
    m_bytes = m_text.toStdString();
    return true;
  }
  bool isNumber = false;
  bool isLastNumber = true;
  const qsizetype dots = text.indexOf(QLatin1String(".."));
  if (dots > 0 && m_test == Test::equal) {
    m_test = Test::between;
    m_number = text.first(dots).trimmed().toDouble(&isNumber);
    m_last = text.sliced(dots + 2).trimmed().toDouble(&isLastNumber);
  } else {
    m_number = text.toDouble(&isNumber);
  }
  return isNumber && isLastNumber;
}

bool CellFilter::accepts(const unsigned char* bytes) const {
  if (m_state != State::any) {
    return acceptsState(bytes);
  }
  switch (m_type) {
    case MetaTypeColumn::number: {
      const double number = numberFromBytes(bytes);
      return !isNullNumber(number) && acceptsNumber(number);
    }
    case MetaTypeColumn::key: {
      const std::uint32_t key = keyFromBytes(bytes);
      return !isNullKey(key) && acceptsNumber(key);
    }
    default:
      return !isNullText(bytes) && acceptsText(textFromBytes(bytes));
  }
}

bool CellFilter::acceptsState(const unsigned char* bytes) const {
  bool isMissing = false;
  bool isNaN = false;
  bool isEmpty = false;
  if (m_type == MetaTypeColumn::number) {
    const double number = numberFromBytes(bytes);
    isMissing = isNullNumber(number);
    isNaN = !isMissing && std::isnan(number);
  } else if (m_type == MetaTypeColumn::key) {
    isMissing = isNullKey(keyFromBytes(bytes));
  } else {
    isMissing = isNullText(bytes);
    isEmpty = !isMissing && textFromBytes(bytes).empty();
  }
  switch (m_state) {
    case State::missing:
      return isMissing;
    case State::present:
      return !isMissing;
    case State::notANumber:
      return isNaN;
    default:
      return isEmpty;
  }
}

bool CellFilter::acceptsNumber(double number) const {
  switch (m_test) {
    case Test::differ:
      return number != m_number;
    case Test::less:
      return number < m_number;
    case Test::lessEqual:
      return number <= m_number;
    case Test::greater:
      return number > m_number;
    case Test::greaterEqual:
      return number >= m_number;
    case Test::between:
      return number >= m_number && number <= m_last;
    default:
      return number == m_number;
  }
}

bool CellFilter::acceptsText(std::string_view text) const {
  switch (m_test) {
    case Test::equal:
      return text == m_bytes;
    case Test::differ:
      return text != m_bytes;
    case Test::less:
      return text < m_bytes;
    case Test::lessEqual:
      return text <= m_bytes;
    case Test::greater:
      return text > m_bytes;
    case Test::greaterEqual:
      return text >= m_bytes;
    default:
      return fromUtf8(text).contains(m_text, Qt::CaseInsensitive);
  }
}

}  // namespace kelvarin
