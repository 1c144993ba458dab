#include "host/tables/sort_order/sort_order.h"

#include <algorithm>
#include <cmath>

#include <QStringList>

#include "host/tables/sort_order/messages.h"

namespace kelvarin {

namespace {

namespace messages = sort_order_messages;

bool isDirection(QChar letter) {
  return letter == u'A' || letter == u'Z' || letter == u'0' || letter == u'9';
}

struct Entry {
  QString column;
  QChar direction;
  qsizetype end = 0;  // just after the entry's comma, or the end of the text
};

// The shortest entry that starts at `start` and ends after `atLeast`; direction is null when there
// is none.
Entry entryAt(const QString& text, qsizetype start, qsizetype atLeast) {
  for (qsizetype comma = atLeast; comma <= text.size(); ++comma) {
    if (comma < text.size() && text[comma] != u',') {
      continue;
    }
    const QString entry = text.mid(start, comma - start).trimmed();
    const qsizetype last = entry.size() - 1;
    if (last >= 2 && isDirection(entry[last]) && entry[last - 1].isSpace()) {
      return {entry.left(last).trimmed(), entry[last], comma + 1};
    }
  }
  return {};
}

// A name may hold commas: of the entries that start here, the first that names a column.
Entry entryOfColumn(const QString& text, qsizetype start, const PinOutMetaData& columns) {
  Entry shortest = entryAt(text, start, start);
  Entry entry = shortest;
  while (!entry.direction.isNull()) {
    if (columns.indexOf(entry.column) >= 0) {
      return entry;
    }
    entry = entryAt(text, start, entry.end);
  }
  return shortest;
}

// Empty when the direction suits the column's type.
QString directionError(const Entry& entry, MetaTypeColumn type) {
  const bool isForText = entry.direction == u'A' || entry.direction == u'Z';
  const bool isText = type != MetaTypeColumn::number && type != MetaTypeColumn::key;
  if (isForText == isText) {
    return {};
  }
  return messages::directionOfAnotherType(
      entry.column, isText ? QStringLiteral("texts") : QStringLiteral("numbers"),
      isText ? QStringLiteral("A or Z") : QStringLiteral("0 or 9"), entry.direction);
}

bool containsColumn(const QVector<SortInfos>& order, int column) {
  return std::any_of(order.begin(), order.end(),
                     [column](const SortInfos& entry) { return entry.column() == column; });
}

// Where a number stands among missing values, numbers and NaNs.
int rankOf(double number, bool isDescending) {
  if (isNullNumber(number)) {
    return isDescending ? 2 : -1;
  }
  return std::isnan(number) ? 1 : 0;
}

int compareNumbers(double left, double right, bool isDescending) {
  const int leftRank = rankOf(left, isDescending);
  const int rightRank = rankOf(right, isDescending);
  if (leftRank != rightRank) {
    return leftRank < rightRank ? -1 : 1;
  }
  if (leftRank != 0 || left == right) {
    return 0;
  }
  return (left < right) != isDescending ? -1 : 1;
}

struct Text {
  bool isMissing;
  std::string_view text;
};

int compareTexts(const Text& left, const Text& right, bool isDescending) {
  if (left.isMissing || right.isMissing) {
    if (left.isMissing == right.isMissing) {
      return 0;
    }
    return left.isMissing != isDescending ? -1 : 1;
  }
  const int comparison = left.text.compare(right.text);
  return isDescending ? -comparison : comparison;
}

double numberOf(const BatchColumn& column, std::size_t storedRow) {
  if (column.type() == MetaTypeColumn::number) {
    return column.numbers()[storedRow];
  }
  const std::uint32_t key = column.keys()[storedRow];
  return isNullKey(key) ? kNullNumber : key;
}

Text textOf(const BatchColumn& column, std::size_t storedRow) {
  const unsigned char* text = column.text(storedRow);
  return {isNullText(text), textFromBytes(text)};
}

}  // namespace

Result<QVector<SortInfos>, QString> parseSortOrder(const QString& text,
                                                   const PinOutMetaData& columns) {
  QVector<SortInfos> order;
  if (text.trimmed().isEmpty()) {
    return order;
  }
  for (qsizetype start = 0; start <= text.size();) {
    const Entry entry = entryOfColumn(text, start, columns);
    if (entry.direction.isNull()) {
      return Failure{messages::entryWithoutDirection(text.mid(start).trimmed())};
    }
    const int column = columns.indexOf(entry.column);
    if (column < 0) {
      return Failure{messages::unknownColumn(
          entry.column, QStringList(columns.names().toList()).join(QStringLiteral(", ")))};
    }
    if (containsColumn(order, column)) {
      return Failure{messages::columnTwice(entry.column)};
    }
    if (const QString error = directionError(entry, columns.metas()[column].type());
        !error.isEmpty()) {
      return Failure{error};
    }
    order.append(SortInfos(column, static_cast<SortType>(entry.direction.toLatin1())));
    start = entry.end;
  }
  return order;
}

QString sortOrderText(const QVector<SortInfos>& order, const PinOutMetaData& columns) {
  QStringList entries;
  for (const SortInfos& entry : order) {
    entries +=
        columns.names()[entry.column()] + u' ' + QLatin1Char(static_cast<char>(entry.type()));
  }
  return entries.join(QStringLiteral(", "));
}

QString sortOrderBrokenText(const QString& column, SortType direction) {
  const bool isDescending =
      direction == SortType::textDescending || direction == SortType::numberDescending;
  return messages::outOfOrder(
      column, isDescending ? QStringLiteral("descending") : QStringLiteral("ascending"));
}

SortOrderChecker::SortOrderChecker(const QVector<SortInfos>& order) {
  for (const SortInfos& entry : order) {
    const bool isNumber =
        entry.type() == SortType::numberAscending || entry.type() == SortType::numberDescending;
    m_keys.push_back({entry, isNumber, 0.0, false, {}});
  }
}

bool SortOrderChecker::accepts(const OneRow& row) {
  if (m_hasLastRow) {
    for (const Key& key : m_keys) {
      const int comparison = compareWith(key, row);
      if (comparison < 0) {
        break;
      }
      if (comparison > 0) {
        m_refusedColumn = key.order.column();
        return false;
      }
    }
  }
  for (Key& key : m_keys) {
    keep(key, row);
  }
  m_hasLastRow = true;
  return true;
}

void SortOrderChecker::restart() {
  m_hasLastRow = false;
  m_refusedColumn = -1;
}

int SortOrderChecker::compareWith(const Key& last, const OneRow& row) {
  const int column = last.order.column();
  const bool isDescending = last.order.isDescending();
  if (last.isNumber) {
    return compareNumbers(last.number, row.colAsDouble(column, nullptr), isDescending);
  }
  bool isMissing = false;
  const std::string_view text = row.colAsUtf8(column, &isMissing);
  return compareTexts({last.isMissing, last.text}, {isMissing, text}, isDescending);
}

int SortOrderChecker::compareRows(const SortInfos& order, const BatchColumn& column,
                                  std::size_t left, std::size_t right) {
  return fixedSizeOf(column.type()) != 0
             ? compareNumbers(numberOf(column, left), numberOf(column, right), order.isDescending())
             : compareTexts(textOf(column, left), textOf(column, right), order.isDescending());
}

std::optional<OrderBreak> SortOrderChecker::breakIn(const RowBatch& batch) const {
  for (std::size_t row = 1; row < batch.rowCount(); ++row) {
    for (const Key& key : m_keys) {
      const int column = key.order.column();
      const int comparison = compareRows(key.order, batch.column(static_cast<std::size_t>(column)),
                                         batch.storedRow(row - 1), batch.storedRow(row));
      if (comparison > 0) {
        return OrderBreak{row, column};
      }
      if (comparison < 0) {
        break;
      }
    }
  }
  return std::nullopt;
}

void SortOrderChecker::keep(Key& key, const OneRow& row) {
  const int column = key.order.column();
  if (key.isNumber) {
    key.number = row.colAsDouble(column, nullptr);
    return;
  }
  key.text.assign(row.colAsUtf8(column, &key.isMissing));
}

}  // namespace kelvarin
