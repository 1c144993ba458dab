// What is shown beside an expression, without its field: colours, values, and texts about values.
#include <array>
#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "ui/widgets/cell_roles.h"
#include "ui/widgets/expression_colors.h"
#include "ui/widgets/part_value_tip.h"
#include "ui/widgets/value_strip.h"

namespace kelvarin {
namespace {

double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

TEST(ExpressionColors, AreReadableOnWhiteAndPinkAndOnMarks) {
  namespace colors = expression_colors;
  for (const QColor& ink :
       {colors::kText, colors::kNumber, colors::kLiteral, colors::kFunction, colors::kVariable,
        colors::kConstant, colors::kPlaceholder, colors::kFault}) {
    for (const QColor& paper : {colors::kPaper, colors::kRefusedPaper}) {
      EXPECT_GE((luminance(paper) + 0.05) / (luminance(ink) + 0.05), 4.5)
          << ink.name().toStdString() << " on " << paper.name().toStdString();
    }
  }
  EXPECT_GE((luminance(colors::kBracket) + 0.05) / (luminance(colors::kText) + 0.05), 4.5);
  EXPECT_GE((luminance(colors::kSelection) + 0.05) / (luminance(colors::kText) + 0.05), 4.5);
}

class ValueStripTest : public ::testing::Test {
 protected:
  ValueStripTest() {
    for (const char* name : {"id", "price", "quantity"}) {
      m_formula.columns.columns.push_back({QString::fromLatin1(name), MetaTypeColumn::number});
      InputVariable variable;
      variable.columns = {QString::fromLatin1(name)};
      m_formula.variables.push_back(variable);
    }
    m_formula.columns.isKnown = true;
    m_formula.variables[2].label = QStringLiteral("q");
    m_formula.output.name = QStringLiteral("total");
    m_formula.output.expression = QStringLiteral("q * price + q + \"id\"");
  }

  void addRow(std::array<const double*, 3> values) {
    if (m_rows == nullptr) {
      m_rows = std::make_shared<PinRows>(m_formula.columns, 0);
      m_formula.rows = m_rows;
    }
    PinOutMetaData metaData;
    OneRow row(&metaData);
    row.setNumberOfColumns(3);
    std::array<double, 3> numbers{};
    for (std::size_t i = 0; i < values.size(); ++i) {
      numbers[i] = values[i] == nullptr ? 0.0 : *values[i];
      row.getAllColForWrite()[i] =
          values[i] == nullptr ? nullptr : reinterpret_cast<unsigned char*>(&numbers[i]);
    }
    m_rows->append(row);
  }

  std::string cell(int row, int column) const {
    return m_model.index(row, column).data().toString().toStdString();
  }

  Formula m_formula;
  std::shared_ptr<PinRows> m_rows;
  FormulaAnswer m_answer;
  ValueStripModel m_model;
};

TEST_F(ValueStripTest, ShowsTheVariablesInTheOrderOfTheExpressionAndTheResult) {
  const double price = 24.9;
  const double quantity = 2.0;
  addRow({&price, &price, &quantity});
  addRow({&price, nullptr, &quantity});
  m_answer.values = {{0, ExpressionValue::ofNumber(51.8), {}},
                     {1, {}, QStringLiteral("Division by zero")}};
  m_model.setAnswer(m_formula, m_answer);
  ASSERT_EQ(m_model.columnCount(), 3);
  EXPECT_EQ(m_model.headerData(0, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(), "q");
  EXPECT_EQ(m_model.headerData(2, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(),
            "total");
  EXPECT_EQ(cell(0, 0), "2");
  EXPECT_EQ(cell(0, 1), "24.9");
  EXPECT_EQ(cell(0, 2), "51.8");
  EXPECT_EQ(m_model.index(1, 1).data(kValueKindRole).toInt(),
            static_cast<int>(ShownValue::Kind::null));
  EXPECT_EQ(m_model.index(1, 2).data(Qt::ToolTipRole).toString().toStdString(), "Division by zero");
  m_answer.values.clear();
  m_model.setAnswer(m_formula, m_answer);
  EXPECT_EQ(cell(0, 0), "2") << "variables stay in sight while the expression is wrong";
  EXPECT_EQ(cell(0, 2), "");
}

TEST_F(ValueStripTest, SaysWhyThereAreNoRows) {
  m_formula.columns.isKnown = false;
  m_formula.columns.whyUnknown = QStringLiteral("nothing is linked to the input.");
  m_answer.check.value = ExpressionValue::ofNumber(12.5);
  EXPECT_EQ(noteWithoutRows(m_formula, m_answer).toStdString(),
            "No rows yet: nothing is linked to the input. With the samples of the variables, the "
            "result is 12.5.");
  const double number = 1.0;
  addRow({&number, &number, &number});
  EXPECT_TRUE(noteWithoutRows(m_formula, m_answer).isEmpty());
}

TEST(PartValueText, SaysOfWhichRowTheValueIs) {
  const QString expression = QStringLiteral("1 + price < 3");
  PartAnswer answer;
  answer.start = 4;
  answer.size = 9;
  answer.value = {7, ExpressionValue::ofNumber(49.8), {}};
  answer.isRowKnown = true;
  const auto said = [&] { return partValueText(expression, answer).toStdString(); };
  EXPECT_NE(said().find("price &lt; 3 = 49.8 in row 7"), std::string::npos) << said();
  answer.isRowKnown = false;
  answer.mayDiffer = true;
  EXPECT_NE(said().find("with the samples of the variables (may differ in a run)"),
            std::string::npos);
  answer.value.failure = QStringLiteral("Division by zero");
  EXPECT_NE(said().find("price &lt; 3: Division by zero"), std::string::npos);
}

}  // namespace
}  // namespace kelvarin
