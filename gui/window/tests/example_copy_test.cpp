// Examples are opened as copies: what was installed stays as it is, and a copy runs where it is
// saved.
#include <gtest/gtest.h>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "gui/window/example_copy.h"
#include "host/tables/table_actions.h"

namespace kelvarin {
namespace {

constexpr char kExample[] =
    "<KelvarinGraph version='1.0'><Parameters>"
    "<Parameter name='data' value='data/in.csv'/></Parameters><Actions>"
    "<ReadCSV name='in' file='${data}'/><ReadCSV name='other' file='other.csv'/>"
    "<ReadCSV name='far' file='../far.csv'/><WriteCSV name='out' file='out/out.csv'/>"
    "</Actions></KelvarinGraph>";

TEST(ExampleCopy, TakesTheDataThatItReadsAlongAndNothingElse) {
  QTemporaryDir folder;
  const auto path = [&folder](const char* name) { return folder.filePath(QLatin1String(name)); };
  QDir(folder.path()).mkpath("example/data");
  QDir(folder.path()).mkpath("mine");
  for (const char* name : {"example/data/in.csv", "example/other.csv", "example/more.csv",
                           "far.csv", "example/e.kelvarin", "mine/other.csv"}) {
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(name);
  }
  ActionCatalogue catalogue{nullptr, makeTableActions()};
  EditedGraph graph(catalogue);
  ASSERT_TRUE(graph.load(kExample, path("example/e.kelvarin")));
  ExampleCopy example(graph);
  QSignalSpy taken(&example, &ExampleCopy::filesTaken);
  QSignalSpy failed(&example, &ExampleCopy::failed);

  example.begin(path("example/e.kelvarin"));
  EXPECT_TRUE(example.isOpen());
  example.takeFilesTo(path("mine/e.kelvarin"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !taken.isEmpty() || !failed.isEmpty(); }));
  EXPECT_EQ(taken.value(0).value(0).toStringList(), QStringList{"data/in.csv"});
  EXPECT_FALSE(example.isOpen());
  QFile kept(path("mine/other.csv"));
  ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
  EXPECT_EQ(kept.readAll(), "mine/other.csv");

  // A file where a folder is needed.
  QFile blocked(path("data"));
  ASSERT_TRUE(blocked.open(QIODevice::WriteOnly));
  example.begin(path("example/e.kelvarin"));
  example.takeFilesTo(path("e.kelvarin"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !failed.isEmpty(); }));
  EXPECT_TRUE(failed[0][0].toString().contains("in.csv"));
}

}  // namespace
}  // namespace kelvarin
