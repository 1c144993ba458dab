// What the debugger says about its rows, without widgets: texts and models over rows made by hand.
#include <gtest/gtest.h>
#include <QFont>

#include "ui/debugger/debugger_texts.h"
#include "ui/debugger/history_model.h"
#include "ui/debugger/row_values_model.h"

namespace kelvarin::testing {
namespace {

// Of two outputs over a vector of two elements and one more variable.
std::shared_ptr<DebuggedRow> makeRow(long long number, double a, double x0, double x1) {
  auto names = std::make_shared<RowNames>();
  names->variables = {{"a", -1, "a"}, {"x", 0, "c0"}, {"x", 1, "c1"}};
  names->results = {"y0", "t0", "y1", "t1"};
  names->outputCount = 2;
  auto made = std::make_shared<DebuggedRow>();
  made->row.number = number;
  made->row.names = names;
  for (const double value : {a, x0, x1}) {
    made->row.variables.push_back(ExpressionValue::ofNumber(value));
  }
  made->row.results = {ExpressionValue::ofNumber(x0), ExpressionValue::ofText(""),
                       ExpressionValue::ofNumber(x1), ExpressionValue::ofText(" b")};
  return made;
}

std::string text(const QAbstractItemModel& model, int row, int column) {
  return model.index(row, column).data().toString().toStdString();
}

TEST(RowValues, AreThoseOfOneElement) {
  const ObservedRow row = makeRow(3, 1, 10, 20)->row;
  const RowValues values = valuesToShow(row, 1);
  ASSERT_EQ(values.variables.size(), 2u);
  EXPECT_EQ(values.variables[1].value.number, 20);
  ASSERT_EQ(values.results.size(), 2u);
  EXPECT_EQ(values.results[0].name, "y1");
  EXPECT_EQ(values.results[1].value.text, " b");
  EXPECT_TRUE(valuesToShow(row, 2).results.empty());  // another run had longer vectors
}

// A row that ended the run has none; the others belong to it, whatever failed.
TEST(RowValues, LackingResultsHaveAReason) {
  ObservedRow row = makeRow(3, 1, 10, 20)->row;
  row.failures = {{"t1 failed", 1, "t1", {}}};
  EXPECT_EQ(valuesToShow(row, 0).faults[1].text, "");
  EXPECT_EQ(valuesToShow(row, 1).faults[1].text, "t1 failed");
  EXPECT_EQ(valuesToShow(row, 1).faults[0].text, "");
  row.results.clear();
  row.isLast = true;
  RowValuesModel model(RowValuesModel::Kind::results, nullptr);
  RowValues values = valuesToShow(row, 0);
  model.setRow(values.results, {}, values.faults);
  EXPECT_EQ(text(model, 0, 1), "error");
  EXPECT_EQ(model.index(0, 1).data(Qt::ToolTipRole), "t1 failed");
}

TEST(RowValuesModel, EditsAreOfTheTypeOfTheValueAndCanBeTakenBack) {
  RowValuesModel model(RowValuesModel::Kind::variables, nullptr);
  model.setRow({{"n", -1, "n", ExpressionValue::ofNumber(2)},
                {"t", -1, "t", ExpressionValue::ofText("null")}},
               {});
  const auto edit = [&](int row, const char* value) {
    return model.setData(model.index(row, RowValuesModel::valueColumn), QString(value),
                         Qt::EditRole);
  };
  EXPECT_FALSE(edit(0, "two"));
  EXPECT_TRUE(edit(0, " 2 "));
  EXPECT_FALSE(model.isEdited());
  EXPECT_TRUE(edit(0, "null"));
  EXPECT_TRUE(isNullNumber(model.values()[0].value.number));
  EXPECT_TRUE(edit(1, " "));
  EXPECT_EQ(text(model, 1, 1), "\u00B7");
  EXPECT_EQ(text(model, 1, 2), "null");  // what it was: a text
  model.undoEdits();
  EXPECT_EQ(text(model, 0, 1), "2");
  EXPECT_FALSE(model.isEdited());
}

TEST(HistoryModel, MarksChangesAndKeepsTheColumnsOfAllElements) {
  RowHistory rows;
  rows.add(makeRow(0, 1, 10, std::nan("")));
  rows.add(makeRow(1, 1, 10, kNullNumber));
  HistoryModel model;
  model.setRows(rows);
  ASSERT_EQ(model.columnCount(), 10);
  EXPECT_EQ(model.headerData(4, Qt::Horizontal, Qt::DisplayRole), "x[1]");
  EXPECT_EQ(text(model, 0, 4), "NaN");
  EXPECT_EQ(text(model, 1, 4), "null");
  EXPECT_EQ(text(model, 1, 6), "(empty)");
  const auto isBold = [&](int column) {
    return model.index(1, column).data(Qt::FontRole).value<QFont>().bold();
  };
  EXPECT_TRUE(isBold(4));  // a NaN is no null
  EXPECT_FALSE(isBold(3));
  EXPECT_EQ(model.csv().split('\n')[2], "1,\"\",1,10,,10,\"\",,\" b\",\"\"");
}

TEST(DebuggerTexts, SayWhichRowWhyAndWhatIsWrongWithIt) {
  DebugState state;
  const auto row = makeRow(11, 1, 10, 20);
  row->reason = StopReason::condition;
  row->note = "Unknown name 'b'.";
  row->row.isEvaluated = false;
  row->row.failures = {{"first", 0, "y0", {}}, {"second", 1, "t0", {}}};
  state.rows.add(row);
  state.rows.add(makeRow(1234, 1, 10, 20));
  EXPECT_EQ(debugger_texts::rowShown(state, 0).toStdString(),
            "Row 11, stopped: the condition of the breakpoint cannot be evaluated. The newest row "
            "is 1,234. In sampling, rows are counted and not evaluated.\n"
            "Unknown name 'b'.\nfirst\nsecond");
  EXPECT_EQ(debugger_texts::rowShown(state, 1).toStdString(), "Row 1,234.");
  EXPECT_EQ(debugger_texts::running(state), "Running; the first row has not come yet.");
  state.rowCount = 812'000;
  state.rowsPerSecond = 209'999.7;
  EXPECT_EQ(debugger_texts::running(state), "Running: 812,000 rows, 210,000 a second.");
}

}  // namespace
}  // namespace kelvarin::testing
