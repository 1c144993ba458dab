#include "expression/functions/text_bodies.h"

#include <algorithm>

#include <QStringView>

namespace kelvarin {

namespace {

bool isHalfPair(QStringView text, qsizetype i) {
  if (text[i].isHighSurrogate()) {
    return i + 1 == text.size() || !text[i + 1].isLowSurrogate();
  }
  return text[i].isLowSurrogate() && (i == 0 || !text[i - 1].isHighSurrogate());
}

// Half a pair cannot be stored, and the conversion to UTF-8 would make a question mark of it.
QString withWholePairs(const QString& text) {
  QString whole = text;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i].isSurrogate() && isHalfPair(text, i)) {
      whole[i] = QChar::ReplacementCharacter;
    }
  }
  return whole;
}

bool hasSurrogate(const QString& text) {
  return std::any_of(text.cbegin(), text.cend(), [](QChar unit) { return unit.isSurrogate(); });
}

QByteArray utf8Of(const QString& text) {
  return (hasSurrogate(text) ? withWholePairs(text) : text).toUtf8();
}

}  // namespace

void setResult(FunctionResult& result, double number) {
  result.setNumber(number);
}

void setResult(FunctionResult& result, bool isTrue) {
  result.setNumber(isTrue ? 1.0 : 0.0);
}

void setResult(FunctionResult& result, const QString& text) {
  if (text.isNull()) {
    result.setNullText();
    return;
  }
  const QByteArray bytes = utf8Of(text);
  result.setText({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

void setResult(FunctionResult& result, const ColumnText& text) {
  if (text.isNull()) {
    result.setNullText();
  } else {
    result.setText(text.view());
  }
}

ColumnText textIn(TextArena& arena, const QString& text) {
  if (text.isNull()) {
    return {};
  }
  const QByteArray bytes = utf8Of(text);
  return ColumnText(arena.copy({bytes.constData(), static_cast<std::size_t>(bytes.size())}));
}

}  // namespace kelvarin
