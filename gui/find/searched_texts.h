// The texts of all actions of a graph, kept from one search to the next, so that a search while
// typing takes none of them apart again.
//
// Used by: find_job.h. Threads: the user-interface thread.
#pragma once

#include <functional>
#include <optional>

#include <QHash>
#include <QObject>

#include "gui/document/graph_search.h"

namespace kelvarin {

class SearchedTexts : public QObject {
  Q_OBJECT

 public:
  // The names of the columns at a pin; nothing where they are not known.
  using ColumnsOfPin = std::function<std::optional<QStringList>(const PinRef& pin)>;

  explicit SearchedTexts(EditedGraph& graph, QObject* parent = nullptr);

  void setColumnsOfPin(ColumnsOfPin columns);
  // Other columns are known now.
  void forgetColumns();

  EditedGraph& graph() const { return m_graph; }
  // Settings that name a column say so; columns that the action adds to its input and does not
  // name, as those of a file, come last.
  const QList<SearchedText>& of(ActionId action);
  // True where nothing is known.
  bool mayHaveColumn(ActionId action, const QString& column) const;

 signals:
  // Something that can be found came, went or became another one.
  void changed();

 private:
  QStringList columnsAt(const PinRef& pin) const;
  QList<SearchedText> read(ActionId action) const;
  void forget(ActionId action);

  EditedGraph& m_graph;
  ColumnsOfPin m_columns;
  QHash<ActionId, QList<SearchedText>> m_texts;
};

}  // namespace kelvarin
