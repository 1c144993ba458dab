// Keeps a widget at least as high as the texts in it need that wrap.
//
// Layouts in splitters, tabs and panels ask for the smallest height at any width, and texts are cut
// where they wrap into more lines than that.
// Threads: the user-interface thread.
#pragma once

#include <QObject>

#include "base/export.h"

class QWidget;

namespace kelvarin {

class KELVARIN_CORE WrappedHeight : public QObject {
  Q_OBJECT

 public:
  // Belongs to the widget, which has a layout.
  explicit WrappedHeight(QWidget& widget);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static void reserve(QWidget& widget);
};

}  // namespace kelvarin
