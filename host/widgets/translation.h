// The language of all windows: this system's texts, and those of Qt where it has them installed.
//
// Made by whoever makes the QApplication, before the first widget; lives as long as that.
// Threads: the user-interface thread.
#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

#include "base/export.h"

namespace kelvarin {

class KELVARIN_CORE Translation {
 public:
  // The first of the languages that the texts exist in; they are written in English. By default
  // those that the user has set: LANGUAGE, LC_ALL, LC_MESSAGES or LANG.
  explicit Translation(const QStringList& languages = QLocale::system().uiLanguages());
  ~Translation();
  Translation(const Translation&) = delete;
  Translation& operator=(const Translation&) = delete;

  // As "de".
  const QString& language() const { return m_language; }

 private:
  bool load(const QString& language);

  QString m_language;
  QTranslator m_texts;
  QTranslator m_textsOfQt;
};

}  // namespace kelvarin
