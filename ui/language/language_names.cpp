#include "ui/language/language_names.h"

#include "expression/evaluator/constants.h"
#include "expression/evaluator/expression_set.h"
#include "ui/language/outside_sources.h"

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

QSet<QString> namesNotOffered(const Formula& formula) {
  QSet<QString> names{rowNumberName()};
  for (auto name = languageNames().begin(); name != languageNames().end(); ++name) {
    if (isCurrentTime(NamedConstant{.name = name.key(), .text = {}})) {
      names.insert(name.key());
    }
  }
  ExpressionSet expressions;
  expressions.configure(formula.options, {}, nullptr, false);
  (void)expressions.prepareDateContext({});
  names.subtract(namesOf(expressions.variables()));
  for (const NamedConstant& constant : expressions.constants()) {
    names.remove(constant.name);
  }
  return names;
}

}  // namespace kelvarin
