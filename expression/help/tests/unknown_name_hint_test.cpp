#include <gtest/gtest.h>

#include "expression/help/unknown_name_hint.h"

namespace kelvarin {
namespace {

QString undefined(const char* name) {
  return QStringLiteral("Undefined token \"%1\" found at position 0.").arg(QLatin1String(name));
}

QString hint(const QString& failure, const char* expression = "") {
  return unknownNameHint(failure, QString::fromUtf8(expression), {"total"}, {"total", "price"});
}

TEST(UnknownNameHint, tellsWhatANameMayHaveBeenMeantFor) {
  EXPECT_TRUE(hint(undefined("price")).contains("Add <InputVar column='price'/>"));
  EXPECT_TRUE(hint(undefined("totl")).contains("Did you mean total?"));
  EXPECT_TRUE(hint(undefined("zzzzzzzz")).contains("'kelvarin functions' lists"));
  EXPECT_TRUE(hint(undefined("_nowS")).contains("addNowS='1'"));
}

TEST(UnknownNameHint, findsTheFunctionBeforeTheBracketOfTheMessage) {
  const QString failure = QStringLiteral("Unexpected parenthesis \"(\" found at position 9.");
  EXPECT_TRUE(hint(failure, "1+COALESC(x,1)").contains("COALESC"));
  EXPECT_EQ(hint(QStringLiteral("Unexpected parenthesis \"(\" found at position 10."), "2*COALESCE(x,1)"),
            QStringLiteral("There is no 'COALESCE' in expressions; use nvl. For more than two values: "
                           "nvl(a, nvl(b, c))"));
  EXPECT_EQ(hint(failure, "1 + 2 *  (3"), QString());
}

TEST(UnknownNameHint, isSilentAboutOtherFailures) {
  EXPECT_EQ(hint(QStringLiteral("Missing parenthesis.")), QString());
  EXPECT_EQ(hint(undefined("floor")), QString());
}

}  // namespace
}  // namespace kelvarin
