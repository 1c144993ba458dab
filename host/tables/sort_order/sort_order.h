// The declared sort order of a table: the text of the declaration, and the check that rows keep it.
//
// The text lists columns and directions, most significant first: "id 0, name A". Directions are
// those of SortType: A and Z for text columns, 0 and 9 for number and key columns. Order: missing
// values come first ascending and last descending, other NaNs after all numbers in both directions,
// texts compare by their UTF-8 bytes, and the empty text is no missing value.
// Used by: the sources of host/tables.
// Errors: texts for the user, without a location; nothing logs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QString>
#include <QVector>

#include "base/result.h"
#include "host/contract/one_row.h"
#include "host/contract/row_batch.h"

namespace kelvarin {

// The order that `text` declares for these columns; an empty text declares none. A column name may
// hold blanks and commas.
Result<QVector<SortInfos>, QString> parseSortOrder(const QString& text,
                                                   const PinOutMetaData& columns);

// The text that parseSortOrder() reads as `order`.
QString sortOrderText(const QVector<SortInfos>& order, const PinOutMetaData& columns);

// The first row of a batch that may not stand after the one before it.
struct OrderBreak {
  std::size_t row;
  int column;
};

// Compares each row with the one before.
class SortOrderChecker {
 public:
  SortOrderChecker() = default;
  // An order without columns accepts every row.
  explicit SortOrderChecker(const QVector<SortInfos>& order);

  // False when `row` may not stand after the row of the last call. Only the values of the order's
  // columns are kept, so the row may change afterwards; a steady stream of rows allocates nothing.
  bool accepts(const OneRow& row);
  // Compares the rows of a batch among themselves; on any thread, while others use the checker.
  std::optional<OrderBreak> breakIn(const RowBatch& batch) const;
  // The column in which the last refused row is out of order, -1 when none was refused.
  int refusedColumn() const { return m_refusedColumn; }
  // Forgets the last row.
  void restart();

 private:
  struct Key {
    SortInfos order;
    bool isNumber = false;
    double number = 0.0;     // of number and key columns
    bool isMissing = false;  // of text columns
    std::string text;
  };

  static int compareWith(const Key& last, const OneRow& row);
  static int compareRows(const SortInfos& order, const BatchColumn& column, std::size_t left,
                         std::size_t right);
  static void keep(Key& key, const OneRow& row);

  std::vector<Key> m_keys;
  bool m_hasLastRow = false;
  int m_refusedColumn = -1;
};

// Why a row was refused, for the user: names the column and its direction.
QString sortOrderBrokenText(const QString& column, SortType direction);

}  // namespace kelvarin
