#include "gui/find/find_job.h"

#include <algorithm>
#include <utility>

namespace kelvarin {

namespace {

bool canBeReplaced(const SearchedText& text) {
  return text.kind == SearchedText::Kind::name || text.kind == SearchedText::Kind::note ||
         text.index >= 0;
}

}  // namespace

FindJob::FindJob(SearchedTexts& texts, const FindQuery& query)
    : m_texts(texts),
      m_query(query),
      m_pattern(query.search),
      m_actions(query.search.text.isEmpty() ? QList<ActionId>() : texts.graph().actions()) {}

FindJob::~FindJob() = default;

bool FindJob::advance() {
  if (m_next < m_actions.size()) {
    look(m_actions[m_next++]);
    return true;
  }
  if (m_query.task == FindQuery::Task::renameColumn) {
    return renameNext();
  }
  if (!std::exchange(m_hasNotes, true)) {
    lookAtNotes();
    return true;
  }
  return false;
}

std::vector<FoundText> FindJob::take() {
  return std::exchange(m_found, {});
}

void FindJob::look(ActionId action) {
  for (const SearchedText& text : m_texts.of(action)) {
    take(text);
  }
}

void FindJob::lookAtNotes() {
  for (const NoteId note : m_texts.graph().notes()) {
    take(textOf(m_texts.graph(), note));
  }
}

void FindJob::take(const SearchedText& text) {
  if (m_query.task == FindQuery::Task::renameColumn) {
    if (text.kind == SearchedText::Kind::column && m_pattern.isWhole(text.text)) {
      m_candidates.push_back(text);
    }
    return;
  }
  const qsizetype position = m_pattern.positionIn(text.text);
  if (position < 0) {
    return;
  }
  const bool isReplaced = m_query.task == FindQuery::Task::replaceTexts && canBeReplaced(text);
  m_found.push_back({text, position,
                     isReplaced ? m_pattern.replaced(text.text, m_query.replacement) : QString(),
                     isReplaced});
}

// A column is followed once, from wherever it was found first.
bool FindJob::renameNext() {
  if (m_isRenaming) {
    m_isRenaming = m_renames.back()->advance();
    if (!m_isRenaming) {
      takeRename();
    }
    return true;
  }
  while (m_nextCandidate < m_candidates.size()) {
    const SearchedText& text = m_candidates[m_nextCandidate++];
    const bool isFollowed = std::ranges::any_of(m_renames, [&text](const auto& rename) {
      return rename->oldName() == text.text && rename->hasVisited(text.action);
    });
    if (isFollowed) {
      continue;
    }
    m_renames.push_back(std::make_unique<ColumnRename>(
        m_texts.graph(), text.action, text.text, m_query.replacement,
        [this, column = text.text](ActionId at) { return m_texts.mayHaveColumn(at, column); }));
    m_isRenaming = true;
    return true;
  }
  return false;
}

void FindJob::takeRename() {
  const ColumnRename& rename = *m_renames.back();
  for (const ColumnRename::Change& change : rename.changes()) {
    for (const ChangedText& text : changedTexts(change.elementBefore, change.element)) {
      m_found.push_back({{.kind = SearchedText::Kind::column,
                          .action = change.action,
                          .where = text.where,
                          .text = text.before},
                         0,
                         text.now,
                         true});
    }
  }
}

}  // namespace kelvarin
