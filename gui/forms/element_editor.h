// The base of editors that hold an action's XML element and report another one, for actions that
// have no setters.
//
// The owner puts an action made of the element into the graph, and the editor stays. It refers to
// the action it was made for no more once it has reported a change; where the element has changed
// without it (by undo), the owner makes another editor.
// Threads: the user-interface thread.
#pragma once

#include <QByteArray>

#include "host/widgets/user_interface.h"

namespace kelvarin {

class ElementEditor : public UpdateClassWidget {
  Q_OBJECT

 public:
  using UpdateClassWidget::UpdateClassWidget;

 signals:
  void committed(const QByteArray& element);
};

}  // namespace kelvarin
