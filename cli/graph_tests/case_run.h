// Runs one test of a graph, in a temporary folder and a process of its own.
//
// Threads: any number of tests at the same time.
#pragma once

#include <string>

#include <QStringList>

#include "cli/graph_tests/graph_cases.h"

namespace kelvarin {

struct CaseOptions {
  std::string plugin;
  int threads = 1;        // of each run
  int timeout = 60;       // in seconds
  bool isUpdate = false;  // what was written becomes what is expected
};

struct CaseResult {
  QString failure;  // null: passed
  double seconds = 0.0;
  QStringList updated;  // files that were written because of isUpdate
};

CaseResult runCase(const TestCase& test, const CaseOptions& options);

}  // namespace kelvarin
