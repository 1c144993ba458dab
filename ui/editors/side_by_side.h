// Two widgets side by side where the width suffices for both, else one above the other.
//
// Threads: the user-interface thread.
#pragma once

#include <QSplitter>

namespace kelvarin {

class SideBySide : public QSplitter {
  Q_OBJECT

 public:
  SideBySide(QWidget* left, QWidget* right, QWidget* parent);

  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  int neededWidth() const;
};

}  // namespace kelvarin
