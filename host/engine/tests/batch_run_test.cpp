// A run has the same rows, counts and log for any number of threads and any size of batches, and
// the same as row by row.
#include <optional>
#include <regex>

#include <gtest/gtest.h>

#include "host/engine/tests/batch_actions.h"

namespace kelvarin::testing {
namespace {

struct Trace {
  std::map<std::string, std::vector<double>> values;
  std::string text;
  bool operator==(const Trace&) const = default;
};

Trace traceOf(const std::string& actions, const std::string& links, int threads, int rowsInBatch,
              std::optional<long long> rowsOfSource = std::nullopt) {
  TestGraph t(actions, links, batchPrototypes());
  t.graph.settings->setThreadCount(threads);
  t.options.rowsInBatch = rowsInBatch;
  t.options.rowsOfSource = rowsOfSource;
  t.options.isOversubscribed = true;
  const RunResult result = t.run();
  Trace trace{t.seen.values, "state " + std::to_string(static_cast<int>(result.state)) + "\n"};
  for (const kelvarin::LogLine& line : result.log) {
    trace.text += line.action.toStdString() + ": " + line.text.toStdString() + "\n";
  }
  for (const ActionResult& action : result.actions) {
    trace.text += action.name.toStdString();
    for (const auto* counts : {&action.rowsIn, &action.rowsOut}) {
      for (const long long count : *counts) {
        trace.text += " " + std::to_string(count);
      }
    }
    trace.text += "\n";
  }
  return trace;
}

struct Drawing {
  std::string actions;
  std::string links;
};

const Drawing kDrawings[] = {
    {"<CountUnits name='s' rows='100000' unit='500'/><TakeBatches name='w' encoded='1'/>", "s w"},
    {"<CountUnits name='s' rows='100000' unit='700'/><SplitBatches name='f' n='3'/>"
     "<SplitBatches name='g' n='2'/><TakeBatches name='w' encoded='1'/>",
     "s f, f g, g:1 w"},
    // Rows that go one by one, and numbers of rows behind a filter.
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3' every='1000'/>"
     "<SplitBatches name='g' n='7' byRow='1'/><TakeBatches name='w' encoded='1'/>",
     "s f, f:1 g, g:1 w"},
    // Whole units are dropped while the actions go on by themselves.
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='2000'/>"
     "<SplitBatches name='g' n='1' every='4000'/><TakeBatches name='w' encoded='1'/>",
     "s f, f g, g w"},
    // Every row goes by itself while those behind it are under way.
    {"<CountUnits name='s' rows='400' unit='20'/><SplitBatches name='f' n='3' every='1'/>"
     "<TakeBatches name='w'/>",
     "s f, f:1 w"},
    // The last row of a unit that f keeps goes through g by itself. The run ends in the next unit,
    // which the chain does, and the rows that f dropped in between count.
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3'/>"
     "<SplitBatches name='g' n='1' every='8997'/><Pass name='p' stops='3010'/>"
     "<TakeBatches name='w'/>",
     "s f, f g, g p, p w"},
    // The second action fails at a row that the first one has passed long before.
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='2' stops='40000'/>"
     "<SplitBatches name='g' n='5' stops='23333'/><TakeBatches name='w' encoded='1'/>",
     "s f, f:1 g, g:1 w"},
    {"<CountUnits name='s' rows='50000' unit='300' failsAt='12345'/><SplitBatches name='f' n='9'/>"
     "<TakeBatches name='w' encoded='1'/>",
     "s f, f:1 w"},
    // Ends early.
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3'/>"
     "<SplitBatches name='g' n='1' ends='31000'/><TakeBatches name='w'/>",
     "s f, f:1 g, g w"},
    // Rows behind the end of an action are nobody's, also where a chain has it in the middle.
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3'/>"
     "<SplitBatches name='g' n='1' ends='31000'/><SplitBatches name='h' n='2'/>"
     "<TakeBatches name='w'/>",
     "s f, f:1 g, g h, h:1 w"},
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3'/><Pass name='p' "
     "stops='1111'/><TakeBatches name='w' encoded='1'/>",
     "s f, f:1 p, p w"},
    // An action of rows in between.
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3'/><Pass name='p'/>"
     "<SplitBatches name='g' n='4'/><TakeBatches name='w' encoded='1'/>",
     "s f, f:1 p, p g, g:1 w"},
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3' disabled='1'/>"
     "<Collect name='w'/>",
     "s f, f w"},
    // Forks: of a source, of a transform, of both pins of one.
    {"<CountUnits name='s' rows='140000' unit='3000'/><SplitBatches name='f' n='3'/><SplitBatches "
     "name='g' n='4' every='777'/><TakeBatches name='w' encoded='1'/><TakeBatches name='v'/>",
     "s f, s g, f w, g:1 v"},
    {"<CountUnits name='s' rows='140000' unit='3000'/><SplitBatches name='f' n='3'/><SplitBatches "
     "name='g' n='4' byRow='1'/><TakeBatches name='w' encoded='1'/><Collect name='v'/>",
     "s f, f g, f:1 w, g:1 v"},
    {"<CountUnits name='s' rows='140000' unit='3000'/><SplitBatches name='f' n='3' ends='90000'/>"
     "<Pass name='p'/><TakeBatches name='w' encoded='1'/><Collect name='v'/>",
     "s f, f:1 p, f:1 v, p w"},
    // Readers of both pins end early; how far the others have come by then counts.
    {"<CountUnits name='s' rows='9000' unit='20'/><SplitBatches name='f' n='3' every='2'/>"
     "<Pass name='p' stops='100'/><Pass name='q' stops='1'/><TakeBatches name='w'/>"
     "<TakeBatches name='v'/>",
     "s f, f p, f:1 q, p w, q v"},
    // A sink that is none: nobody reads its rows.
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3'/>", "s f"},
    {"<CountUnits name='s' rows='50000' unit='300'/><SplitBatches name='f' n='3'/><SplitBatches "
     "name='g' n='4'/>",
     "s f, f g"},
    {"<Count name='s' rows='30000'/><SplitBatches name='f' n='3'/><TakeBatches name='w' "
     "encoded='1'/>",
     "s f, f:1 w"},
};

TEST(BatchRun, DependsNeitherOnThreadsNorOnTheSizeOfBatches) {
  for (const Drawing& drawing : kDrawings) {
    const Trace expected = traceOf(drawing.actions, drawing.links, 1, 1);
    for (const int threads : {1, 2, 3, 8}) {
      for (const int rows : {0, 1, 7, 1000}) {
        if (rows == 1 && threads != 2) {
          continue;  // a task a row takes its time
        }
        const Trace seen = traceOf(drawing.actions, drawing.links, threads, rows);
        EXPECT_EQ(seen.text, expected.text)
            << drawing.actions << "\nthreads " << threads << ", rows " << rows;
        EXPECT_TRUE(seen.values == expected.values)
            << drawing.actions << "\nthreads " << threads << ", rows " << rows;
      }
    }
  }
}

// Some ends lie in the midst of a unit, some between two.
TEST(BatchRun, WithALimitIsThatOfAShorterSource) {
  for (const Drawing& drawing : kDrawings) {
    for (const std::string limit : {"1", "300", "9001"}) {
      const auto rows = std::regex(" rows='[0-9]+'");
      const std::string shorter =
          std::regex_replace(drawing.actions, rows, " rows='" + limit + "'");
      if (std::stoi(limit) > 9000 && drawing.actions.find("rows='50000'") == std::string::npos) {
        continue;
      }
      for (const int threads : {1, 3}) {
        for (const int rowsInBatch : {0, 7}) {
          const Trace expected = traceOf(shorter, drawing.links, threads, rowsInBatch);
          const Trace seen =
              traceOf(drawing.actions, drawing.links, threads, rowsInBatch, std::stoll(limit));
          EXPECT_EQ(seen.text, expected.text) << drawing.actions << "\nlimit " << limit;
          EXPECT_TRUE(seen.values == expected.values) << drawing.actions << "\nlimit " << limit;
        }
      }
    }
  }
}

TEST(BatchRun, GoesOnAllThreadsAndEndsWhereItShould) {
  TestGraph t(
      "<CountUnits name='s' rows='100000' unit='500'/><SplitBatches name='f' n='3'/>"
      "<TakeBatches name='w' encoded='1'/>",
      "s f, f:1 w", batchPrototypes());
  t.graph.settings->setThreadCount(3);
  EXPECT_TRUE(t.run().isOk());
  EXPECT_GT(std::ranges::count(t.seen.calls["w"], "encoded"), 150);  // of 200
}

// Of a source that may wait now and then.
TEST(BatchRun, UnitsThatAreThereAreParsedByTheEngineThreadToo) {
  TestGraph t(
      "<CountUnits name='s' rows='10000' unit='100' waits='10000'/>"
      "<TakeBatches name='w' encoded='1'/>",
      "s w", batchPrototypes());
  t.graph.settings->setThreadCount(2);
  EXPECT_TRUE(t.run().isOk());
  EXPECT_GT(std::ranges::count(t.seen.calls["s"], "parsed on the engine thread"), 20);  // of 100
}

}  // namespace
}  // namespace kelvarin::testing
