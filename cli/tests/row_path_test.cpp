// From file to file nothing is allocated for a row: twice as many rows take as many allocations,
// but for those of blocks and batches.
#include <atomic>

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "host/engine/graph_reader.h"
#include "host/engine/run_graph.h"
#include "host/tables/table_actions.h"

// The sanitizers have an allocator of their own.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {
std::atomic<long long> allocations = 0;
}

// Counts what the whole process asks for, on all threads, that of libraries included.
extern "C" void* __libc_malloc(std::size_t size);
extern "C" __attribute__((visibility("default"))) void* malloc(std::size_t size) {
  allocations.fetch_add(1, std::memory_order_relaxed);
  return __libc_malloc(size);
}

namespace kelvarin {
namespace {

class RowPath : public ::testing::TestWithParam<std::tuple<const char*, const char*>> {
 protected:
  void SetUp() override {
    for (const auto& [name, rows] : {std::pair("few", kFewRows), std::pair("many", kManyRows)}) {
      writeTable(QString::fromLatin1(name), rows);
      ASSERT_TRUE(run("<ReadCSV name='in' file='" + QByteArray(name) +
                          ".csv'/>"
                          "<writeColumnarGel name='out' file='" +
                          name + ".cgel_kelvarin'/>",
                      "<Link from='in' to='out'/>"));
    }
  }

  void writeTable(const QString& name, long long rows) {
    QFile file(m_folder.filePath(name + ".csv"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("id,price,quantity,city\n");
    for (long long row = 0; row < rows; ++row) {
      file.write(QByteArray::number(row) + "," + QByteArray::number(row % 977 / 8.0) + "," +
                 QByteArray::number(row % 20) + ",a city of the name " +
                 QByteArray::number(row % 50) + "\n");
    }
  }

  bool run(const QByteArray& actions, const QByteArray& links) {
    static const ActionCatalogue catalogue(std::move(*PluginLibrary::load(KELVARIN_PLUGIN)),
                                           makeTableActions());
    const QByteArray text = "<KelvarinGraph version='1.0'><Actions>" + actions +
                            "</Actions><Links>" + links + "</Links></KelvarinGraph>";
    auto graph = parseGraph(text, m_folder.filePath("graph.kelvarin"), catalogue);
    RunRecord record;
    return graph && runGraph(*graph, record, {}).isOk();
  }

  long long allocationsOfRun(const QByteArray& name) {
    const auto& [source, sink] = GetParam();
    const QByteArray actions =
        QByteArray(source).replace("NAME", name) +
        "<Calculator name='c'><InputVars><InputVar column='price'/><InputVar column='quantity'/>"
        "</InputVars><OutputVars><OutputVar name='total'>price*quantity</OutputVar><OutputVar "
        "name='root'>sqrt(price)</OutputVar></OutputVars></Calculator><FilterRows name='f'>"
        "<Expression>total &gt; 300</Expression><InputVars><InputVar column='total'/></InputVars>"
        "</FilterRows>" +
        sink;
    const long long before = allocations;
    EXPECT_TRUE(run(actions,
                    "<Link from='in' to='c'/><Link from='c' to='f'/>"
                    "<Link from='f' to='out'/>"));
    return allocations - before;
  }

  static constexpr long long kFewRows = 30'000;
  static constexpr long long kManyRows = 230'000;

  QTemporaryDir m_folder;
};

TEST_P(RowPath, AllocatesNothingARow) {
  (void)allocationsOfRun("few");
  const long long few = allocationsOfRun("few");
  const long long many = allocationsOfRun("many");
  EXPECT_GT(few, 100) << "the counter does not count";
  EXPECT_LT(many - few, (kManyRows - kFewRows) / 40);
}

INSTANTIATE_TEST_SUITE_P(
    FilesAndSinks, RowPath,
    ::testing::Combine(
        ::testing::Values("<ReadCSV name='in' file='NAME.csv'/>",
                          "<ReadCSV name='in' file='NAME.csv' sortedOn='id 0'/>",
                          "<ReadColumnarGel name='in' fileName='NAME.cgel_kelvarin'/>"),
        ::testing::Values("<Discard name='out'/>", "<WriteCSV name='out' file='out.csv'/>",
                          "<writeColumnarGel name='out' file='out.cgel_kelvarin'/>")));

}  // namespace
}  // namespace kelvarin

#endif
