#include "expression/errors/error_texts.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

const ExpressionError kError = {"Undefined token \"a%1\" found.", 3, "a%1"};

TEST(ErrorTexts, RunTimeTextsAreExact) {
  EXPECT_EQ(calculatorErrorText("speed %2", kError, {12, "Calculator", BackendKind::fast}),
            "Math Parser Error in expression named 'speed %2':\n Undefined token \"a%1\" found.\n "
            "On Data Row 12 at position 3: Please click the \"? (F7)\" check button inside the "
            "property window of the 'Calculator' action to test & fix the expression.");
  EXPECT_TRUE(calculatorErrorText("x", kError, {0, "Calculator", BackendKind::string})
                  .contains("check button  inside the property window"));
  EXPECT_TRUE(vectorizedErrorText("x", kError, {0, "CalculatorVectorized", BackendKind::fast})
                  .startsWith("Math Parser Error in expression 'x':\n Undefined"));
  EXPECT_EQ(filterErrorText(kError, 7),
            "MathParser Error in FilterRows:\nUndefined token \"a%1\" found.\n On Data Row 7 at "
            "position 3: Please click the \"? (F7)\" check button inside the property window of "
            "the 'FilterRows' action to test & fix the expression.");
}

TEST(ErrorTexts, CheckTextsAreExact) {
  EXPECT_EQ(checkErrorText(kError),
            "Undefined token \"a%1\" found.\n  Error Token:a%1\n  Error at position:3");
  EXPECT_EQ(errorTextWithPosition(kError), "Undefined token \"a%1\" found.\nAt position 3.");
}

TEST(ErrorTexts, TheFirstPhraseChoosesThePicture) {
  EXPECT_EQ(explanationPicture("... Undefined token ... There is no implicit conversion to type"),
            ":/KelvarinMathParser/undefinedToken.png");
  EXPECT_EQ(explanationPicture("There is no implicit conversion to type 'b'."),
            ":/KelvarinMathParser/errorCast.png");
  EXPECT_EQ(explanationPicture("The expression evaluated to a Number and a String was expected"),
            ":/KelvarinMathParser/errorEvaluatedToNumber.png");
  EXPECT_EQ(explanationPicture("The expression evaluated to a String and a Number was expected"),
            ":/KelvarinMathParser/errorEvaluatedToString.png");
  EXPECT_EQ(explanationPicture(""), QString());
}

}  // namespace
}  // namespace kelvarin
