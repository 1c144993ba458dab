#include "host/contract/shown_value.h"

#include <cmath>

#include <QCoreApplication>

#include "host/contract/column_bytes.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

using Kind = ShownValue::Kind;

constexpr qsizetype kLongestLine = 300;

// What one line shows of a character that is none: line ends, tabs and blanks at the ends.
QChar marked(QChar c) {
  switch (c.unicode()) {
    case u'\n':
      return u'\u21B5';
    case u'\t':
      return u'\u2192';
    case u'\u00A0':
    case u' ':
      return u'\u00B7';
    default:
      return c.isPrint() || c.isSurrogate() ? c : u'\u2423';
  }
}

QString oneLine(const QString& text) {
  QString line = text.size() > kLongestLine ? text.first(kLongestLine) + u'\u2026' : text;
  for (QChar& c : line) {
    c = c == u' ' ? c : marked(c);
  }
  for (qsizetype i = 0; i < line.size() && line[i] == u' '; ++i) {
    line[i] = marked(line[i]);
  }
  for (qsizetype i = line.size(); i > 0 && line[i - 1] == u' '; --i) {
    line[i - 1] = marked(line[i - 1]);
  }
  return line;
}

}  // namespace

ShownValue shownNull() {
  return {Kind::null, QStringLiteral("null"), {}};
}

ShownValue shownText(const QString& text) {
  if (text.isEmpty()) {
    return {Kind::emptyText, QCoreApplication::translate("ShownValue", "(empty)"), text};
  }
  return {Kind::text, oneLine(text), text};
}

ShownValue shownNumber(double number) {
  if (isNullNumber(number)) {
    return shownNull();
  }
  if (std::isnan(number)) {
    return {Kind::notANumber, QStringLiteral("NaN"), QStringLiteral("nan")};
  }
  const QString text = shortestText(number);
  return {Kind::number, text, text};
}

ShownValue shownBytes(MetaTypeColumn meta, const unsigned char* bytes) {
  switch (meta) {
    case MetaTypeColumn::number:
      return shownNumber(numberFromBytes(bytes));
    case MetaTypeColumn::key: {
      const std::uint32_t key = keyFromBytes(bytes);
      return shownNumber(isNullKey(key) ? kNullNumber : key);
    }
    default:
      break;
  }
  if (isNullText(bytes)) {
    return shownNull();
  }
  const std::string_view text = textFromBytes(bytes);
  return shownText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

}  // namespace kelvarin
