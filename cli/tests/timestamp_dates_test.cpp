// Timestamps of Arrow files reach expressions as dates, with the date format that the run's log
// names.
#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "arrow/array/builder_time.h"
#include "arrow/io/file.h"
#include "arrow/ipc/writer.h"
#include "arrow/table.h"
#include "host/engine/graph_reader.h"
#include "host/engine/run_graph.h"
#include "host/tables/table_actions.h"

namespace kelvarin {
namespace {

using Ticks = std::vector<std::int64_t>;

class TimestampDates : public ::testing::Test {
 protected:
  QString path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }

  void writeTimestamps(const std::shared_ptr<arrow::DataType>& type, const Ticks& ticks) {
    arrow::TimestampBuilder builder(type, arrow::default_memory_pool());
    ASSERT_TRUE(builder.AppendValues(ticks).ok());
    const auto table =
        arrow::Table::Make(arrow::schema({arrow::field("ts", type)}), {*builder.Finish()});
    auto stream = *arrow::io::FileOutputStream::Open(path("t.arrow").toStdString());
    auto writer = *arrow::ipc::MakeFileWriter(stream, table->schema());
    ASSERT_TRUE(writer->WriteTable(*table).ok() && writer->Close().ok());
  }

  RunResult run(const QByteArray& actions, const QByteArray& links) {
    static const ActionCatalogue catalogue(std::move(*PluginLibrary::load(KELVARIN_PLUGIN)),
                                           makeTableActions());
    const QByteArray text = "<KelvarinGraph version='1.0'><Actions>" + actions +
                            "</Actions><Links>" + links + "</Links></KelvarinGraph>";
    auto graph = parseGraph(text, path("g.kelvarin"), catalogue);
    RunRecord record;
    return graph ? runGraph(*graph, record) : RunResult{};
  }

  // The date format that the log of a reading run names.
  QByteArray namedFormat() {
    const RunResult result = run("<ReadArrow name='in' file='t.arrow'/><Discard name='out'/>",
                                 "<Link from='in' to='out'/>");
    EXPECT_TRUE(result.isOk());
    static const QRegularExpression format(QStringLiteral("dateFormat='([^']*)'"));
    return result.log.empty() ? QByteArray()
                              : format.match(result.log.front().text).captured(1).toUtf8();
  }

  // Milliseconds since 1970 of each row, and the same date as the expression prints it.
  QList<QByteArray> datesReadWith(const QByteArray& format) {
    const RunResult result = run(
        "<ReadArrow name='in' file='t.arrow'/>"
        "<Calculator name='c' elapsedTimeUnit='0' referenceTime='00010101 00:00:00' dateFormat='" +
            format +
            "'><InputVars><InputVar column='ts' isNumber='0' meta='U'/></InputVars><OutputVars>"
            "<OutputVar name='ms'>round((toETF(ts)-62135596800)*1000)</OutputVar>"
            "<OutputVar name='again' meta='U' isNumber='0'>dateAdd(ts,0,0,0)</OutputVar>"
            "</OutputVars></Calculator><WriteCSV name='out' file='out.csv'/>",
        "<Link from='in' to='c'/><Link from='c' to='out'/>");
    EXPECT_TRUE(result.isOk());
    QFile file(path("out.csv"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    lines.removeFirst();
    return lines;
  }

 private:
  QTemporaryDir m_folder;
};

TEST_F(TimestampDates, AreReadWithTheFormatThatTheLogNames) {
  // Per second of the unit, and the digits after it.
  const Ticks seconds{0, -1, 951825599, -2208988801, -62135596800, 253402300799};
  for (const char* zone : {"", "America/New_York"}) {
    for (int digits = 0; digits <= 9; digits += 3) {
      std::int64_t perSecond = 1;
      std::int64_t fraction = 0;
      for (int digit = 1; digit <= digits; ++digit) {
        perSecond *= 10;
        fraction = 10 * fraction + digit;
      }
      Ticks ticks;
      QList<QByteArray> expected;
      for (const std::int64_t second : seconds) {
        // Nanoseconds in 64 bits reach from 1678 to 2261.
        if (digits < 9 || std::abs(second) < 9'000'000'000) {
          ticks.push_back(second * perSecond + fraction);
          const std::int64_t milliseconds = second * 1000 + (digits > 0 ? 123 : 0);
          expected += QByteArray::number(static_cast<qlonglong>(milliseconds));
        }
      }
      const auto unit = static_cast<arrow::TimeUnit::type>(digits / 3);
      writeTimestamps(arrow::timestamp(unit, zone), ticks);
      const QList<QByteArray> lines = datesReadWith(namedFormat());
      ASSERT_EQ(lines.size(), expected.size());
      for (qsizetype row = 0; row < lines.size(); ++row) {
        const QList<QByteArray> values = lines[row].split(',');
        EXPECT_EQ(values[1], expected[row]) << lines[row].toStdString();
        // The same text but for the digits below the millisecond.
        QByteArray shortened = values[0];
        shortened.remove(23, digits > 3 ? digits - 3 : 0);
        EXPECT_EQ(values[2], shortened);
      }
    }
  }
}

}  // namespace
}  // namespace kelvarin
