// An action that names columns in its settings, and so can follow one that is called otherwise.
//
// Used by: hosts that rename a column in all actions that use it, or search a graph. To rename,
// they ask a copy of the action and take its settings from there.
// Threads: those of the action's setters.
#pragma once

#include <QString>
#include <QStringList>

#include "base/export.h"

namespace kelvarin {

// What has become of a column of the first input pin in the rows of the output pins.
enum class ColumnFate {
  passedOn,  // it is there, under its new name
  ends       // it is not there, or another column has its old name
};

class KELVARIN_CORE ColumnUser {
 public:
  virtual ~ColumnUser();

  // A column of the first input pin is called otherwise from now on.
  virtual ColumnFate followColumn(const QString& oldName, const QString& newName) = 0;
  // Gives a column that the action makes another name; false when it makes none of this name.
  virtual bool renameMadeColumn(const QString& oldName, const QString& newName);
  // A graph parameter is called otherwise from now on: its bare name in expressions follows, but
  // for an action with a variable of that name.
  virtual void renameParameter(const QString& oldName, const QString& newName);
  // Those in which columns and graph parameters stand by their names.
  virtual QStringList expressions() const;
};

}  // namespace kelvarin
