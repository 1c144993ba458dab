#include "cli/gel/table_difference.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "cli/gel/table_contents.h"
#include "cli/row_printer.h"
#include "columnar/reader/block_reader.h"

namespace kelvarin {

namespace {

using Kind = ColumnDifference::Kind;

// Its columns in the order of the rows.
std::vector<const GelColumn*> columnsOf(const GelFile& file) {
  std::vector<const GelColumn*> columns;
  for (const std::size_t index : file.columnsInRowOrder()) {
    columns.push_back(&file.column(index));
  }
  return columns;
}

// A column that both tables have with the same type.
struct Common {
  std::string name;
  std::size_t left = 0;  // its indices in the files
  std::size_t right = 0;
};

std::size_t indexIn(const GelFile& file, const GelColumn& column) {
  return static_cast<std::size_t>(&column - file.columns().data());
}

std::vector<Common> compareColumns(const GelFile& left, const GelFile& right,
                                   std::vector<ColumnDifference>& differences) {
  const auto leftColumns = columnsOf(left);
  const auto rightColumns = columnsOf(right);
  std::vector<bool> isKnown(rightColumns.size(), false);
  std::vector<Common> common;
  for (std::size_t i = 0; i < leftColumns.size(); ++i) {
    const GelColumn& a = *leftColumns[i];
    std::size_t j = 0;
    while (j < rightColumns.size() && (isKnown[j] || rightColumns[j]->name != a.name)) {
      ++j;
    }
    if (j == rightColumns.size()) {
      differences.push_back({Kind::onlyLeft, a.name, {}, {}});
      continue;
    }
    isKnown[j] = true;
    const GelColumn& b = *rightColumns[j];
    if (a.type != b.type) {
      differences.push_back({Kind::type, a.name, std::string(1, static_cast<char>(a.type)),
                             std::string(1, static_cast<char>(b.type))});
      continue;
    }
    if (a.storage != b.storage) {
      differences.push_back(
          {Kind::storage, a.name, storageWord(a.storage), storageWord(b.storage)});
    }
    if (i != j) {
      differences.push_back({Kind::position, a.name, std::to_string(i), std::to_string(j)});
    }
    common.push_back({a.name, indexIn(left, a), indexIn(right, b)});
  }
  for (std::size_t j = 0; j < rightColumns.size(); ++j) {
    if (!isKnown[j]) {
      differences.push_back({Kind::onlyRight, rightColumns[j]->name, {}, {}});
    }
  }
  return common;
}

// The rows of some columns of a table, of which many at a time can be looked at.
class TableRows {
 public:
  explicit TableRows(std::unique_ptr<BlockReader> reader) : m_reader(std::move(reader)) {}

  // Of the current batch; 0 at the end. False: rows cannot be read.
  bool findRows(std::size_t& rows) {
    while (m_batch == nullptr || m_next == m_batch->rowCount()) {
      const ReadEvent event = m_reader->next();
      if (event.kind == ReadEvent::Kind::end) {
        rows = 0;
        return true;
      }
      if (event.kind != ReadEvent::Kind::rows) {
        return false;
      }
      m_batch = event.batch;
      m_next = 0;
    }
    rows = m_batch->rowCount() - m_next;
    return true;
  }
  const BatchColumn& column(std::size_t index) const { return m_batch->column(index); }
  std::size_t storedRow(std::size_t row) const { return m_batch->storedRow(m_next + row); }
  bool isContiguous() const { return m_batch->selection() == nullptr; }
  void pass(std::size_t rows) { m_next += rows; }

 private:
  std::unique_ptr<BlockReader> m_reader;
  RowBatchPointer m_batch;
  std::size_t m_next = 0;
};

bool areSame(MetaTypeColumn type, const unsigned char* a, const unsigned char* b) {
  if (type == MetaTypeColumn::number) {
    const double left = numberFromBytes(a);
    const double right = numberFromBytes(b);
    return hasSameBits(left, right) ||
           (std::isnan(left) && std::isnan(right) && !isNullNumber(left) && !isNullNumber(right));
  }
  if (type == MetaTypeColumn::key) {
    const std::uint32_t left = keyFromBytes(a);
    const std::uint32_t right = keyFromBytes(b);
    return left == right || (isNullKey(left) && isNullKey(right));
  }
  return isNullText(a) == isNullText(b) && textFromBytes(a) == textFromBytes(b);
}

class Comparison {
 public:
  Comparison(const std::vector<Common>& columns, TableRows& left, TableRows& right)
      : m_columns(columns), m_left(left), m_right(right), m_counts(columns.size(), 0) {}

  void compare(std::size_t rows) {
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (!haveSameBytes(i, rows)) {
        compareColumn(i, rows);
      }
    }
    m_row += rows;
  }
  void finish(TableDifference& difference) {
    difference.first = m_first;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (m_counts[i] > 0) {
        difference.differingRows.push_back({m_columns[i].name, m_counts[i]});
      }
    }
  }

 private:
  // Numbers and keys; of texts it is not known.
  bool haveSameBytes(std::size_t index, std::size_t rows) const {
    const BatchColumn& left = m_left.column(index);
    const std::size_t size = fixedSizeOf(left.type());
    return size != 0 && m_left.isContiguous() && m_right.isContiguous() &&
           std::memcmp(left.value(m_left.storedRow(0)),
                       m_right.column(index).value(m_right.storedRow(0)), size * rows) == 0;
  }

  void compareColumn(std::size_t index, std::size_t rows) {
    const BatchColumn& left = m_left.column(index);
    const BatchColumn& right = m_right.column(index);
    for (std::size_t row = 0; row < rows; ++row) {
      const unsigned char* a = left.value(m_left.storedRow(row));
      const unsigned char* b = right.value(m_right.storedRow(row));
      if (areSame(left.type(), a, b)) {
        continue;
      }
      ++m_counts[index];
      if (!m_first || m_row + row < m_first->row) {
        m_first = {m_row + row,
                   m_columns[index].name,
                   cellOf(left.type(), a),
                   cellOf(left.type(), b),
                   jsonTextOf(left.type(), a),
                   jsonTextOf(left.type(), b)};
      }
    }
  }

  const std::vector<Common>& m_columns;
  TableRows& m_left;
  TableRows& m_right;
  std::vector<std::uint64_t> m_counts;
  std::uint64_t m_row = 0;
  std::optional<ValueDifference> m_first;
};

// The error says which table cannot be read.
Status<std::string> compareRows(const GelFile& left, const GelFile& right,
                                const std::vector<Common>& columns, TableDifference& difference) {
  std::vector<std::size_t> leftColumns;
  std::vector<std::size_t> rightColumns;
  for (const Common& column : columns) {
    leftColumns.push_back(column.left);
    rightColumns.push_back(column.right);
  }
  auto leftReader = BlockReader::open(left, leftColumns);
  auto rightReader = BlockReader::open(right, rightColumns);
  if (!leftReader || !rightReader) {
    return Failure{leftReader ? rightReader.error() : leftReader.error()};
  }
  TableRows leftRows(std::move(*leftReader));
  TableRows rightRows(std::move(*rightReader));
  Comparison comparison(columns, leftRows, rightRows);
  for (;;) {
    std::size_t onLeft = 0;
    std::size_t onRight = 0;
    if (!leftRows.findRows(onLeft)) {
      return Failure{left.path()};
    }
    if (!rightRows.findRows(onRight)) {
      return Failure{right.path()};
    }
    difference.leftRows += onRight == 0 ? onLeft : std::min(onLeft, onRight);
    difference.rightRows += onLeft == 0 ? onRight : std::min(onLeft, onRight);
    if (onLeft == 0 && onRight == 0) {
      break;
    }
    const std::size_t both = std::min(onLeft, onRight);
    if (both > 0) {
      comparison.compare(both);
    }
    leftRows.pass(both > 0 ? both : onLeft);
    rightRows.pass(both > 0 ? both : onRight);
  }
  comparison.finish(difference);
  return Done{};
}

}  // namespace

Result<TableDifference, std::string> differenceOf(const GelFile& left, const GelFile& right) {
  TableDifference difference;
  const std::vector<Common> common = compareColumns(left, right, difference.columns);
  if (common.empty()) {
    difference.leftRows = left.rowCount();
    difference.rightRows = right.rowCount();
    return difference;
  }
  if (const auto status = compareRows(left, right, common, difference); !status) {
    return Failure{status.error()};
  }
  return difference;
}

}  // namespace kelvarin
