#include "gui/preview/preview_view.h"

#include <QKeyEvent>
#include <QPainter>

namespace kelvarin {

namespace {

enum class OwnKey { none, open, filter, copy, copyWithHeader };

OwnKey ownKeyOf(const QKeyEvent& event) {
  const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  if (isEnter && (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
    return OwnKey::open;
  }
  if (event.matches(QKeySequence::Find)) {
    return OwnKey::filter;
  }
  if (event.matches(QKeySequence::Copy)) {
    return OwnKey::copy;
  }
  const bool isWithShift = event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  return isWithShift && event.key() == Qt::Key_C ? OwnKey::copyWithHeader : OwnKey::none;
}

}  // namespace

RowNumbersHeader::RowNumbersHeader(QWidget* parent) : QHeaderView(Qt::Vertical, parent) {
  setSectionsClickable(true);
  setSectionResizeMode(QHeaderView::Fixed);
  setHighlightSections(false);
}

void RowNumbersHeader::paintSection(QPainter* painter, const QRect& rectangle, int row) const {
  painter->fillRect(rectangle, palette().color(QPalette::Button));
  QColor line = palette().color(QPalette::ButtonText);
  line.setAlphaF(0.2F);
  painter->fillRect(QRect(rectangle.right(), rectangle.top(), 1, rectangle.height()), line);
  const bool isCurrent =
      selectionModel() != nullptr && selectionModel()->currentIndex().row() == row;
  painter->setPen(palette().color(QPalette::Active,
                                  isCurrent ? QPalette::ButtonText : QPalette::PlaceholderText));
  painter->drawText(rectangle.adjusted(0, 0, -6, 0), Qt::AlignRight | Qt::AlignVCenter,
                    model()->headerData(row, Qt::Vertical, Qt::DisplayRole).toString());
}

PreviewView::PreviewView(QWidget* parent) : QTableView(parent) {
  setVerticalHeader(new RowNumbersHeader(this));
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTabKeyNavigation(false);
  setWordWrap(false);
  setShowGrid(false);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
}

bool PreviewView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride &&
      ownKeyOf(*static_cast<QKeyEvent*>(event)) != OwnKey::none) {
    event->accept();
    return true;
  }
  return QTableView::event(event);
}

void PreviewView::keyPressEvent(QKeyEvent* event) {
  switch (ownKeyOf(*event)) {
    case OwnKey::open:
      emit openWanted();
      return;
    case OwnKey::filter:
      emit filterWanted();
      return;
    case OwnKey::copy:
      emit copyWanted(false);
      return;
    case OwnKey::copyWithHeader:
      emit copyWanted(true);
      return;
    case OwnKey::none:
      QTableView::keyPressEvent(event);
  }
}

}  // namespace kelvarin
