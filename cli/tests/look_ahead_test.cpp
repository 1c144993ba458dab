// A run yields the same whether rows are computed and taken many at once or one by one: the same
// bytes in its files, the same numbers of rows, the same log.
//
// Random chains of calculators and filters with the plug-in's actions, between every kind of source
// and of sink.
#include "cli/tests/drawn_graphs.h"

namespace kelvarin {
namespace {

struct Drawing {
  QByteArray actions;
  QByteArray links;
  Drawn drawn;
};

// Calculators and filters one after another below `from`, and a sink at the end.
void drawChain(Dice& dice, Drawing& drawing, QByteArray from, const QByteArray& prefix) {
  int fromPin = 0;
  const int actions = 1 + dice.below(4);
  for (int i = 0; i < actions; ++i) {
    const QByteArray name = prefix + static_cast<char>('p' + i);
    const bool isFilter = dice.oneIn(2);
    drawing.actions +=
        isFilter ? filterXml(dice, drawing.drawn, name) : calculatorXml(dice, drawing.drawn, name);
    drawing.links += link(from, name, fromPin);
    fromPin = isFilter && dice.oneIn(4) ? 1 : 0;
    from = name;
  }
  drawing.actions += sinkXml(dice, prefix);
  drawing.links += link(from, prefix, fromPin);
}

class LookAhead : public DrawnGraphs {
 protected:
  // Everything by which a user can distinguish one run from another.
  QByteArray traceOf(const Drawing& drawing, bool looksAhead) {
    removeFiles(kWritten);
    ExecutionOptions options;
    options.looksAhead = looksAhead;
    const RunResult result = run(document(drawing.actions, drawing.links), options);
    QByteArray trace = "state " + QByteArray::number(static_cast<int>(result.state)) + "\n";
    for (const LogLine& line : result.log) {
      trace += line.action.toUtf8() + ": " + line.text.toUtf8() + "\n";
    }
    for (const ActionResult& action : result.actions) {
      trace += action.name.toUtf8();
      for (const auto* counts : {&action.rowsIn, &action.rowsOut}) {
        for (const long long count : *counts) {
          trace += " " + QByteArray::number(count);
        }
      }
      trace += " " + action.backends.join(',').toUtf8() + "\n";
    }
    return trace + contentOf(kWritten);
  }

  const QStringList kWritten{"x.*", "y.*"};
};

// More of them with KELVARIN_LOOK_AHEAD_GRAPHS.
TEST_F(LookAhead, ChangesNothing) {
  constexpr int kRowCounts[] = {0, 1, 7, 9, 40, 1023, 1026, 2500, 9000};
  const int kGraphs = graphCount("KELVARIN_LOOK_AHEAD_GRAPHS", 240);
  int complete = 0;
  for (int seed = 0; seed < kGraphs && !HasFailure(); ++seed) {
    Dice dice(static_cast<unsigned>(seed));
    if (seed % 8 == 0) {
      writeTables(dice, kRowCounts[(seed / 8) % 9]);
    }
    Drawing drawing{dice.oneOf(kSources), {}, {}};
    if (dice.oneIn(3)) {
      drawing = {kNumbersAlone, {}, {.hasTexts = false}};
    }
    drawChain(dice, drawing, "source", "x");
    if (dice.oneIn(3)) {
      drawChain(dice, drawing, "source", "y");
    }
    const QByteArray expected = traceOf(drawing, false);
    EXPECT_EQ(traceOf(drawing, true), expected) << "seed " << seed << "\n"
                                                << document(drawing.actions, drawing.links).data();
    complete += expected.startsWith("state 0") ? 1 : 0;
  }
  EXPECT_GT(complete, kGraphs / 3);  // the others fail in the midst
}

}  // namespace
}  // namespace kelvarin
