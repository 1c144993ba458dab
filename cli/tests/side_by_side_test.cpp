// Graphs that run at the same time in one process: each has its own log, its own end and its own
// files, as if it ran alone.
#include "cli/tests/drawn_graphs.h"

#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/testing/recording_host.h"

namespace kelvarin {
namespace {

using State = GlobalParameters::RunningState;
using testing::RecordingHost;
using testing::Strings;

// A run on a thread of its own, with a host of its own.
class RunBeside {
 public:
  explicit RunBeside(Graph graph) : m_graph(std::move(graph)) {
    m_thread = std::thread([this] {
      RecordingHost host;
      m_result = runGraph(m_graph, m_record, {});
      m_hostLog = host.log();
    });
  }
  ~RunBeside() { wait(); }
  RunBeside(const RunBeside&) = delete;
  RunBeside& operator=(const RunBeside&) = delete;

  void stop() { m_record.stop(); }
  const RunResult& wait() {
    if (m_thread.joinable()) {
      m_thread.join();
    }
    return m_result;
  }
  const Strings& hostLog() const { return m_hostLog; }

 private:
  Graph m_graph;
  RunRecord m_record;
  RunResult m_result;
  Strings m_hostLog;
  std::thread m_thread;
};

// The writing end of a named pipe, so that a test says when a source has rows and when it ends.
class Pipe {
 public:
  explicit Pipe(const QString& name) : m_name(QFile::encodeName(name)) {
    EXPECT_EQ(::mkfifo(m_name.constData(), 0600), 0);
  }
  ~Pipe() { close(); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  // Returns when a source has opened the pipe: then all sinks of its graph have been opened.
  void write(const QByteArray& bytes) {
    m_descriptor = ::open(m_name.constData(), O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(::write(m_descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())),
              bytes.size());
  }
  void close() {
    if (m_descriptor >= 0) {
      ::close(std::exchange(m_descriptor, -1));
    }
  }

 private:
  QByteArray m_name;
  int m_descriptor = -1;
};

Strings logOf(const RunResult& result) {
  Strings lines;
  for (const LogLine& line : result.log) {
    lines.push_back(line.action.toStdString() + ": " + line.text.toStdString());
  }
  return lines;
}

// What a host shows of it.
Strings shownOf(const RunResult& result) {
  const char* const heads[] = {"", "error: ", "warning: ", "info: "};
  Strings lines;
  for (const LogLine& line : result.log) {
    if (!line.details.explains) {
      lines.push_back(heads[static_cast<int>(line.level)] + line.text.toStdString());
    }
  }
  return lines;
}

class SideBySide : public DrawnGraphs {
 protected:
  void SetUp() override {
    Dice dice(1);
    writeTables(dice, 4000);
  }

  Graph read(const char* name, const QByteArray& actions, const QByteArray& links) {
    auto graph = parseGraph(document(actions, links), m_folder.filePath(name), catalogue());
    if (!graph) {
      ADD_FAILURE() << graph.error().front().text().toStdString();
      return {};
    }
    return std::move(*graph);
  }

  // Native code, both libraries, two sinks on threads of their own, and a warning.
  Graph scalars() {
    return read("scalars.kelvarin",
                QByteArray(kCsv) +
                    "<Calculator name='calc' seed='3' dateFormat='yyyy' abortWhenError='0'>" +
                    Drawn().inputs() +
                    "<OutputVars><OutputVar name='sum'>a*2+b</OutputVar>"
                    "<OutputVar name='dice'>rand1()+a</OutputVar>"
                    "<OutputVar name='length'>strlen(t)</OutputVar>"
                    "<OutputVar name='odd'>1 &lt; a &lt; 5</OutputVar></OutputVars></Calculator>"
                    "<FilterRows name='keep' dateFormat='yyyy'><Expression>a&gt;b</Expression>" +
                    Drawn().inputs() +
                    "</FilterRows><WriteCSV name='csv' file='kept.csv'/>"
                    "<writeColumnarGel name='gel' file='rest.cgel_kelvarin' nRowsInBlock='300'/>",
                link("source", "calc") + link("calc", "keep") + link("keep", "csv") +
                    link("keep", "gel", 1));
  }

  // Names of columns are computed under the lock of the process.
  Graph vectors() {
    return read("vectors.kelvarin",
                "<ReadColumnarGel name='table' fileName='in.cgel_kelvarin'/>"
                "<InlineTable name='names'><Column name='AliasName' meta='U'/>"
                "<Column name='VarName' meta='U'/>"
                "<Row><V>v</V><V>a</V></Row><Row><V>v</V><V>b</V></Row></InlineTable>"
                "<CalculatorVectorized name='both' dateFormat='yyyy'><OutputVars>"
                "<OutputVar name='\"twice_\"//v'>v*2</OutputVar></OutputVars>"
                "</CalculatorVectorized><WriteArrow name='arrow' file='vectors.arrow'/>",
                link("table", "both") + link("names", "both", 0, 1) + link("both", "arrow"));
  }

  // Fails at the first value of `a` that is no key.
  Graph failing() {
    return read("failing.kelvarin",
                "<ReadParquet name='rows' file='in.parquet'/>"
                "<Calculator name='keys' castToKey1='2' castToKey2='2'><InputVars>"
                "<InputVar column='a'/></InputVars><OutputVars>"
                "<OutputVar name='key' meta='K'>a</OutputVar></OutputVars></Calculator>"
                "<WriteParquet name='never' file='never.parquet'/>",
                link("rows", "keys") + link("keys", "never"));
  }

  Graph fromPipe(const QByteArray& sink) {
    return read("pipe.kelvarin",
                "<ReadCSV name='pipe' file='pipe.csv'><Column name='x' meta='F'/></ReadCSV>" + sink,
                link("pipe", "sink"));
  }

  const QStringList kWritten{"kept.*", "rest.*", "vectors.*", "never.*"};
};

TEST_F(SideBySide, EachGraphEndsAsItDoesAlone) {
  Strings scalarLog, vectorLog, failingLog;
  {
    RunRecord records[3];
    Graph graphs[] = {scalars(), vectors(), failing()};
    RecordingHost host;
    const RunResult alone[] = {runGraph(graphs[0], records[0]), runGraph(graphs[1], records[1]),
                               runGraph(graphs[2], records[2])};
    scalarLog = logOf(alone[0]);
    vectorLog = logOf(alone[1]);
    failingLog = logOf(alone[2]);
    ASSERT_TRUE(alone[0].isOk()) << ::testing::PrintToString(scalarLog);
    ASSERT_TRUE(alone[1].isOk()) << ::testing::PrintToString(vectorLog);
    ASSERT_EQ(alone[2].state, State::failed);
    ASSERT_FALSE(scalarLog.empty() || failingLog.empty());
  }
  const QByteArray files = contentOf(kWritten);
  for (int i = 0; i < graphCount("KELVARIN_SIDE_BY_SIDE_RUNS", 5); ++i) {
    removeFiles(kWritten);
    RecordingHost ofThisThread;
    RunBeside first(scalars());
    RunBeside second(vectors());
    RunBeside third(failing());
    EXPECT_TRUE(first.wait().isOk());
    EXPECT_TRUE(second.wait().isOk());
    EXPECT_EQ(third.wait().state, State::failed);
    EXPECT_EQ(logOf(first.wait()), scalarLog);
    EXPECT_EQ(logOf(second.wait()), vectorLog);
    EXPECT_EQ(logOf(third.wait()), failingLog);
    EXPECT_EQ(first.hostLog(), shownOf(first.wait()));
    EXPECT_EQ(second.hostLog(), shownOf(second.wait()));
    EXPECT_EQ(third.hostLog(), shownOf(third.wait()));
    EXPECT_EQ(ofThisThread.log(), Strings{});
    EXPECT_EQ(contentOf(kWritten), files);
  }
}

TEST_F(SideBySide, OneIsStoppedWhileTheOtherGoesOn) {
  Pipe pipe(m_folder.filePath("pipe.csv"));
  RunBeside endless(fromPipe("<WriteCSV name='sink' file='endless.csv'/>"));
  pipe.write("x\n1\n2\n");
  RunBeside other(scalars());
  endless.stop();
  EXPECT_EQ(endless.wait().state, State::stoppedByUser);
  EXPECT_TRUE(other.wait().isOk());
  EXPECT_FALSE(QFile::exists(m_folder.filePath("endless.csv")));
  EXPECT_TRUE(QFile::exists(m_folder.filePath("kept.csv")));
}

TEST_F(SideBySide, WhatOneWritesNoOtherCanWriteUntilItEnds) {
  const QByteArray sink = "<WriteCSV name='sink' file='out.csv'/>";
  const auto later = [&] {
    return read("later.kelvarin", QByteArray(kCsv) + "<WriteCSV name='late' file='./out.csv'/>",
                link("source", "late"));
  };
  Pipe pipe(m_folder.filePath("pipe.csv"));
  RunBeside first(fromPipe(sink));
  pipe.write("x\n1\n2\n");
  RunBeside refused(later());
  EXPECT_EQ(refused.wait().state, State::failed);
  EXPECT_EQ(logOf(refused.wait()),
            Strings{"late: The action 'late' cannot write its file: '" +
                    m_folder.filePath("out.csv").toStdString() +
                    "' is being written by the action 'sink' of the graph '" +
                    m_folder.filePath("pipe.kelvarin").toStdString() +
                    "', which runs at the same time. Wait for its end, or write to another file."});
  // A check says what a run would do on its own.
  Graph checked = later();
  RunRecord record;
  EXPECT_TRUE(checkGraph(checked, record).isOk());
  pipe.close();
  EXPECT_TRUE(first.wait().isOk());
  EXPECT_EQ(contentOf({"out.csv"}), "out.csv\nx\n1\n2\n");
  EXPECT_TRUE(RunBeside(later()).wait().isOk());
}

}  // namespace
}  // namespace kelvarin
