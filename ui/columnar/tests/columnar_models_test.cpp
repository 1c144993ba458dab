// The models behind the columnar dialogs, and their words, without widgets.
#include <gtest/gtest.h>

#include <QSignalSpy>

#include "ui/columnar/block_memory.h"
#include "ui/columnar/block_values_model.h"
#include "ui/columnar/block_variables_model.h"
#include "ui/columnar/column_sets_model.h"
#include "ui/columnar/columnar_editor.h"
#include "ui/columnar/columns_to_read_model.h"
#include "ui/columnar/summary_texts.h"
#include "ui/widgets/cell_roles.h"

namespace kelvarin {

namespace {

TableSummary someTable() {
  TableSummary summary;
  summary.columns = {{.name = QStringLiteral("id"), .type = GelType::key, .storedBytes = 100},
                     {.name = QStringLiteral("price"), .type = GelType::number, .storedBytes = 200},
                     {.name = QStringLiteral("day"), .type = GelType::text, .storedBytes = 400}};
  summary.rows = 19811;
  summary.blocks = 4;
  summary.rowsInBlock = 5000;
  summary.columnSets = 1;
  return summary;
}

QString faultAt(const QAbstractItemModel& model, int row) {
  return model.index(row, 0).data(kFaultRole).toString();
}

TEST(ColumnsToRead, KeepTheOrderOfTheListAndWhatTheFileLacks) {
  ColumnsToReadModel model;
  model.setListed({QStringLiteral("gone"), QStringLiteral("price"), QStringLiteral("${column}")});
  const TableSummary table = someTable();
  model.setFile(&table);
  EXPECT_EQ(model.rowCount(), 5);
  EXPECT_EQ(model.listed(), (QStringList{"gone", "price", "${column}"}));
  EXPECT_TRUE(faultAt(model, 0).contains("gone"));
  EXPECT_EQ(faultAt(model, 1), QString());
  EXPECT_EQ(faultAt(model, 2), QString());
  EXPECT_EQ(model.tickedBytes(), 200u);

  QSignalSpy edits(&model, &ColumnsToReadModel::edited);
  model.tick({3}, true);
  EXPECT_TRUE(model.move(3, -1));
  EXPECT_EQ(model.listed(), (QStringList{"gone", "price", "id", "${column}"}));
  EXPECT_EQ(edits.count(), 2);
  EXPECT_FALSE(model.move(0, -1));

  // Another file: what is ticked stays, in its order.
  TableSummary other;
  other.columns = {{.name = QStringLiteral("x")}};
  model.setFile(&other);
  EXPECT_EQ(model.listed(), (QStringList{"gone", "price", "id", "${column}"}));
  EXPECT_EQ(model.rowCount(), 5);
  EXPECT_EQ(model.add(QStringLiteral("x")), 4);
  EXPECT_EQ(model.listed().last(), QStringLiteral("x"));
}

TEST(ColumnsToRead, CannotBeTickedWhileTheListIsNotInUse) {
  ColumnsToReadModel model;
  const TableSummary table = someTable();
  model.setFile(&table);
  model.setTickable(false);
  EXPECT_FALSE(model.setData(model.index(0, 0), Qt::Checked, Qt::CheckStateRole));
  EXPECT_FALSE(model.index(0, 0).data(Qt::CheckStateRole).isValid());
  EXPECT_TRUE(model.listed().isEmpty());
}

TEST(BlockVariables, FollowTheirColumnAndItsType) {
  BlockVariablesModel model;
  const TableSummary table = someTable();
  model.setFile(&table);
  model.add(QStringLiteral("day"));
  ASSERT_EQ(model.variables().size(), 1u);
  EXPECT_FALSE(model.variables()[0].isNumber);  // the file says that it holds texts
  EXPECT_EQ(model.variables()[0].minimumName, QStringLiteral("day_min"));

  const auto set = [&](int column, const char* text) {
    return model.setData(model.index(0, column), QString::fromLatin1(text), Qt::EditRole);
  };
  EXPECT_TRUE(set(BlockVariablesModel::kHasNull, "gaps"));
  EXPECT_TRUE(set(BlockVariablesModel::kName, "price"));
  EXPECT_EQ(model.variables()[0].maximumName, QStringLiteral("price_max"));
  EXPECT_EQ(model.variables()[0].hasNullName, QStringLiteral("gaps"));
  EXPECT_TRUE(set(BlockVariablesModel::kKind, "Number"));
  EXPECT_TRUE(set(BlockVariablesModel::kMaximumSample, "2.5"));
  EXPECT_FALSE(set(BlockVariablesModel::kMaximumSample, "two"));
  EXPECT_EQ(model.variables()[0].maximum.number, 2.5);
  EXPECT_TRUE(set(BlockVariablesModel::kKind, "Date"));
  EXPECT_EQ(model.variables()[0].meta, MetaTypeColumn::date);

  EXPECT_EQ(faultAt(model, 0), QString());
  set(BlockVariablesModel::kName, "day");
  set(BlockVariablesModel::kKind, "Number");
  EXPECT_TRUE(faultAt(model, 0).contains("holds texts"));
  set(BlockVariablesModel::kName, "nowhere");
  EXPECT_TRUE(faultAt(model, 0).contains("has no column"));
}

TEST(BlockVariables, OfferTheNamesOfColumnsThatAreNone) {
  BlockVariablesModel model;
  const TableSummary table = someTable();
  model.setFile(&table);
  model.add(QStringLiteral("id"));
  EXPECT_EQ(model.offeredInputs().size(), 6u);
  EXPECT_TRUE(model.addOffered(QStringLiteral("price_hasNull")));
  EXPECT_EQ(model.variables().back().column, QStringLiteral("price"));
  EXPECT_FALSE(model.addOffered(QStringLiteral("price")));
  EXPECT_TRUE(model.move(1, -1));
  model.remove({1});
  EXPECT_EQ(model.variables().front().column, QStringLiteral("price"));
}

TEST(BlockValues, ShowWhatTheExpressionNames) {
  BlockFilterTrial trial;
  trial.variables = QStringList{"id_max", "id_min", "id_hasNull"};
  const auto number = [](double value) { return ExpressionValue::ofNumber(value); };
  trial.firstBlocks = {{0, 5000, true, {number(7), number(1), number(0)}}, {5000, 1, false, {}}};
  BlockValuesModel model;
  const auto text = [&](int row, int column) {
    return model.index(row, column).data().toString().toStdString();
  };
  const auto header = [&](int column) {
    return model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString();
  };
  model.setTrial(trial);
  EXPECT_EQ(model.columnCount(), 5);  // the expression names none of the variables
  model.setExpression(QStringLiteral("\"id_max\" == nvl(id_min, id_min)"));
  ASSERT_EQ(model.columnCount(), 3);
  EXPECT_EQ(header(2), "id_min");
  EXPECT_EQ(text(0, 0), "0 to 4,999");
  EXPECT_EQ(text(0, 1), "skipped");
  EXPECT_EQ(text(0, 2), "1");
  EXPECT_EQ(text(1, 1), "read");
  EXPECT_EQ(text(1, 2), "unknown");
  EXPECT_FALSE(model.index(1, 1).data(Qt::ToolTipRole).toString().isEmpty());
  model.forgetVerdicts();
  EXPECT_EQ(text(0, 1), "");
  EXPECT_EQ(text(0, 2), "1");
}

TEST(ColumnSets, KeepWhatIsListed) {
  ColumnSetsModel model;
  model.setSets({{QStringLiteral("gone"), 2}, {QStringLiteral("id"), 1}});
  PinColumns input;
  input.isKnown = true;
  input.columns = {{QStringLiteral("id"), MetaTypeColumn::key},
                   {QStringLiteral("name"), MetaTypeColumn::text}};
  model.setInput(input);
  EXPECT_EQ(model.rowCount(), 3);
  EXPECT_TRUE(faultAt(model, 2).contains("gone"));
  model.assign({1}, 3);
  EXPECT_FALSE(model.setData(model.index(1, ColumnSetsModel::kSet), 255, Qt::EditRole));
  model.assign({0}, ColumnSetsModel::kNotWritten);
  EXPECT_EQ(model.sets(),
            (ListedColumnSets{{QStringLiteral("gone"), 2}, {QStringLiteral("name"), 3}}));
}

TEST(BlockMemory, CountsFixedAndTextColumns) {
  PinColumns columns;
  columns.isKnown = true;
  columns.columns = {{QStringLiteral("k"), MetaTypeColumn::key},
                     {QStringLiteral("f"), MetaTypeColumn::number},
                     {QStringLiteral("u"), MetaTypeColumn::text}};
  const BlockMemory memory = blockMemory(5000, columns, nullptr);
  EXPECT_EQ(memory.blocksOfAMillionRows, 200u);
  EXPECT_EQ(memory.bytesOfBlock, 5000u * (4 + 8 + 4 + 16));
  EXPECT_EQ(memory.bytesInWriting, 2 * memory.bytesOfBlock);
  EXPECT_EQ(blockMemory(3, {}, nullptr).blocksOfAMillionRows, 333'334u);
  EXPECT_EQ(blockMemory(3, {}, nullptr).bytesOfBlock, 0u);
}

TEST(Words, SayHowATableIs) {
  TableSummary table = someTable();
  EXPECT_TRUE(contentsText(table).contains(QStringLiteral("3\u00a0columns")));
  EXPECT_EQ(stateText(table).severity, Severity::success);
  table.order = {SortInfos(0, SortType::numberDescending)};
  EXPECT_EQ(orderText(table), QStringLiteral("Sorted on 'id', descending"));
  table.isComplete = false;
  EXPECT_EQ(stateText(table).severity, Severity::warning);
  table.isBeingWritten = true;
  EXPECT_EQ(stateText(table).severity, Severity::information);
  table.isBeingWritten = false;
  table.lostRows = 1;
  EXPECT_EQ(stateText(table).severity, Severity::error);
  EXPECT_TRUE(stateText(table).text.contains("1 row cannot"));

  BlockFilterTrial trial;
  trial.blocks = 50;
  trial.skippedBlocks = 47;
  EXPECT_TRUE(trialText(trial).text.startsWith("skips 47 of 50 blocks of this file"));
  trial.skippedBlocks = 50;
  EXPECT_EQ(trialText(trial).severity, Severity::warning);
  EXPECT_EQ(salvageText({.blocks = 1, .rows = 4, .lostBlocks = 1}, QStringLiteral("n")).severity,
            Severity::warning);
  EXPECT_EQ(verificationText({.rows = 1, .blocks = 1, .damages = 2}, true).severity,
            Severity::error);
}

TEST(ChosenNames, BecomeRelativeBelowTheFolder) {
  const QString folder = QStringLiteral("/data/in");
  EXPECT_EQ(relativeBelow(folder, QStringLiteral("/data/in/a/b.gel")), QStringLiteral("a/b.gel"));
  EXPECT_EQ(relativeBelow(folder, QStringLiteral("/data/x.gel")), QStringLiteral("/data/x.gel"));
  EXPECT_EQ(relativeBelow(folder, QStringLiteral("b.gel")), QStringLiteral("b.gel"));
}

}  // namespace

}  // namespace kelvarin
