// A group of rows of a Parquet or an Arrow file that is decoded unit by unit, each some thousand
// rows.
//
// The rows of a column come one after another, so a unit's columns are decoded after those of the
// units before. Whoever parses a unit decodes what is missing up to it, column by column; while one
// thread has a column, others go on with the other ones. So several units of a group are parsed at
// the same time, and no thread waits for one that does not work.
// Used by: ArrowTableReader and its units.
// Threads: any.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include <QString>

#include "host/tables/arrow_formats/array_source.h"
#include "host/tables/arrow_formats/arrow_file.h"
#include "host/tables/arrow_formats/dictionary_texts.h"
#include "host/tables/files/batch_reader.h"

namespace kelvarin {

// What is to be made of a file's columns, for all groups. The texts for the user are made of it.
struct DecodingPlan {
  QString source;  // what the file is called
  TableColumns columns;
  std::vector<bool> areJson;  // of each column, whether its texts are JSON
  bool areBadValuesNull = false;
  std::int64_t rowsInUnit = 0;
};

// One column of one unit.
struct DecodedColumn {
  std::optional<BatchColumn> values;  // none where there are no rows
  std::int64_t rowCount = 0;          // before the first value that is in error
  ReadFault failure;                  // what is wrong with it
  ColumnTally tally;
};

class GroupDecoding {
 public:
  // `firstRow` is that of the group in the file.
  GroupDecoding(std::shared_ptr<const DecodingPlan> plan, std::unique_ptr<ArrowFileGroup> group,
                long long firstRow);

  std::int64_t rowCount() const { return m_group->rowCount(); }
  std::size_t unitCount() const;
  // About as much memory as a unit takes.
  std::size_t bytesOfUnit() const;
  std::int64_t rowsOfUnit(std::size_t unit) const;
  // All columns of a unit; once for each.
  std::vector<DecodedColumn> decode(std::size_t unit);

 private:
  struct Column {
    std::mutex mutex;
    std::size_t unitsDone = 0;
    std::map<std::size_t, DecodedColumn> ready;  // of units that nobody has asked for yet
    DictionaryTexts texts;
  };

  // With the column's mutex.
  DecodedColumn take(std::size_t index, std::size_t unit);
  DecodedColumn decodeNext(std::size_t index, std::size_t unit);
  DecodedColumn converted(const arrow::Array& array, std::size_t index, long long firstRow);
  ReadFault badValue(std::size_t index, const BadValue& bad, long long firstRow) const;
  QString locationOf(std::size_t index, long long row) const;

  std::shared_ptr<const DecodingPlan> m_plan;
  std::unique_ptr<ArrowFileGroup> m_group;
  long long m_firstRow;
  std::vector<Column> m_columns;
};

}  // namespace kelvarin
