#include "host/contract/column_user.h"

namespace kelvarin {

ColumnUser::~ColumnUser() = default;

bool ColumnUser::renameMadeColumn(const QString&, const QString&) {
  return false;
}

void ColumnUser::renameParameter(const QString&, const QString&) {}

QStringList ColumnUser::expressions() const {
  return {};
}

}  // namespace kelvarin
