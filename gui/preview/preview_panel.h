// The first rows of a pin as a table, with a profile of each column.
//
// Threads: the user-interface thread; rows are computed, profiled, filtered and sorted beside it.
#pragma once

#include <memory>
#include <optional>

#include <QWidget>

#include "gui/document/edited_graph.h"
#include "gui/preview/row_condition.h"
#include "gui/services/edit_services.h"

namespace kelvarin {

class PreviewPanel : public QWidget {
  Q_OBJECT

 public:
  PreviewPanel(EditedGraph& graph, EditServices& services, QWidget* parent = nullptr);
  ~PreviewPanel() override;

  // Shows the pin from now on; what was computed for it is kept until something above changes.
  void showPin(const PinRef& pin);
  std::optional<PinRef> pin() const;

 signals:
  // Of the row as the pin has it, counted from 0.
  void stepToRowWanted(const kelvarin::PinRef& pin, long long row);
  // A condition that is true for the values of the cells that were chosen.
  void keepRowsWanted(const kelvarin::PinRef& pin, const kelvarin::RowCondition& condition);
  // `name` is one that no column of the pin has.
  void newColumnWanted(const kelvarin::PinRef& pin, const kelvarin::PinColumns::Column& column,
                       const QString& name);
  // Double click on a header: rename it in all that use it.
  void renameColumnWanted(const kelvarin::PinRef& pin, const QString& column);
  // The rows could not be computed: the user wants to see the action that failed.
  void actionWanted(kelvarin::ActionId action);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
