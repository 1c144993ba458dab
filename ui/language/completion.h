// What the word that is being typed may become: variables, columns, functions, constants, graph
// parameters, and our names for those of other languages.
//
// Made anew when the variables or columns of the formula change; asked at each key.
// Threads: one.
#pragma once

#include <vector>

#include <QHash>
#include <QString>

#include "ui/language/formula.h"

namespace kelvarin {

struct Candidate {
  enum class Kind { variable, column, function, constant, parameter, word };

  Kind kind = Kind::variable;
  QString name;
  QString insertion;     // functions with their brackets
  qsizetype cursor = 0;  // behind the insertion, counted from its start
  QString signature;     // of a function, else its name
  QString comment;       // what it is or does; may be empty
  QString type;          // in words; may be empty
  QString columnToBind;  // choosing it makes an input variable of this column; may be empty
  QString foreignName;   // the name of another language that was typed; may be empty
  double score = 0.0;    // how well it fits
};

struct CompletionList {
  // What is replaced.
  qsizetype start = 0;
  qsizetype size = 0;
  QString word;
  std::vector<Candidate> candidates;  // the best one first
};

class Completion {
 public:
  static constexpr qsizetype kAutomaticFrom = 2;  // letters
  static constexpr std::size_t kMaxCandidates = 100;

  Completion() = default;
  explicit Completion(const Formula& formula);

  // How often each name was used; ranks those that fit alike.
  void setUses(const QHash<QString, int>& uses);

  // Empty inside texts and numbers. `isAsked`: the user wants a list, however short the word.
  CompletionList at(const QString& expression, qsizetype cursor, bool isAsked) const;

 private:
  struct Entry {
    Candidate candidate;
    QString folded;  // the name in lower case
    QString humps;   // the first letters of its parts, in lower case
    int uses = 0;
  };
  struct Match {
    const Entry* entry = nullptr;
    double score = 0.0;
    QString foreignName;
  };

  void add(Candidate candidate);
  void addVariables(const Formula& formula);
  void addColumns(const Formula& formula);
  void addParameters(const Formula& formula);
  void addLanguage(const Formula& formula);
  static double scoreOf(const Entry& entry, double fitting);
  std::vector<Match> matchesOf(const QString& word) const;
  void addForeign(const QString& folded, std::vector<Match>& matches) const;
  const Entry* languageEntryNamed(const QString& name) const;
  Candidate candidateOf(const Match& match, bool isCalled) const;

  std::vector<InputVariable> m_variables;
  QHash<QString, MetaTypeColumn> m_metaOfColumn;  // of those that are no variables
  std::vector<Entry> m_entries;
};

}  // namespace kelvarin
