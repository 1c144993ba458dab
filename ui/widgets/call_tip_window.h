// The signature of the function whose arguments are being typed, with the current one bold, in a
// window of its own that never takes the focus.
//
// Used by ExpressionField. Lies above the line, so that it is not where completions are.
#pragma once

#include <QLabel>

#include "ui/language/call_tip.h"

namespace kelvarin {

class CallTipWindow : public QLabel {
  Q_OBJECT

 public:
  explicit CallTipWindow(QWidget* parent);

  // `cursor` is in global coordinates.
  void showTip(const CallTip& tip, const QRect& cursor);
};

}  // namespace kelvarin
