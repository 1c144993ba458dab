#include "cli/terminal_text.h"

#include <algorithm>

namespace kelvarin {

namespace {

bool isHarmful(QChar c) {
  if (c == u'\n' || c == u'\t') {
    return false;
  }
  const char16_t code = c.unicode();
  const bool turnsDirection = (code >= 0x202A && code <= 0x202E) ||
                              (code >= 0x2066 && code <= 0x2069) || code == 0x200E ||
                              code == 0x200F || code == 0x061C;
  return c.category() == QChar::Other_Control || turnsDirection || code == 0x2028 ||
         code == 0x2029;
}

QString escaped(QChar c) {
  const char16_t code = c.unicode();
  return code < 0x100 ? QStringLiteral("\\x%1").arg(code, 2, 16, QChar(u'0'))
                      : QStringLiteral("\\u%1").arg(code, 4, 16, QChar(u'0'));
}

}  // namespace

std::string terminalText(const QString& text) {
  if (std::none_of(text.begin(), text.end(), isHarmful)) {
    return text.toStdString();
  }
  QString harmless;
  for (const QChar c : text) {
    harmless += isHarmful(c) ? escaped(c) : QString(c);
  }
  return harmless.toStdString();
}

}  // namespace kelvarin
