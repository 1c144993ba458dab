#include "host/contract/parameter_expansion.h"

#include <QStringList>

namespace kelvarin {

ParameterExpansion::ParameterExpansion(const QString& text, const QMap<QString, QString>& values) {
  const QStringView source(text);
  qsizetype done = 0;
  for (;;) {
    const qsizetype start = source.indexOf(QLatin1String("${"), done);
    const qsizetype end = start < 0 ? -1 : source.indexOf(u'}', start);
    if (end < 0) {
      m_text += source.mid(done);
      return;
    }
    const QString name = source.mid(start + 2, end - start - 2).toString();
    m_text += source.mid(done, start - done);
    done = end + 1;
    const auto value = values.constFind(name);
    if (value == values.constEnd()) {
      m_text += source.mid(start, done - start);
      m_unknownName = m_unknownName.isNull() ? name : m_unknownName;
    } else if (m_text.size() + value->size() > kLongestText) {
      m_text += source.mid(start);
      m_isTooLong = true;
      return;
    } else {
      m_text += *value;
    }
  }
}

bool isFreeText(const QString& attributeName) {
  static const QStringList kFreeTexts{QStringLiteral("expression"), QStringLiteral("Expression"),
                                      QStringLiteral("notes"), QStringLiteral("comments")};
  return kFreeTexts.contains(attributeName);
}

}  // namespace kelvarin
