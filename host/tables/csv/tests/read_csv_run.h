// A run of ReadCSV over a file, for tests.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "host/tables/csv/read_csv.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {

// A run of ReadCSV over a file with these bytes.
class ReadCsvRun {
 public:
  explicit ReadCsvRun(const std::string& bytes, const std::string& attributes = {},
                      const std::string& children = {})
      : m_path(m_folder.write("t.csv", bytes)),
        m_harness(RowHarness::of<ReadCsv>("<ReadCSV name='r' file='" + m_path + "' " + attributes +
                                          ">" + children + "</ReadCSV>")) {
    m_rows = m_harness.rows(0);
  }

  const Rows& rows() const { return m_rows; }
  std::string columns() const { return m_harness.columns(0); }
  bool hasFailed() const { return m_harness.hasFailed(); }
  // The log with the file's path as "FILE".
  std::string log() const {
    std::string all;
    for (std::string line : m_harness.log()) {
      for (std::size_t at; (at = line.find(m_path)) != std::string::npos;) {
        line.replace(at, m_path.size(), "FILE");
      }
      all += line + '\n';
    }
    return all;
  }

 private:
  TableFolder m_folder;
  std::string m_path;
  RowHarness m_harness;
  Rows m_rows;
};

// The run fails with a message that contains each of the parts.
inline void expectFailure(const ReadCsvRun& run, const Strings& parts) {
  EXPECT_TRUE(run.hasFailed());
  for (const std::string& part : parts) {
    EXPECT_NE(run.log().find(part), std::string::npos) << part << " is not in: " << run.log();
  }
}

}  // namespace kelvarin::testing
