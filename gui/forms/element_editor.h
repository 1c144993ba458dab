// The base of editors that hold an action's XML element and report another one, for actions that
// have no setters.
//
// The owner puts an action made of the element into the graph; the editor stays, and refers to the
// action no more after it was made.
// Threads: the user-interface thread.
#pragma once

#include <QByteArray>

#include "host/widgets/user_interface.h"

namespace kelvarin {

class ElementEditor : public UpdateClassWidget {
  Q_OBJECT

 public:
  using UpdateClassWidget::UpdateClassWidget;

  // The element is another one, by undo or by another editor: shows it, unless it is as reported.
  virtual void setElement(const QByteArray& element) = 0;

 signals:
  void committed(const QByteArray& element);
};

}  // namespace kelvarin
