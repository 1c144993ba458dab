// What property editors are made of, and the questions that need a screen.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "host/contract/export.h"

// The base of every property editor. An editor edits its action in place and says so through
// propertiesChanged(), which marks the open document as modified.
class KELVARIN_CORE UpdateClassWidget : public QWidget {
 public:
  explicit UpdateClassWidget(QWidget* parent = nullptr);
  ~UpdateClassWidget() override;

  virtual void propertiesChanged();
};

// Shows a page of the help; `anchor` is a place in it, empty for its beginning. A host without a
// browser logs the page.
KELVARIN_CORE void openHelp(QString helpId, QString anchor);

// Asks for a file that exists; empty when the user gave up or when there is no screen, which is
// logged.
KELVARIN_CORE QString tGetOpenFileName(QWidget* parent, QString caption, QString folder,
                                       QString filter);
