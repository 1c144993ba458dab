#include "gui/preview/preview_view.h"

#include <QKeyEvent>

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

PreviewView::PreviewView(QWidget* parent) : QTableView(parent) {
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTabKeyNavigation(false);
  setWordWrap(false);
  setShowGrid(false);
  setCornerButtonEnabled(true);
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
