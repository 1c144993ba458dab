// The actions that a graph may use as a tree: groups and their actions, or what a search has found.
//
// Threads: the user-interface thread.
#pragma once

#include <QStandardItemModel>

#include "gui/palette/action_search.h"

namespace kelvarin {

class PaletteModel : public QStandardItemModel {
  Q_OBJECT

 public:
  enum Role { typeRole = Qt::UserRole };  // of a group, empty

  // The catalogue outlives the model.
  PaletteModel(const ActionCatalogue& catalogue, ActionFilter fits, QObject* parent = nullptr);

  // All groups for an empty text.
  void search(const QString& text);
  // The first action in the order in which they are shown; invalid where there is none.
  QModelIndex firstAction() const;

  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;

 private:
  const ActionCatalogue& m_catalogue;
  ActionFilter m_fits;
};

}  // namespace kelvarin
