// One search through a graph, done in pieces that each take far less than a key may take.
//
// Used by: find_model.h. Threads: the user-interface thread; a change of the graph ends the search.
#pragma once

#include <memory>
#include <vector>

#include "gui/document/column_rename.h"
#include "gui/find/searched_texts.h"

namespace kelvarin {

struct FindQuery {
  enum class Task {
    find,
    replaceTexts,
    renameColumn,  // that is called exactly as what is searched, in all actions that use it
  };

  GraphSearch search;
  Task task = Task::find;
  QString replacement;
  bool operator==(const FindQuery&) const = default;
};

struct FoundText {
  SearchedText text;
  qsizetype position = 0;
  QString now;            // what a replacement makes of it; null where it stays
  bool isChosen = false;  // to be replaced
};

class FindJob {
 public:
  FindJob(SearchedTexts& texts, const FindQuery& query);
  ~FindJob();

  // Does a piece of the work; false when nothing is left.
  bool advance();
  // What was found since the last call, in the order of the file, notes last.
  std::vector<FoundText> take();
  // When all is done: what is to be renamed, of a search for a column.
  const std::vector<std::unique_ptr<ColumnRename>>& renames() const { return m_renames; }

 private:
  void look(ActionId action);
  void lookAtNotes();
  void take(const SearchedText& text);
  bool renameNext();
  void takeRename();

  SearchedTexts& m_texts;
  const FindQuery m_query;
  const TextPattern m_pattern;
  const QList<ActionId> m_actions;
  qsizetype m_next = 0;
  bool m_hasNotes = false;
  std::vector<FoundText> m_found;
  std::vector<SearchedText> m_candidates;  // columns of the searched name
  std::size_t m_nextCandidate = 0;
  std::vector<std::unique_ptr<ColumnRename>> m_renames;
  bool m_isRenaming = false;  // the last one of m_renames is not at its end
};

}  // namespace kelvarin

Q_DECLARE_METATYPE(kelvarin::FoundText)
