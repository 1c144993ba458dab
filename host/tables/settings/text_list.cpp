#include "host/tables/settings/text_list.h"

namespace kelvarin {

QStringList textsOfList(const QString& list, QChar sign) {
  if (list.isEmpty()) {
    return {};
  }
  QStringList texts{QString()};
  for (qsizetype i = 0; i < list.size(); ++i) {
    const bool isEscape =
        list[i] == u'\\' && i + 1 < list.size() && (list[i + 1] == sign || list[i + 1] == u'\\');
    if (list[i] == sign) {
      texts += QString();
    } else {
      i += isEscape ? 1 : 0;
      texts.last() += list[i];
    }
  }
  return texts;
}

QString listOfTexts(const QStringList& texts, QChar sign) {
  QStringList escaped;
  for (QString text : texts) {
    escaped += text.replace(u'\\', QStringLiteral("\\\\")).replace(sign, QString(u'\\') + sign);
  }
  return escaped.join(sign);
}

}  // namespace kelvarin
