// The actions of the open graph, to be searched and chosen from: picture, name, type, and a mark
// where one has changed.
//
// Threads: the user-interface thread.
#pragma once

#include <QAbstractListModel>
#include <QSortFilterProxyModel>
#include <QWidget>

#include "gui/document/edited_graph.h"

class QListView;

namespace kelvarin {

class SearchField;

class ActionListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role { idRole = Qt::UserRole, nameRole, typeRole };

  explicit ActionListModel(EditedGraph& graph, QObject* parent = nullptr);

  QModelIndex indexOf(ActionId id) const;
  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  void refresh();

  EditedGraph& m_graph;
  QList<ActionId> m_shown;
};

class ActionList : public QWidget {
  Q_OBJECT

 public:
  explicit ActionList(EditedGraph& graph, QWidget* parent = nullptr);

  // Shows the action as the chosen one and reports nothing; kNoId: none.
  void setCurrent(ActionId action);

 signals:
  void chosen(kelvarin::ActionId action);

 private:
  void choose(const QModelIndex& index);
  void search(const QString& text);

  ActionListModel* m_model;
  QSortFilterProxyModel* m_found;
  QListView* m_list;
};

}  // namespace kelvarin
