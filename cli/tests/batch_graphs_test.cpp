// A run yields the same for any number of threads and any size of batches: the same bytes in its
// files, the same numbers of rows and of missing values, the same log.
//
// Random graphs with the plug-in's actions, between every kind of source and of sink: chains that
// fork and go on from both pins of filters, rows that fail and files that are wrong.
#include "cli/tests/drawn_graphs.h"

namespace kelvarin {
namespace {

class Drawing {
 public:
  Drawing(Dice& dice, QByteArray source, const Drawn& drawn) : m_dice(dice), m_drawn(drawn) {
    m_actions = std::move(source);
    draw("source", 0, 1 + m_dice.below(5));
    if (m_dice.oneIn(4)) {
      draw("source", 0, m_dice.below(3));
    }
  }

  QByteArray actions() const { return (m_hasVectors ? kVectors : QByteArray()) + m_actions; }
  const QByteArray& links() const { return m_links; }

 private:
  // So many actions below a pin, with what branches off them, and sinks at the ends.
  void draw(const QByteArray& from, int fromPin, int actions) {
    const QByteArray name = (actions == 0 ? "x" : "n") + QByteArray::number(m_names++);
    m_links += link(from, name, fromPin) + "\n";
    if (actions == 0) {
      m_actions += sinkXml(m_dice, name) + "\n";
      return;
    }
    const int kind = m_dice.below(16);
    if (kind < 7) {
      m_actions += filterXml(m_dice, m_drawn, name);
    } else if (kind < 13) {
      m_actions += calculatorXml(m_dice, m_drawn, name);
    } else if (kind < 14) {
      m_actions += rowActionXml(m_dice, name);
    } else {
      m_actions += vectorizedXml(m_dice, m_drawn, name);
      m_links += link("vectors", name, 0, 1) + "\n";
      m_hasVectors = true;
    }
    m_actions += "\n";
    draw(name, kind < 7 && m_dice.oneIn(4) ? 1 : 0, actions - 1);
    if (m_dice.oneIn(9)) {
      draw(name, kind < 7 ? m_dice.below(2) : 0, m_dice.below(actions));
    }
  }

  Dice& m_dice;
  const Drawn m_drawn;
  int m_names = 0;
  bool m_hasVectors = false;
  QByteArray m_actions;
  QByteArray m_links;
};

class BatchGraphs : public DrawnGraphs {
 protected:
  void writeAllTables(Dice& dice, int rows) {
    writeTables(dice, rows);
    writeFaultyTable(dice, rows);
    m_inline = "<InlineTable name='source' sortedOn='id 0'>";
    for (const char* column : {"id", "a", "b"}) {
      m_inline += "<Column name='" + QByteArray(column) + "' meta='F'/>";
    }
    m_inline += "<Column name='k' meta='K'/><Column name='t' meta='U'/>";
    for (int i = 0; i < std::min(rows, 100); ++i) {
      m_inline += "<Row><V>" + QByteArray::number(i) + "</V><V>" + number(dice) + "</V><V>" +
                  number(dice) + "</V><V>" + QByteArray::number(dice.below(6)) +
                  (dice.oneIn(5) ? "</V><V null='1'>" : "</V><V>") +
                  QByteArray::number(dice.below(9)) + "</V></Row>";
    }
    m_inline += "</InlineTable>";
  }

  Drawing drawGraph(Dice& dice) const {
    switch (dice.below(8)) {
      case 0:
        return {dice, kNumbersAlone, {.hasTexts = false}};
      case 1:
        return {dice, m_inline, {}};
      case 2:
        return {dice,
                QByteArray("<ReadCSV name='source' file='faulty.csv'") +
                    (dice.oneIn(2) ? "" : " onBadValue='null'") +
                    (dice.oneIn(2) ? "" : " sortedOn='id 0'") + kColumns,
                {}};
      default:
        return {dice, dice.oneOf(kSources), {}};
    }
  }

  // Everything by which a user can distinguish one run from another.
  QByteArray traceOf(const QByteArray& text, int threads, int rowsInBatch) {
    removeFiles(kWritten);
    ExecutionOptions options;
    options.rowsInBatch = rowsInBatch;
    options.isOversubscribed = true;
    options.countsValues = true;
    options.reportsActions = true;
    const RunResult result = run(text, options, threads);
    QByteArray trace = "state " + QByteArray::number(static_cast<int>(result.state)) + "\n";
    for (const LogLine& line : result.log) {
      trace += line.action.toUtf8() + ": " + line.text.toUtf8() + "\n";
    }
    for (const ActionResult& action : result.actions) {
      trace +=
          action.name.toUtf8() + " phase " + QByteArray::number(static_cast<int>(action.phase));
      for (const auto* counts : {&action.rowsIn, &action.rowsOut}) {
        for (const long long count : *counts) {
          trace += " " + QByteArray::number(count);
        }
      }
      trace += " " + QByteArray::number(action.report.blocksRead);
      for (const OutputReport& output : action.report.outputs) {
        trace += ", " + output.name.toUtf8() + " " + output.engine.toUtf8();
        for (const long long count : {output.nulls, output.nans, output.failures}) {
          trace += " " + QByteArray::number(count);
        }
      }
      trace += "\n";
    }
    return trace + contentOf(kWritten);
  }

 private:
  // One of the faults that a file may have, somewhere in it.
  void writeFaultyTable(Dice& dice, int rows) const {
    constexpr const char* kFaulty[] = {"7,x1,2,3,t\n", "7,1,2,-3,t\n",  "-1,1,2,3,t\n",
                                       "7,1,2,3\n",    "7,1,2,3,t,u\n", "7,1,2,3,\"t\n"};
    QFile file(m_folder.filePath("faulty.csv"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("id,a,b,k,t\n");
    const int faulty = rows == 0 ? 0 : dice.below(rows);
    for (int i = 0; i < rows; ++i) {
      file.write(QByteArray::number(i) + "," + number(dice) + ",1.5,2,some text\n");
      if (i == faulty) {
        file.write(dice.oneOf(kFaulty));
      }
    }
  }

  static constexpr char kColumns[] =
      "><Column name='id' meta='F'/><Column name='a' meta='F'/><Column name='b' meta='F'/>"
      "<Column name='k' meta='K'/><Column name='t' meta='U'/></ReadCSV>";
  const QStringList kWritten{"x*.*"};
  QByteArray m_inline;
};

// More of them with KELVARIN_BATCH_GRAPHS; KELVARIN_BATCH_GRAPHS_FROM is the number of the first.
TEST_F(BatchGraphs, DependNeitherOnThreadsNorOnTheSizeOfBatches) {
  constexpr int kRowCounts[] = {0, 1, 7, 9, 40, 1023, 2500, 9000, 30000};
  constexpr int kThreads[] = {1, 2, 3, 8};
  constexpr int kRowsInBatch[] = {0, 1, 2, 7, 1000};
  constexpr int kRunsOfEach = 6;
  const int first = graphCount("KELVARIN_BATCH_GRAPHS_FROM", 0) / 8 * 8;
  const int graphs = graphCount("KELVARIN_BATCH_GRAPHS", 160);
  int complete = 0;
  for (int seed = first; seed < first + graphs && !HasFailure(); ++seed) {
    Dice dice(static_cast<unsigned>(seed));
    if (seed % 8 == 0) {
      writeAllTables(dice, kRowCounts[(seed / 8) % 9]);
    }
    const Drawing drawing = drawGraph(dice);
    const QByteArray text = document(drawing.actions(), drawing.links());
    const QByteArray expected = traceOf(text, 1, 1);
    for (int i = seed * kRunsOfEach; i < (seed + 1) * kRunsOfEach && !HasFailure(); ++i) {
      const int threads = kThreads[i % 4];
      const int rowsInBatch = kRowsInBatch[i % 5];
      const QByteArray seen = traceOf(text, threads, rowsInBatch);
      EXPECT_TRUE(seen == expected)
          << "seed " << seed << ", " << threads << " threads, batches of " << rowsInBatch << "\n"
          << text.data() << "\n"
          << firstDifference(expected, seen);
    }
    complete += expected.startsWith("state 0") ? 1 : 0;
  }
  EXPECT_GT(complete, graphs / 3);  // the others fail in the midst
}

// Texts of these columns have shapes and differ, so that they are kept as their fields until a
// filter behind the columnar file needs them.
TEST_F(BatchGraphs, FiltersOfStoredFieldsKeepTheRowsThatFiltersOfTextsDo) {
  Dice dice(5);
  QFile file(m_folder.filePath("shaped.csv"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("n,d,u,m,h\n");
  constexpr const char* kHosts[] = {"a", "bc", "example"};
  const auto two = [&](int end) { return QByteArray::number(100 + dice.below(end)).mid(1); };
  for (int i = 0; i < 9000; ++i) {
    const QByteArray day = QByteArray::number(1000 + dice.below(9000)) + "-0" +
                           QByteArray::number(1 + dice.below(9)) + "-1" +
                           QByteArray::number(dice.below(9)) + " 0" +
                           QByteArray::number(dice.below(9)) + ":" + two(60) + ":" + two(60);
    const QByteArray hex = QByteArray::number(0x10000000u + dice.below(0x70000000), 16);
    file.write(QByteArray::number(i) + "," + (dice.oneIn(90) ? QByteArray() : day) +
               ",mail:" + dice.oneOf(kHosts) + ".org/" + QByteArray::number(dice.below(99999)) +
               "," + QByteArray::number(dice.below(999999) / 100.0, 'f', 2) + "," +
               (dice.oneIn(50) ? "none" : hex) + "\n");
  }
  file.close();
  ASSERT_TRUE(
      run(document("<ReadCSV name='source' file='shaped.csv'><Column name='n' meta='F'/><Column "
                   "name='d' meta='U'/><Column name='u' meta='U'/><Column name='m' meta='U'/>"
                   "<Column name='h' meta='U'/></ReadCSV><writeColumnarGel name='sink' "
                   "file='in.cgel_kelvarin' nRowsInBlock='2100'/>",
                   link("source", "sink")))
          .isOk());
  bool isOther = false;
  for (const char* condition : {"d>\"3024-05\" && d<=\"7000-07-13 05:30:00\"", "d==u", "\"5\"<m",
                                "h!=\"none\"", "u>=\"mail:b\" && u<\"mail:bc.org/5\"",
                                "m==\"17.25\" || d<\"1100\"", "contains(u,\"77\") || h<\"2\"",
                                "d==\"\" || d>\"9\"", "h>=\"7\" && n>4000 && _n%2==0", "n<20"}) {
    const QByteArray text = document(
        "<ReadColumnarGel name='source' fileName='in.cgel_kelvarin'/><FilterRows name='f'"
        "><Expression>" +
            escaped(condition) +
            "</Expression><InputVars><InputVar column='n'/><InputVar column='d' isNumber='0'/>"
            "<InputVar column='u' isNumber='0'/><InputVar column='m' isNumber='0'/><InputVar "
            "column='h' isNumber='0'/></InputVars></FilterRows><WriteCSV name='x' file='x.csv'/>" +
            (isOther ? "<WriteCSV name='x1' file='x1.csv'/>" : ""),
        link("source", "f") + link("f", "x") + (isOther ? link("f", "x1", 1) : ""));
    isOther = !isOther;
    const QByteArray expected = traceOf(text, 1, 1);
    for (const int threads : {1, 3}) {
      const QByteArray seen = traceOf(text, threads, 0);
      EXPECT_TRUE(seen == expected) << condition << "\n" << firstDifference(expected, seen);
    }
  }
}

// The filter gets a batch of ten rows, keeps every second one, and the last action ends at the
// fifth of these; row by row nobody reads the tenth.
TEST_F(BatchGraphs, CountRowsAboveAnEarlyEndAsRowByRow) {
  QByteArray source = "<InlineTable name='source'><Column name='a' meta='F'/>";
  for (int i = 0; i < 10; ++i) {
    source += "<Row><V>" + QByteArray::number(i) + "</V></Row>";
  }
  const QByteArray text =
      document(source +
                   "</InlineTable><FilterRows name='n0'><Expression>a%2==0</Expression><InputVars>"
                   "<InputVar column='a'/></InputVars></FilterRows><RowAction name='n1' ends='5'/>"
                   "<Discard name='x'/>",
               link("source", "n0") + link("n0", "n1") + link("n1", "x"));
  const QByteArray expected = traceOf(text, 1, 1);
  const QByteArray seen = traceOf(text, 1, 0);
  EXPECT_TRUE(seen == expected) << firstDifference(expected, seen);
}

// The calculator computes two of the three rows that the filter keeps, and fails at the last one;
// row by row nobody asks for the row behind it.
TEST_F(BatchGraphs, CountRowsAboveAFailureAsRowByRow) {
  QByteArray source = "<InlineTable name='source'><Column name='a' meta='F'/>";
  for (int i = 0; i < 8; ++i) {
    source += "<Row><V>" + QByteArray::number(i) + "</V></Row>";
  }
  const QByteArray text = document(
      source +
          "</InlineTable><FilterRows name='n0'><Expression>a%3==0</Expression><InputVars>"
          "<InputVar column='a'/></InputVars></FilterRows><Calculator name='n1' castToKey1='2'>"
          "<InputVars><InputVar column='a'/></InputVars><OutputVars><OutputVar name='k' meta='K'>"
          "5-a</OutputVar></OutputVars></Calculator><Discard name='x1'/><Discard name='x2'/>",
      link("source", "n0") + link("n0", "n1") + link("n1", "x1") + link("n1", "x2"));
  const QByteArray expected = traceOf(text, 1, 1);
  const QByteArray seen = traceOf(text, 1, 0);
  EXPECT_TRUE(seen == expected) << firstDifference(expected, seen);
}

// The fifth row fails. The reader that asked for it has taken the four before, as it does where it
// is the only one.
TEST_F(BatchGraphs, AReaderOfAForkGetsTheRowsBeforeAFailure) {
  QByteArray source = "<InlineTable name='source'><Column name='a' meta='F'/>";
  for (const char* value : {"1", "2", "3", "4", "-5", "6"}) {
    source += "<Row><V>" + QByteArray(value) + "</V></Row>";
  }
  const RunResult result = run(document(
      source +
          "</InlineTable><Calculator name='n0' castToKey1='2'><InputVars><InputVar column='a'/>"
          "</InputVars><OutputVars><OutputVar name='k' meta='K'>a</OutputVar></OutputVars>"
          "</Calculator><Discard name='x1'/><Discard name='x2'/>",
      link("source", "n0") + link("n0", "x1") + link("n0", "x2")));
  EXPECT_EQ(result.state, GlobalParameters::RunningState::failed);
  EXPECT_EQ(result.actions[2].rowsIn, std::vector<long long>{4});
}

}  // namespace
}  // namespace kelvarin
