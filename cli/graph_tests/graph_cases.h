// The tests of graphs, as they lie in folders.
//
// Layout: the tests of `orders.kelvarin` are in `orders.test` beside it, one folder each, or in
// that folder itself where there is one test only. A test has the folders `input`, whose files
// replace those of the graph's folder, and `expected`, with the files that the run must have
// written; and `case.xml` with settings. All may be absent.
#pragma once

#include <string>
#include <vector>

#include <QString>

#include "base/result.h"

namespace kelvarin {

struct TestCase {
  QString name;    // for reports: "orders/no rows"
  QString graph;   // the file, absolute
  QString folder;  // of the test, absolute
};

// Of a graph, of a folder of tests, or of everything below a folder; in the order of their names.
Result<std::vector<TestCase>, QString> findTestCases(const std::string& path);

}  // namespace kelvarin
