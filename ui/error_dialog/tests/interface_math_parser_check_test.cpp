// The dialog about a refused expression: which picture and which parts it has, and what its buttons
// and links do.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "host/widget_testing/widget_walk.h"
#include "host/widgets/translation.h"
#include "ui/error_dialog/interface_math_parser_check.h"

namespace kelvarin {
namespace {

ExpressionReport unknownName() {
  return {
      "Undefined token \"discount\" found at position 8.\n  Error Token:discount\n"
      "  Error at position:8",
      "price * discount",
      8,
      8,
      {"Discount", "a<b"},
      "Write it as the column is named."};
}

QString pictureOf(const QString& text) {
  const Interface_MathParserCheck dialog({.text = text});
  const auto* picture = dialog.findChild<QLabel*>("lblExplanation");
  return picture == nullptr ? QString() : picture->property("path").toString();
}

TEST(MathParserCheck, ShowsThePictureOfTheFirstPhraseInTheText) {
  EXPECT_EQ(pictureOf(unknownName().text), ":/KelvarinMathParser/undefinedToken.png");
  EXPECT_EQ(pictureOf("There is no implicit conversion to type \"f\"; Undefined token"),
            ":/KelvarinMathParser/undefinedToken.png");
  EXPECT_EQ(pictureOf("There is no implicit conversion to type \"f\""),
            ":/KelvarinMathParser/errorCast.png");
  EXPECT_EQ(pictureOf("The expression evaluated to a Number and a String was expected"),
            ":/KelvarinMathParser/errorEvaluatedToNumber.png");
  EXPECT_EQ(pictureOf("The expression evaluated to a String and a Number was expected"),
            ":/KelvarinMathParser/errorEvaluatedToString.png");
  EXPECT_EQ(pictureOf("Unexpected operator"), QString());
  EXPECT_EQ(pictureOf(""), QString());
}

TEST(MathParserCheck, HasEveryPictureInBothResolutions) {
  const Interface_MathParserCheck dialog({});
  for (const char* name : {"undefinedToken", "errorCast", "errorEvaluatedToNumber",
                           "errorEvaluatedToString", "errorIcon", "errorExplanation"}) {
    const QString path = QStringLiteral(":/KelvarinMathParser/%1%2.png").arg(QString(name));
    const QImage single(path.arg(""));
    ASSERT_FALSE(single.isNull()) << name;
    EXPECT_EQ(QImage(path.arg("@2x")).size(), single.size() * 2) << name;
  }
}

TEST(MathParserCheck, AnEmptyMessageStillOpens) {
  Interface_MathParserCheck dialog({});
  dialog.show();
  EXPECT_EQ(dialog.windowTitle(), "Math Parser Error");
  EXPECT_FALSE(dialog.isModal());
  EXPECT_FALSE(dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
  EXPECT_EQ(dialog.findChild<QPushButton*>("pbGoThere"), nullptr);
  EXPECT_EQ(dialog.findChild<QPlainTextEdit*>("pteExpression"), nullptr);
  QTest::keyClick(&dialog, Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
}

TEST(MathParserCheck, LeadsToTheFaultAndToTheNamesThatMayBeMeant) {
  Interface_MathParserCheck dialog(unknownName());
  EXPECT_EQ(dialog.findChild<QPlainTextEdit*>("pteExpression")->toPlainText(),
            "price * discount\n        ^^^^^^^^");
  dialog.show();

  QSignalSpy goThere(&dialog, &Interface_MathParserCheck::goThere);
  QTest::keyClick(&dialog, Qt::Key_Return);
  ASSERT_EQ(goThere.size(), 1);
  EXPECT_EQ(goThere[0], (QVariantList{8, 8}));
  EXPECT_TRUE(dialog.isVisible());

  dialog.findChild<QPushButton*>("pbCopy")->click();
  EXPECT_TRUE(QApplication::clipboard()->text().contains("        ^^^^^^^^\n\nWrite it"));

  QSignalSpy chosen(&dialog, &Interface_MathParserCheck::nameChosen);
  auto* names = dialog.findChild<QLabel*>("lblNames");
  names->setFocus(Qt::TabFocusReason);
  QTest::keyClick(names, Qt::Key_Tab);
  QTest::keyClick(names, Qt::Key_Tab);
  QTest::keyClick(names, Qt::Key_Return);
  ASSERT_EQ(chosen.size(), 1);
  EXPECT_EQ(chosen[0][0].toString(), "a<b");
  EXPECT_FALSE(dialog.isVisible());
}

TEST(ExpressionReport, TakesTheNamesThatReplaceTheFault) {
  FormulaAnswer answer;
  answer.check = ExpressionCheck::failure({"Undefined token", 8, "discount"});
  answer.message = "Did you mean Discount?";
  answer.faultStart = 8;
  answer.faultSize = 8;
  answer.fixes = {{"Replace by 'Discount'", 8, 8, "Discount", ""},
                  {"Add the missing ')'", 16, 0, ")", ""},
                  {"Write a text", 8, 8, "\"discount\"", ""}};
  const ExpressionReport report = reportOf("price * discount", answer);
  EXPECT_EQ(report.text, "Undefined token\n  Error Token:discount\n  Error at position:8");
  EXPECT_EQ(report.nearestNames, QStringList{"Discount"});
  EXPECT_EQ(report.advice, "Did you mean Discount?");
  EXPECT_EQ(report.position, 8);
}

TEST(MathParserCheck, FitsTheScreenWithLargeFontsAndLongTexts) {
  const testing::LargeFonts large(2.0);
  ExpressionReport report = unknownName();
  report.text += QStringLiteral(" It goes on and on.").repeated(200);
  report.expression = QStringLiteral("price * discount").repeated(500);
  Interface_MathParserCheck dialog(report);
  dialog.show();
  const QSize screen = dialog.screen()->availableGeometry().size();
  EXPECT_LE(dialog.width(), screen.width());
  EXPECT_LE(dialog.height(), screen.height());
  const auto* show = dialog.findChild<QPushButton*>("pbGoThere");
  EXPECT_TRUE(dialog.rect().contains(QRect(show->mapTo(&dialog, QPoint()), show->size())));
}

TEST(MathParserCheck, CanBeUsedByEverybody) {
  const auto joined = [](const QStringList& faults) { return faults.join(u'\n').toStdString(); };
  for (const QString& language : {QStringLiteral("en"), QStringLiteral("de")}) {
    const Translation translation({language});
    const testing::LargeFonts large(2.0);
    Interface_MathParserCheck dialog(unknownName());
    dialog.show();
    EXPECT_EQ(joined(testing::controlsWithoutName(dialog)), "");
    EXPECT_EQ(joined(testing::controlsOutOfTabReach(dialog)), "");
    EXPECT_EQ(joined(testing::cutTexts(dialog)), "");
    EXPECT_EQ(joined(testing::keysWithTwoOwners(dialog)), "");
  }
}

}  // namespace
}  // namespace kelvarin
