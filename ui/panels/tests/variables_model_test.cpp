// The model of the variable table, and the orders in which its table shows it.
#include <memory>

#include <gtest/gtest.h>
#include <QMimeData>
#include <QSignalSpy>

#include "ui/panels/variables_model.h"
#include "ui/widgets/cell_roles.h"
#include "ui/widgets/my_table.h"
#include "ui/widgets/variable_drag.h"

namespace kelvarin {
namespace {

class VariablesModelTest : public ::testing::Test {
 protected:
  VariablesModelTest() {
    PinColumns columns;
    columns.isKnown = true;
    for (const char* name : {"x10", "x9", "a b", "round"}) {
      columns.columns.push_back({QString::fromLatin1(name), MetaTypeColumn::number});
    }
    columns.columns.push_back({QStringLiteral("t"), MetaTypeColumn::text});
    m_model.setInputColumns(columns);
    m_model.addColumns({QStringLiteral("x10"), QStringLiteral("t"), QStringLiteral("x9")});
  }
  bool set(int row, int column, const char* text) {
    return m_model.setData(m_model.index(row, column), QString::fromLatin1(text), Qt::EditRole);
  }
  QStringList names() const {
    QStringList names;
    for (const InputVariable& variable : m_model.variables()) {
      names += variable.name();
    }
    return names;
  }
  static QStringList shown(const MyTable& table) {
    QStringList names;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
      names += table.model()->index(row, VariablesModel::kAlias).data().toString();
    }
    return names;
  }
  QString faultOf(int row) { return m_model.index(row, 0).data(kFaultRole).toString(); }

  VariablesModel m_model;
  QSignalSpy m_edited{&m_model, &VariablesModel::edited};
  QSignalSpy m_renamed{&m_model, &VariablesModel::renamed};
};

TEST_F(VariablesModelTest, BindsColumnsUnderNamesThatExpressionsCanHold) {
  EXPECT_EQ(m_model.index(1, VariablesModel::kType).data(), "Text");
  m_model.addColumns({QStringLiteral("a b"), QStringLiteral("a b")});
  EXPECT_EQ(names(), (QStringList{"x10", "t", "x9", "a_b", "a_b_2"}));
  ASSERT_TRUE(set(0, VariablesModel::kColumn, "t"));
  EXPECT_EQ(m_model.index(0, VariablesModel::kType).data(), "Text") << "as its column";
  EXPECT_FALSE(set(2, VariablesModel::kSample, "ten"));
  EXPECT_TRUE(set(2, VariablesModel::kSample, "10"));
  EXPECT_EQ(m_model.variables()[2].number, 10.0);
  EXPECT_FALSE(set(2, VariablesModel::kSample, "10")) << "no edit";
}

TEST_F(VariablesModelTest, ReportsNamesThatExpressionsCanFollow) {
  m_edited.clear();
  ASSERT_TRUE(set(0, VariablesModel::kAlias, "price"));
  EXPECT_EQ(m_edited.count(), 1);
  ASSERT_EQ(m_renamed.count(), 1);
  EXPECT_EQ(m_renamed.takeFirst(), (QVariantList{"x10", "price"}));
  ASSERT_TRUE(
      set(0, VariablesModel::kAlias, "x9"));  // two of one name: which is meant is not known
  ASSERT_TRUE(set(0, VariablesModel::kAlias, "not a name"));
  ASSERT_TRUE(set(0, VariablesModel::kSample, "1"));
  EXPECT_EQ(m_renamed.count(), 0);
}

TEST_F(VariablesModelTest, MarksDuplicatesAndColumnsThatAreGoneAndKeepsThem) {
  for (int row = 0; row < 3; ++row) {
    EXPECT_TRUE(faultOf(row).isEmpty()) << faultOf(row).toStdString();
  }
  ASSERT_TRUE(set(2, VariablesModel::kAlias, "x10"));
  EXPECT_TRUE(faultOf(0).isEmpty());
  EXPECT_TRUE(faultOf(2).contains("Another variable"));
  ASSERT_TRUE(set(2, VariablesModel::kAlias, "_n"));
  EXPECT_TRUE(faultOf(2).contains("row number"));
  m_model.setRowNumberOffered(false);
  EXPECT_TRUE(faultOf(2).isEmpty());
  PinColumns fewer;
  fewer.isKnown = true;
  fewer.columns.push_back({QStringLiteral("x11"), MetaTypeColumn::number});
  m_model.setInputColumns(fewer);
  EXPECT_TRUE(faultOf(0).contains("no column 'x10'. Did you mean 'x11'?"));
  EXPECT_EQ(m_model.rowCount(), 3);
}

TEST_F(VariablesModelTest, OffersOnlyColumnsThatTheExpressionReads) {
  EXPECT_TRUE(m_model.missingColumns({QStringLiteral("round(x9, 2)")}).isEmpty());
  EXPECT_EQ(m_model.missingColumns({QStringLiteral("a_b + round"), QStringLiteral("a_b")}),
            (QStringList{"a b", "round"}));
}

TEST_F(VariablesModelTest, IsSortedInItsTableOnlyAndBackInItsOwnOrder) {
  MyTable table;
  table.setModel(&m_model);
  table.columnClicked(VariablesModel::kAlias);
  EXPECT_EQ(shown(table), (QStringList{"t", "x9", "x10"})) << "numbers count as numbers";
  table.columnClicked(VariablesModel::kAlias);
  EXPECT_EQ(shown(table), (QStringList{"x10", "x9", "t"}));
  table.setCurrentCell(0, VariablesModel::kAlias);
  EXPECT_EQ(table.selectedRows(), std::vector<int>{0}) << "of the model";
  table.columnClicked(VariablesModel::kAlias);
  EXPECT_EQ(shown(table), (QStringList{"x10", "t", "x9"}));
  EXPECT_EQ(names(), (QStringList{"x10", "t", "x9"}));
}

TEST_F(VariablesModelTest, MovesRowsByButtonsAndByDragging) {
  m_model.addColumns({QStringLiteral("round")});
  m_model.move({1, 2}, true);
  EXPECT_EQ(names(), (QStringList{"t", "x9", "x10", "round"}));
  m_model.move({0, 1}, true);
  EXPECT_EQ(names().front(), "t") << "at the edge";
  m_model.move({0, 3}, false);
  EXPECT_EQ(names(), (QStringList{"t", "x9", "x10", "round"}));
  m_model.removeVariables({1});
  m_model.addColumns({QStringLiteral("x9")});  // t, x10, round, x9

  const std::unique_ptr<QMimeData> first(
      m_model.mimeData({m_model.index(0, 0), m_model.index(0, 1), m_model.index(3, 0)}));
  EXPECT_EQ(first->data(kVariableNamesFormat), "t\nx9");
  EXPECT_TRUE(m_model.dropMimeData(first.get(), Qt::MoveAction, 2, 0, {}));
  EXPECT_EQ(names(), (QStringList{"x10", "t", "x9", "round"}));
  const std::unique_ptr<QMimeData> second(m_model.mimeData({m_model.index(1, 0)}));
  EXPECT_TRUE(m_model.dropMimeData(second.get(), Qt::MoveAction, -1, -1, {}));
  EXPECT_EQ(names(), (QStringList{"x10", "x9", "round", "t"}));
  VariablesModel other;
  EXPECT_FALSE(other.dropMimeData(second.get(), Qt::MoveAction, 0, 0, {}));
}

}  // namespace
}  // namespace kelvarin
