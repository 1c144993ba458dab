#include "expression/backends/string_guard.h"

#include <algorithm>

#include <QStringView>

#include "expression/backends/expression_text.h"
#include "expression/errors/messages.h"

namespace kelvarin {

namespace {

constexpr qsizetype kMaximumBytes = 10000;
constexpr int kMaximumBrackets = 500;
constexpr int kMaximumBraces = 50;

ExpressionError errorAt(qsizetype position, const QString& message, const QString& token = {}) {
  return {message, static_cast<int>(position), token};
}

bool isShortcut(QStringView text, qsizetype i) {
  const bool isPair = i + 1 < text.size() && text[i] == text[i + 1];
  return isPair && (text[i] == u'&' || text[i] == u'|');
}

bool endsOperand(QChar c) {
  constexpr QStringView ends = u")]}\"!'._";
  return ends.contains(c) || c.isLetterOrNumber() || c.unicode() >= 0x80;
}

// One pass over the text outside literals.
class Scan {
 public:
  explicit Scan(QStringView text) : m_text(text) {}

  std::optional<ExpressionError> run(QStringView userText) {
    qsizetype i = 0;
    while (i < m_text.size() && m_text[i] != u'#') {  // a comment runs to the end
      const QChar c = m_text[i];
      if (c.isSpace()) {
        ++i;
        continue;
      }
      if (isShortcut(m_text, i)) {
        if (m_isOperandMissing) {
          return operandMissing(i, userText);
        }
        m_isOperandMissing = true;
        i += 2;
        continue;
      }
      if (!nest(c)) {
        const int limit = m_braces > kMaximumBraces ? kMaximumBraces : kMaximumBrackets;
        return errorAt(i, QString::fromUtf8(messages::kTooDeep).arg(limit));
      }
      i = c == u'"' ? endOfTextLiteral(m_text, i) : i + 1;
      m_isOperandMissing = !endsOperand(c);
    }
    return std::nullopt;
  }

 private:
  bool nest(QChar c) {
    m_brackets += c == u'(' || c == u'[' ? 1 : 0;
    m_brackets -= c == u')' || c == u']' ? 1 : 0;
    m_braces += c == u'{' ? 1 : 0;
    m_braces -= c == u'}' ? 1 : 0;
    return m_brackets <= kMaximumBrackets && m_braces <= kMaximumBraces;
  }

  static ExpressionError operandMissing(qsizetype position, QStringView userText) {
    qsizetype end = position + 2;
    while (end < userText.size() && userText[position].isLetter() && userText[end].isLetter()) {
      ++end;
    }
    const QString token = userText.sliced(position, end - position).toString();
    return errorAt(
        position,
        QString::fromUtf8(messages::kOperandMissing).arg(token, QString::number(position)), token);
  }

  QStringView m_text;
  bool m_isOperandMissing = true;
  int m_brackets = 0;
  int m_braces = 0;
};

}  // namespace

std::optional<ExpressionError> hazardIn(const QString& expression, const QString& userText) {
  if (expression.toUtf8().size() > kMaximumBytes) {
    return errorAt(-1, QString::fromUtf8(messages::kTooLong).arg(expression.size()));
  }
  const qsizetype nul = expression.indexOf(QChar(0));
  if (nul >= 0) {
    return errorAt(nul, QString::fromUtf8(messages::kNulCharacter));
  }
  return Scan(expression).run(userText);
}

}  // namespace kelvarin
