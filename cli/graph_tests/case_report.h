// What came of the tests, in the forms that people and other programs read.
#pragma once

#include <vector>

#include <QByteArray>

#include "cli/graph_tests/case_run.h"

namespace kelvarin {

struct JudgedCase {
  TestCase test;
  CaseResult result;
};

QString reportForPeople(const std::vector<JudgedCase>& cases);
// The Test Anything Protocol, version 13.
QString reportAsTap(const std::vector<JudgedCase>& cases);
// The XML that continuous integration reads, as JUnit writes it.
QByteArray reportAsJUnit(const std::vector<JudgedCase>& cases);

std::size_t failuresOf(const std::vector<JudgedCase>& cases);

}  // namespace kelvarin
