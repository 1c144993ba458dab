// A flat button with an icon alone: its text is its tool tip and its accessible name, and the icon
// is as high as the texts beside it.
#pragma once

#include <QToolButton>

#include "base/export.h"
#include "host/widgets/icons.h"

namespace kelvarin {

class KELVARIN_CORE IconButton : public QToolButton {
  Q_OBJECT

 public:
  // `text` may name its key in brackets: "Save (Ctrl+S)".
  IconButton(IconName name, const QString& text, QWidget* parent = nullptr);

  void setIconName(IconName name);
  void setDescription(const QString& text);

 protected:
  void changeEvent(QEvent* event) override;
};

}  // namespace kelvarin
