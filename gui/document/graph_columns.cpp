// How a column that is called otherwise is followed through a graph.
#include "gui/document/column_rename.h"
#include "gui/document/command_step.h"

namespace kelvarin {

QList<ActionId> GraphCommands::renameColumn(ActionId action, const QString& oldName,
                                            const QString& newName,
                                            const std::function<bool(ActionId)>& hasColumn) {
  ColumnRename rename(m_graph, action, oldName, newName, hasColumn);
  while (rename.advance()) {
  }
  Step step(*this, tr("Rename column '%1'").arg(oldName));
  QList<ActionId> changed;
  for (const ColumnRename::Change& found : rename.changes()) {
    std::unique_ptr<GraphChange> change =
        setContent(step.changes(), found.action, m_graph.typeName(found.action), found.element);
    if (change != nullptr) {
      step.append(std::move(change));
      changed.append(found.action);
    }
  }
  return changed;
}

}  // namespace kelvarin
