// How a column that is called otherwise is followed through a graph.
#include "gui/document/column_rename.h"
#include "gui/document/command_step.h"

namespace kelvarin {

QList<ActionId> GraphCommands::renameColumn(ActionId action, const QString& oldName,
                                            const QString& newName) {
  ColumnRename rename(m_graph, action, oldName, newName);
  return renameColumn(rename);
}

QList<ActionId> GraphCommands::renameColumn(ColumnRename& rename) {
  while (rename.advance()) {
  }
  Step step(*this, tr("Rename column '%1'").arg(rename.oldName()));
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
