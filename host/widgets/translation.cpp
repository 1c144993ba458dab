#include "host/widgets/translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace kelvarin {

Translation::Translation(const QStringList& languages) : m_language(QStringLiteral("en")) {
  for (const QString& name : languages) {
    const QString language = QLocale(name).name().section(u'_', 0, 0);
    const bool isSource = language == u"en" || language == u"C";
    if (isSource || load(language)) {
      m_language = isSource ? m_language : language;
      return;
    }
  }
}

bool Translation::load(const QString& language) {
  if (!m_texts.load(QStringLiteral(":/translations/kelvarin_%1.qm").arg(language))) {
    return false;
  }
  QCoreApplication::installTranslator(&m_texts);
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (m_textsOfQt.load(QStringLiteral("qtbase_") + language, folder)) {
    QCoreApplication::installTranslator(&m_textsOfQt);
  }
  return true;
}

Translation::~Translation() {
  QCoreApplication::removeTranslator(&m_textsOfQt);
  QCoreApplication::removeTranslator(&m_texts);
}

}  // namespace kelvarin
