// The signature of the function whose arguments are being typed, with the current one bold, in a
// window of its own that never takes the focus.
//
// Used by ExpressionField. Lies above the line, so that it is not where completions are.
#pragma once

#include <QLabel>
#include <QStringList>

namespace kelvarin {

struct CallTipText {
  QString name;
  QStringList arguments;
  int current = -1;  // index of the argument that is being typed; -1: none
  QString comment;
  QString engines;
  QString nulls;
};

class CallTipWindow : public QLabel {
  Q_OBJECT

 public:
  explicit CallTipWindow(QWidget* parent);

  // `cursor` is in global coordinates.
  void showTip(const CallTipText& tip, const QRect& cursor);
};

}  // namespace kelvarin
