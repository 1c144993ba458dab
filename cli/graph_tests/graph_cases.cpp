#include "cli/graph_tests/graph_cases.h"

#include <algorithm>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include "cli/graph_tests/messages.h"

namespace kelvarin {

namespace {

using Cases = std::vector<TestCase>;

const QString kTestSuffix = QStringLiteral(".test");
const QString kGraphSuffix = QStringLiteral(".kelvarin");

bool isTest(const QDir& folder) {
  return folder.exists(QStringLiteral("expected")) || folder.exists(QStringLiteral("input")) ||
         folder.exists(QStringLiteral("case.xml"));
}

Status<QString> addTestsOf(const QDir& tests, Cases& cases) {
  const QString base = tests.absolutePath().chopped(kTestSuffix.size());
  const QString graph = base + kGraphSuffix;
  if (!QFileInfo(graph).isFile()) {
    return Failure{test_messages::noGraph(tests.path(), graph)};
  }
  const QString name = QFileInfo(base).fileName();
  if (isTest(tests)) {
    cases.push_back({name, graph, tests.absolutePath()});
    return Done{};
  }
  for (const QString& each : tests.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
    cases.push_back({name + u'/' + each, graph, tests.absoluteFilePath(each)});
  }
  return Done{};
}

}  // namespace

Result<std::vector<TestCase>, QString> findTestCases(const std::string& path) {
  const QString given = QString::fromStdString(path);
  const QString absolute = QDir::cleanPath(QDir::current().absoluteFilePath(given));
  QStringList folders;
  if (absolute.endsWith(kGraphSuffix) && QFileInfo(absolute).isFile()) {
    folders += absolute.chopped(kGraphSuffix.size()) + kTestSuffix;
  } else if (absolute.endsWith(kTestSuffix)) {
    folders += absolute;
  } else {
    QDirIterator below(absolute, {u'*' + kTestSuffix}, QDir::Dirs | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (below.hasNext()) {
      folders += below.next();
    }
    folders.sort();
  }
  Cases cases;
  for (const QString& folder : folders) {
    if (!QFileInfo(folder).isDir()) {
      continue;
    }
    if (const auto added = addTestsOf(QDir(folder), cases); !added) {
      return Failure{added.error()};
    }
  }
  if (cases.empty()) {
    return Failure{test_messages::noTests(given)};
  }
  return cases;
}

}  // namespace kelvarin
