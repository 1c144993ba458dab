// A column of widgets that becomes as low as its parts allow before its page is scrolled. With
// other layouts, a column with texts that wrap is always as high as its parts would like to be.
//
// Used for the page of an expression and for the debugger in it.
// Threads: the user-interface thread.
#pragma once

#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace kelvarin {

class ShrinkingColumn : public QVBoxLayout {
  Q_OBJECT

 public:
  using QVBoxLayout::QVBoxLayout;

  // The base class asks for this height in order to find out the smallest one.
  int heightForWidth(int width) const override {
    if (m_isAsked) {
      return QVBoxLayout::heightForWidth(width);
    }
    const QScopedValueRollback asked(m_isAsked, true);
    return minimumHeightForWidth(width);
  }

 private:
  mutable bool m_isAsked = false;
};

}  // namespace kelvarin
