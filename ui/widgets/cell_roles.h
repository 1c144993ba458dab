// What a model says about a cell beyond Qt's own roles, for EnhancedTableDelegate.
#pragma once

#include <Qt>

namespace kelvarin {

enum CellRole {
  // QStringList: what the cell can be set to; the delegate edits it with a drop-down.
  kChoicesRole = Qt::UserRole + 1000,
  // bool: other texts than the choices can be typed.
  kOpenChoicesRole,
  // int, a ShownValue::Kind: null, NaN and the empty text are drawn apart from other texts.
  kValueKindRole,
  // QString: why the row is faulty; it gets an icon and a tool tip. Empty: it is not.
  kFaultRole,
};

}  // namespace kelvarin
