#include "expression/backends/expression_text.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

TEST(ExpressionText, BlanksReplaceLineBreaksOutsideLiterals) {
  EXPECT_EQ(withoutLineBreaks("x\r\n+\ty"), "x  + y");
  EXPECT_EQ(withoutLineBreaks("\"a\nb\\\"\n\"\n+\"c\n"), "\"a\nb\\\"\n\" +\"c\n");
  EXPECT_EQ(withoutLineBreaks("\"a\\"), "\"a\\");
}

TEST(ExpressionText, ValueNamesAreNoFunctionsNumbersOrLiterals) {
  const QSet<QString> expected = {"a", "_b1", "größe", "e", "x1F"};
  EXPECT_EQ(valueNames("a + _b1*größe + sin (e) + 3k + 1e-5 + 0x1F + .5 + \"lost\" // f(x1F)"),
            expected);
}

TEST(ExpressionText, WordOperatorsBecomeSignsOfTheirLength) {
  EXPECT_EQ(withSignsForWords("a and b or(c) + order + \"and\"", {}),
            "a &&  b ||(c) + order + \"and\"");
  EXPECT_EQ(withSignsForWords("and + 1 or 2", {"and"}), "and + 1 || 2");
}

TEST(ExpressionText, UnitsBehindValuesAreMarked) {
  EXPECT_EQ(withMarkedUnits("3{k}+x {mu}*(1){G}-{k}+\"1{k}\"+2{q}"),
            "3~k +x ~u  *(1)~G -{k}+\"1{k}\"+2{q}");
}

TEST(ExpressionText, AColumnBesideAFunctionOfItsNameIsMarked) {
  const QString marked = withMarkedColumns("min(min, a) + max + a + \"min\"", {"min", "max", "a"});
  EXPECT_EQ(marked, "min(" + markedColumn("min") + ", a) + max + a + \"min\"");
  EXPECT_EQ(withoutMarks(marked), "min(min, a) + max + a + \"min\"");
}

TEST(ExpressionText, AssignedColumnsAreMarkedWithoutMovingPositions) {
  const QString text = "größe =a+(a+= 2) + (b==a) + \"a=1\" + (é=1) # a=2";
  const QString marked = withMarkedTargets(text, {"größe", "a", "b"});
  EXPECT_EQ(marked, markedTarget("größe") + " =a+(" + markedTarget("a") +
                        "+= 2) + (b==a) + \"a=1\" + (é=1) # a=2");
  EXPECT_EQ(withoutMarks(marked), text);
  const std::string bytes = marked.toStdString();
  const auto comment = static_cast<int>(bytes.find('#'));
  EXPECT_EQ(positionOfByte(bytes, comment), text.indexOf('#'));
}

TEST(ExpressionText, BytePositionsBecomeUnits) {
  const std::string text = "é😀x";  // 2 + 4 + 1 bytes, 1 + 2 + 1 units
  EXPECT_EQ(positionOfByte(text, 0), 0);
  EXPECT_EQ(positionOfByte(text, 2), 1);
  EXPECT_EQ(positionOfByte(text, 6), 3);
  EXPECT_EQ(positionOfByte(text, 100), 4);
  EXPECT_EQ(positionOfByte(text, -1), -1);
}

}  // namespace
}  // namespace kelvarin
