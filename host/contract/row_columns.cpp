#include "host/contract/row_columns.h"

namespace kelvarin {

void copyColumns(const OneRow& from, OneRow& to) {
  to.setNumberOfColumns(from.sz());
  to.setColName(from.getColNamesDeep());
  to.setMetaData(from.getMetaDataDeep());
  to.setSortInfos(from.getSortInfosDeep());
}

}  // namespace kelvarin
