// A small window at the pointer or beside an action: type the first letters of an action, Enter
// adds it.
//
// Threads: the user-interface thread.
#pragma once

#include <functional>

#include <QFrame>

#include "host/engine/action_catalogue.h"

namespace kelvarin {

class QuickAdd : public QFrame {
  Q_OBJECT

 public:
  // Only types that `fits` accepts are offered, the best match first. It closes itself, and is
  // deleted then.
  QuickAdd(const ActionCatalogue& catalogue, std::function<bool(const CatalogueEntry&)> fits,
           QWidget* parent);

  void open(QPoint globalPosition, const QString& typed);

 signals:
  void chosen(const QString& typeName);
};

}  // namespace kelvarin
