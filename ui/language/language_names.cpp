#include "ui/language/language_names.h"

namespace kelvarin {

namespace {

QHash<QString, const LanguageEntry*> namesOfLanguage() {
  QHash<QString, const LanguageEntry*> names;
  for (const LanguageEntry& entry : languageEntries()) {
    for (const std::string& name : entry.names) {
      const QString text = QString::fromStdString(name);
      const bool isName = text.front().isLetter() || text.front() == u'_';
      if (isName && !names.contains(text)) {
        names.insert(text, &entry);
      }
    }
  }
  return names;
}

}  // namespace

const QHash<QString, const LanguageEntry*>& languageNames() {
  static const QHash<QString, const LanguageEntry*> names = namesOfLanguage();
  return names;
}

}  // namespace kelvarin
