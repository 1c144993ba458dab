#include "host/tables/arrow_formats/group_decoding.h"

#include <algorithm>
#include <numeric>

#include "host/tables/arrow/value_messages.h"
#include "host/tables/arrow_formats/arrow_json.h"
#include "host/tables/arrow_formats/arrow_values.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

GroupDecoding::GroupDecoding(std::shared_ptr<const DecodingPlan> plan,
                             std::unique_ptr<ArrowFileGroup> group, long long firstRow)
    : m_plan(std::move(plan)),
      m_group(std::move(group)),
      m_firstRow(firstRow),
      m_columns(m_plan->columns.types.size()) {}

std::size_t GroupDecoding::unitCount() const {
  const std::int64_t rows = std::max<std::int64_t>(m_group->rowCount(), 0);
  return static_cast<std::size_t>((rows + m_plan->rowsInUnit - 1) / m_plan->rowsInUnit);
}

std::size_t GroupDecoding::bytesOfUnit() const {
  return static_cast<std::size_t>(m_plan->rowsInUnit) * m_columns.size() * sizeof(double);
}

std::int64_t GroupDecoding::rowsOfUnit(std::size_t unit) const {
  const std::int64_t before = static_cast<std::int64_t>(unit) * m_plan->rowsInUnit;
  return std::min(m_plan->rowsInUnit, m_group->rowCount() - before);
}

std::vector<DecodedColumn> GroupDecoding::decode(std::size_t unit) {
  std::vector<DecodedColumn> decoded(m_columns.size());
  std::vector<std::size_t> left(m_columns.size());
  std::iota(left.begin(), left.end(), 0);
  while (!left.empty()) {
    const std::size_t before = left.size();
    std::erase_if(left, [&](std::size_t index) {
      const std::unique_lock lock(m_columns[index].mutex, std::try_to_lock);
      if (lock.owns_lock()) {
        decoded[index] = take(index, unit);
      }
      return lock.owns_lock();
    });
    if (left.size() == before) {  // other threads have them all
      const std::lock_guard lock(m_columns[left.back()].mutex);
      decoded[left.back()] = take(left.back(), unit);
      left.pop_back();
    }
  }
  return decoded;
}

DecodedColumn GroupDecoding::take(std::size_t index, std::size_t unit) {
  Column& column = m_columns[index];
  for (; column.unitsDone <= unit; ++column.unitsDone) {
    column.ready[column.unitsDone] = decodeNext(index, column.unitsDone);
  }
  return std::move(column.ready.extract(unit).mapped());
}

DecodedColumn GroupDecoding::decodeNext(std::size_t index, std::size_t unit) {
  const std::int64_t rowCount = rowsOfUnit(unit);
  const long long firstRow = m_firstRow + static_cast<long long>(unit) * m_plan->rowsInUnit;
  const auto array = m_group->next(static_cast<int>(index), rowCount);
  const bool isWhole = array.ok() && (*array)->length() == rowCount;
  if (isWhole) {
    return converted(**array, index, firstRow);
  }
  const std::string reason =
      array.ok() ? "a column has fewer rows than its row group" : array.status().message();
  DecodedColumn failed;
  failed.failure = {table_messages::damaged(
                        m_plan->source, table_messages::atLocation(locationOf(index, firstRow),
                                                                   QString::fromStdString(reason))),
                    {m_plan->columns.names[static_cast<qsizetype>(index)], firstRow}};
  return failed;
}

DecodedColumn GroupDecoding::converted(const arrow::Array& array, std::size_t index,
                                       long long firstRow) {
  DecodedColumn decoded;
  decoded.tally.areBadValuesNull = m_plan->areBadValuesNull;
  decoded.tally.rowsBefore = firstRow;
  ConvertedArray made = m_plan->areJson[index]
                            ? jsonTextsOf(array)
                            : convertArray(array, m_plan->columns.types[index], decoded.tally,
                                           m_columns[index].texts);
  decoded.values = std::move(made.values);
  decoded.rowCount = made.bad ? made.bad->row : array.length();
  if (made.bad) {
    decoded.failure = badValue(index, *made.bad, firstRow);
  }
  return decoded;
}

ReadFault GroupDecoding::badValue(std::size_t index, const BadValue& bad,
                                  long long firstRow) const {
  const QString& name = m_plan->columns.names[static_cast<qsizetype>(index)];
  const QString value = QString::fromStdString(bad.text);
  const QString text =
      m_plan->columns.types[index] == MetaTypeColumn::key
          ? table_messages::integerIsNoKey(value) + table_messages::declareAnotherType(name)
          : table_messages::numberNotHeld(value) + table_messages::declareAsText(name);
  return {table_messages::atLocation(locationOf(index, firstRow + bad.row), text),
          {name, firstRow + bad.row}};
}

QString GroupDecoding::locationOf(std::size_t index, long long row) const {
  return table_messages::inColumn(table_messages::atRow(m_plan->source, row + 1),
                                  m_plan->columns.names[static_cast<qsizetype>(index)]);
}

}  // namespace kelvarin
