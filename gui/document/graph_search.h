// The texts of a graph that a user can search: names, types, expressions, settings and notes; and
// how they are replaced.
//
// Used by: gui/find. Threads: the user-interface thread.
#pragma once

#include <QRegularExpression>

#include "gui/document/graph_commands.h"

namespace kelvarin {

struct GraphSearch {
  QString text;
  bool isCaseSensitive = false;
  bool isWholeWord = false;  // with no letter, digit or _ beside it
  bool operator==(const GraphSearch&) const = default;
};

class TextPattern {
 public:
  explicit TextPattern(const GraphSearch& search);

  // Of the first occurrence; -1 for none, as for an empty search.
  qsizetype positionIn(const QString& text) const;
  bool isWhole(const QString& text) const;
  QString replaced(QString text, const QString& replacement) const;

 private:
  bool m_isEmpty;
  QRegularExpression m_pattern;
  QRegularExpression m_wholePattern;
};

struct SearchedText {
  enum class Kind { name, type, expression, column, setting, note };

  Kind kind = Kind::setting;
  ActionId action = kNoId;
  NoteId note = kNoId;
  QString where = {};   // the attribute or the element: "column", "OutputVar"
  QString output = {};  // of an expression: the output that it computes, where it has a name
  QString text = {};
  int index = -1;  // among the settings of its action; -1 for everything else
  bool operator==(const SearchedText&) const = default;
};

// In the order of the file. Settings that name columns count as any others here.
QList<SearchedText> textsOf(const EditedGraph& graph, ActionId action);
SearchedText textOf(const EditedGraph& graph, NoteId note);

// What differs between two states of the settings of one action.
struct ChangedText {
  QString where;
  QString before;
  QString now;
  bool operator==(const ChangedText&) const = default;
};
QList<ChangedText> changedTexts(const QString& elementBefore, const QString& elementNow);

struct ReplacedTexts {
  QList<ActionId> changed;
  QList<ActionId> refused;  // that cannot have such a setting, and keep theirs
  int noteCount = 0;
};

// All occurrences in these texts, as one step. Names of actions stay unique; types stay.
ReplacedTexts replaceInGraph(GraphCommands& commands, const GraphSearch& search,
                             const QString& replacement, const QList<SearchedText>& texts);

}  // namespace kelvarin
