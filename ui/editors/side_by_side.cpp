#include "ui/editors/side_by_side.h"

#include <algorithm>

#include <QLayout>
#include <QResizeEvent>

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
}

int SideBySide::neededWidth() const {
  return kCharactersOfBoth * fontMetrics().averageCharWidth();
}

// It can always become as narrow as the wider of the two. Texts that wrap need the more height the
// narrower they are, which splitters do not know.
QSize SideBySide::minimumSizeHint() const {
  QSize size(0, QSplitter::minimumSizeHint().height());
  for (int i = 0; i < count(); ++i) {
    const QWidget& part = *widget(i);
    size = size.expandedTo({part.minimumSizeHint().width(), 0});
    if (orientation() == Qt::Horizontal && part.layout() != nullptr) {
      size = size.expandedTo({0, part.layout()->totalMinimumHeightForWidth(part.width())});
    }
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
