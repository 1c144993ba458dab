// Formulas over a small table, for tests.
#pragma once

#include <initializer_list>

#include "host/contract/column_bytes.h"
#include "host/contract/one_row.h"
#include "host/contract/pin_out_meta_data.h"
#include "host/contract/row_buffer.h"
#include "ui/language/column_variable.h"
#include "ui/language/formula.h"

namespace kelvarin {

// The columns `x` (a number), `s` (a text) and `unit price` (a number), with three rows:
//   1, "one", 2.5    null, null, 0    3, " three ", NaN
inline std::shared_ptr<const PinRows> threeRows() {
  PinColumns columns;
  columns.isKnown = true;
  columns.columns = {{QStringLiteral("x"), MetaTypeColumn::number},
                     {QStringLiteral("s"), MetaTypeColumn::text},
                     {QStringLiteral("unit price"), MetaTypeColumn::number}};
  PinOutMetaData metaData;
  metaData.setColumnCount(3);
  OneRow row(&metaData);
  RowBuffer buffer(1024);
  auto rows = std::make_shared<PinRows>(columns, 0);
  const auto append = [&](double x, const QString& s, double price) {
    row.getAllColForWrite()[0] = bytesFromDouble(&buffer, x, 8);
    row.getAllColForWrite()[1] = bytesFromQString(&buffer, s);
    row.getAllColForWrite()[2] = bytesFromDouble(&buffer, price, 8);
    rows->append(row);
  };
  append(1.0, QStringLiteral("one"), 2.5);
  append(kNullNumber, QString(), 0.0);
  append(3.0, QStringLiteral(" three "), kNotANumber);
  return rows;
}

// With the input variables `x` and `s`.
inline Formula formulaOf(const QString& expression, char meta = 'F') {
  Formula formula;
  formula.output.name = QStringLiteral("out");
  formula.output.expression = expression;
  formula.output.meta = static_cast<MetaTypeColumn>(meta);
  formula.rows = threeRows();
  formula.columns = formula.rows->columns();
  for (const std::size_t column : {0U, 1U}) {
    formula.variables.push_back(
        variableForColumn(formula.columns.columns[column], formula.variables));
  }
  return formula;
}

}  // namespace kelvarin
