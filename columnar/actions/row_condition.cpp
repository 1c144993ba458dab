#include "columnar/actions/row_condition.h"

#include <cmath>

#include "host/contract/text_operations.h"

namespace kelvarin {

RowCondition::RowCondition(const OneRow& columns, int column, const QString& value)
    : m_column(column),
      m_isText(columns.getMetaType(column) != MetaTypeColumn::number &&
               columns.getMetaType(column) != MetaTypeColumn::key),
      m_text(value.toStdString()) {
  bool isNumber = false;
  const double number = myTrim(value).toDouble(&isNumber);
  if (isNumber) {
    m_number = number;
  }
}

bool RowCondition::passes(const OneRow& row) const {
  bool isMissing = false;
  if (m_isText) {
    return row.colAsUtf8(m_column, &isMissing) == m_text;
  }
  const double number = row.colAsDouble(m_column, &isMissing);
  if (isMissing) {
    return m_text.empty();
  }
  return m_number && (number == *m_number || (std::isnan(number) && std::isnan(*m_number)));
}

}  // namespace kelvarin
