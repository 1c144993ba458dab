// Finds entries of the language by what people type: names, words of the comments, and names from
// spreadsheets and databases.
//
// Used by the help browser.
// Threads: any; read-only once made.
#pragma once

#include <functional>
#include <vector>

#include <QString>
#include <QStringList>

#include "expression/help/language_entries.h"

namespace kelvarin {

struct HelpFinds {
  std::vector<const LanguageEntry*> entries;  // the best first
  QString foreignName;                        // what was looked for, if it is none of this language
  QString advice;                             // how to write what the foreign name does
  bool areGuesses = false;                    // nothing fits; these names look alike
};

class HelpSearch {
 public:
  // The translation of a text of the help; comments are found in both languages.
  using Translate = std::function<QString(const char*)>;

  explicit HelpSearch(const Translate& translate);

  // Nothing for blanks.
  HelpFinds find(const QString& query) const;

 private:
  // What an entry is found by, in lower case.
  struct Index {
    const LanguageEntry* entry;
    QStringList names;
    QStringList nameWords;
    QStringList foreignNames;
    QStringList foreignWords;
    QStringList commentWords;
    QStringList noteWords;
  };

  static int scoreOf(const Index& index, const QString& word);
  std::vector<const LanguageEntry*> ranked(const QStringList& words) const;
  std::vector<const LanguageEntry*> looksLike(const QString& query) const;

  std::vector<Index> m_indices;
};

}  // namespace kelvarin
