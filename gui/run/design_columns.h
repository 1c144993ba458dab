// What a check knows about the graph while it is edited: the columns of every pin and the faults of
// every action, computed beside the user-interface thread after each change.
//
// Threads: the user-interface thread; a check that is overtaken by a change is stopped.
#pragma once

#include <memory>

#include <QHash>
#include <QObject>

#include "gui/document/edited_graph.h"
#include "gui/services/edit_services.h"
#include "host/contract/log_details.h"

namespace kelvarin {

class DesignColumns : public QObject {
  Q_OBJECT

 public:
  DesignColumns(EditedGraph& graph, EditServices& services, QObject* parent = nullptr);
  ~DesignColumns() override;

  // Those of an output pin, or of what is linked to an input pin.
  PinColumns columns(const PinRef& pin) const;
  // The first error of each action that has one, for the user.
  const QHash<ActionId, QString>& problems() const;
  // Where the problem of an action is, as far as it is known.
  LogDetails problemDetails(ActionId action) const;

 signals:
  void changed();

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
