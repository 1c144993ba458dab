// The base of property editors, and the question for a file.
//
// Threads: the user-interface thread.
#pragma once

#include <QMap>
#include <QString>
#include <QWidget>

#include "base/export.h"

// The base of every property editor. An editor edits its action in place and says so through
// propertiesChanged(), which marks the open document as modified.
class KELVARIN_CORE UpdateClassWidget : public QWidget {
 public:
  explicit UpdateClassWidget(QWidget* parent = nullptr);
  ~UpdateClassWidget() override;

  virtual void propertiesChanged();
  // What the user has typed and not yet committed to the action, for a recovery file: names of
  // fields and their texts. Empty when there is nothing.
  virtual QMap<QString, QString> uncommittedState() const;
  // Puts such texts back into their fields, not committed. Names of fields that it does not have
  // are passed over.
  virtual void restoreUncommitted(const QMap<QString, QString>& texts);
  // Commits it as if the focus had left the field.
  virtual void commit();
  // Leads to what a line of the log is about: a position in the expression of an output, -1 where
  // only the output is known; an empty output is the action's one expression.
  virtual void showPosition(const QString& output, int position);
  // Begins to debug and stops at this row of the action's input, counted from 0. False where the
  // editor has no debugger.
  virtual bool stepToRow(long long row);
};

// Asks for a file that exists; empty when the user gave up or when there is no screen, which is
// logged.
KELVARIN_CORE QString tGetOpenFileName(QWidget* parent, QString caption, QString folder,
                                       QString filter);
