// An opened columnar file as the interface shows it: its columns, its blocks and what the file says
// about the values in each.
//
// Layout of the file: docs/gel-format.md.
// Threads: any.
// Errors: those that reading the file has, in its words.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "columnar/reader/gel_file.h"
#include "host/contract/partial_source.h"
#include "library/runs/graph_text.h"
#include "library/runs/pulled_stream.h"

namespace kelvarin {

// What of a table is read, and how.
struct ScanSettings {
  std::optional<QStringList> columns;  // all where there is none
  TablePart part;
  QString blockFilter;  // empty: none
  bool skipsDamage = false;
  BatchForm form;
  bool isGathered = false;  // all rows come at once, as far as they can
  WorkSettings work;
};

class ColumnarTable {
 public:
  struct Column {
    std::string name;
    MetaTypeColumn type = MetaTypeColumn::text;
    int sortPosition = -1;  // among the columns that the rows are sorted on
    bool isDescending = false;
    int columnSet = 0;
    std::size_t index = 0;  // in GelFile::columns()
  };
  struct Block {
    std::uint64_t firstRow = 0;
    std::uint64_t rows = 0;
    bool isDamaged = false;
  };
  struct Statistics {
    bool hasNulls = false;
    bool hasBounds = false;
    bool hasNotANumber = false;
    double low = 0.0;
    double high = 0.0;
    std::string lowText;
    std::string highText;
  };

  static Outcome<std::shared_ptr<ColumnarTable>> open(const QString& path, bool acceptsIncomplete);

  const GelFile& file() const { return *m_file; }
  std::uint64_t rowCount() const { return m_rowCount; }
  // In the order of the rows.
  const std::vector<Column>& columns() const { return m_columns; }
  const std::vector<Block>& blocks() const { return m_blocks; }
  // Null: its descriptor is damaged. Lives as long as the table.
  const Statistics* statistics(std::size_t block, std::size_t column);

  // Opens the file anew, so that the stream needs nothing of this object.
  Outcome<std::unique_ptr<PulledStream>> scan(const ScanSettings& settings) const;

 private:
  ColumnarTable(const QString& path, bool acceptsIncomplete, std::unique_ptr<GelFile> file);

  void readColumns();
  void readBlocks();
  void addLostBlocks(std::uint64_t firstRow, std::uint64_t lastRow);
  void keepDescriptors();
  Statistics readStatistics(const unsigned char* descriptor, std::size_t column) const;
  Outcome<Graph> graphOf(const ScanSettings& settings, const ActionCatalogue& catalogue) const;
  std::size_t mostRowsOf(const TablePart& part) const;
  void appendFilter(const QString& filter, GraphText& graph) const;

  const QString m_path;  // absolute
  const bool m_acceptsIncomplete;
  const std::unique_ptr<GelFile> m_file;
  std::uint64_t m_rowCount = 0;
  std::vector<Column> m_columns;
  std::vector<Block> m_blocks;

  std::mutex m_mutex;                                     // guards what follows
  std::vector<std::vector<unsigned char>> m_descriptors;  // by block, from the first question on
  std::map<std::pair<std::size_t, std::size_t>, Statistics> m_statistics;
};

}  // namespace kelvarin
