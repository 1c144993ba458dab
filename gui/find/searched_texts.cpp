#include "gui/find/searched_texts.h"

#include <utility>

namespace kelvarin {

SearchedTexts::SearchedTexts(EditedGraph& graph, QObject* parent)
    : QObject(parent), m_graph(graph) {
  connect(&graph, &EditedGraph::loaded, this, &SearchedTexts::forgetColumns);
  connect(&graph, &EditedGraph::actionAdded, this, &SearchedTexts::forget);
  connect(&graph, &EditedGraph::actionRemoved, this, &SearchedTexts::forget);
  connect(&graph, &EditedGraph::actionChanged, this, &SearchedTexts::forget);
  connect(&graph, &EditedGraph::noteAdded, this, &SearchedTexts::changed);
  connect(&graph, &EditedGraph::noteChanged, this, &SearchedTexts::changed);
  connect(&graph, &EditedGraph::noteRemoved, this, &SearchedTexts::changed);
}

void SearchedTexts::setColumnsOfPin(ColumnsOfPin columns) {
  m_columns = std::move(columns);
  forgetColumns();
}

void SearchedTexts::forgetColumns() {
  m_texts.clear();
  emit changed();
}

void SearchedTexts::forget(ActionId action) {
  m_texts.remove(action);
  emit changed();
}

const QList<SearchedText>& SearchedTexts::of(ActionId action) {
  const auto known = m_texts.constFind(action);
  return known != m_texts.constEnd() ? *known : *m_texts.insert(action, read(action));
}

QStringList SearchedTexts::columnsAt(const PinRef& pin) const {
  return m_columns ? m_columns(pin).value_or(QStringList()) : QStringList();
}

QList<SearchedText> SearchedTexts::read(ActionId action) const {
  const QStringList input =
      m_graph.pinCount(action, false) > 0 ? columnsAt({action, 0, false}) : QStringList();
  const QStringList output =
      m_graph.pinCount(action, true) > 0 ? columnsAt({action, 0, true}) : QStringList();
  const QSet<QString> before(input.begin(), input.end());
  QSet<QString> columns = before;
  columns.unite({output.begin(), output.end()});
  QSet<QString> named;
  QList<SearchedText> texts = textsOf(m_graph, action);
  for (SearchedText& text : texts) {
    const bool mayBeColumn =
        text.kind == SearchedText::Kind::setting || text.kind == SearchedText::Kind::expression;
    if (!mayBeColumn || !columns.contains(text.text)) {
      continue;
    }
    named.insert(text.text);
    if (text.kind == SearchedText::Kind::setting) {
      text.kind = SearchedText::Kind::column;
    }
  }
  for (const QString& column : output) {
    if (!before.contains(column) && !named.contains(column)) {
      texts.append({.kind = SearchedText::Kind::column, .action = action, .text = column});
    }
  }
  return texts;
}

bool SearchedTexts::mayHaveColumn(ActionId action, const QString& column) const {
  const std::optional<QStringList> columns =
      m_columns ? m_columns({action, 0, true}) : std::nullopt;
  return !columns || columns->contains(column);
}

}  // namespace kelvarin
