// The screen of a process with a QApplication: its pickers are dialogs.
//
// Installed with installScreen() by whoever makes the QApplication.
#pragma once

#include "host/contract/screen.h"

namespace kelvarin {

class KELVARIN_CORE WidgetScreen : public Screen {
 public:
  double pixelSize() override;
  int pickColumn(const QStringList& names, int selected, QWidget* parent) override;
  QStringList pickColumns(const QStringList& names, const QStringList& selected,
                          QWidget* parent) override;
};

}  // namespace kelvarin
