#include "ui/editors/side_by_side.h"

#include <algorithm>

#include <QLayout>
#include <QResizeEvent>

#include "host/widgets/wrapped_height.h"

namespace kelvarin {

namespace {

constexpr int kCharactersOfBoth = 88;
constexpr int kLeftShare = 8;
constexpr int kRightShare = 7;

}  // namespace

SideBySide::SideBySide(QWidget* left, QWidget* right, QWidget* parent)
    : QSplitter(Qt::Vertical, parent) {
  setChildrenCollapsible(false);
  setHandleWidth(12);
  addWidget(left);
  addWidget(right);
  setStretchFactor(0, kLeftShare);
  setStretchFactor(1, kRightShare);
  for (QWidget* part : {left, right}) {
    if (part->layout() != nullptr) {
      new WrappedHeight(*part);
    }
  }
}

int SideBySide::neededWidth() const {
  return kCharactersOfBoth * fontMetrics().averageCharWidth();
}

// It can always become as narrow as the wider of the two.
QSize SideBySide::minimumSizeHint() const {
  QSize size(0, QSplitter::minimumSizeHint().height());
  for (int i = 0; i < count(); ++i) {
    size = size.expandedTo({widget(i)->minimumSizeHint().width(), 0});
  }
  return size;
}

void SideBySide::resizeEvent(QResizeEvent* event) {
  const bool isWide = event->size().width() >= neededWidth();
  const Qt::Orientation wanted = isWide ? Qt::Horizontal : Qt::Vertical;
  if (wanted != orientation()) {
    setOrientation(wanted);
    if (isWide) {
      const int width = event->size().width() - handleWidth();
      setSizes({width * kLeftShare / (kLeftShare + kRightShare),
                width * kRightShare / (kLeftShare + kRightShare)});
    }
  }
  QSplitter::resizeEvent(event);
  updateGeometry();
}

}  // namespace kelvarin
