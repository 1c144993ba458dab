// A small window at the pointer or beside an action: type the first letters of an action, Enter
// adds it.
//
// Threads: the user-interface thread.
#pragma once

#include <QFrame>

#include "gui/palette/action_search.h"

namespace kelvarin {

class ActionChooser;

class QuickAdd : public QFrame {
  Q_OBJECT

 public:
  // Offers the types that fit. It closes itself, and is deleted then.
  QuickAdd(const ActionCatalogue& catalogue, ActionFilter fits, QWidget* parent);

  // `typed` begins the search.
  void open(QPoint globalPosition, const QString& typed);

 signals:
  void chosen(const QString& typeName);

 private:
  ActionChooser* m_chooser;
};

}  // namespace kelvarin
