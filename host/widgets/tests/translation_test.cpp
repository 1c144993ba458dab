// Texts in the language of the user, and in English where there are none.
#include <gtest/gtest.h>

#include <QCoreApplication>

#include "host/widgets/texts_of_qt.h"
#include "host/widgets/translation.h"

namespace kelvarin {
namespace {

QString searchLabel() {
  return QCoreApplication::translate("kelvarin::SearchField", "Search");
}

TEST(Translation, TakesTheFirstLanguageThatThereIs) {
  {
    const Translation german({"fr-FR", "de-AT", "en"});
    EXPECT_EQ(german.language(), "de");
    EXPECT_EQ(searchLabel(), "Suchen");
    EXPECT_EQ(QCoreApplication::translate("Help", "cube root of x"), "Kubikwurzel von x");
  }
  EXPECT_EQ(searchLabel(), "Search");
}

TEST(Translation, StaysEnglishForThoseWhoReadItFirst) {
  for (const QStringList& languages : {QStringList{"en-GB", "de"}, {"fr"}, {"C"}, {}}) {
    const Translation translation(languages);
    EXPECT_EQ(translation.language(), "en");
    EXPECT_EQ(searchLabel(), "Search");
  }
}

TEST(Translation, HasTheTextsOfQtThatWindowsShow) {
  const Translation german({"de"});
  for (const auto& [context, text] : kTextsOfQt) {
    const QString source = QString::fromLatin1(text).remove(u'&');
    const QString shown = QCoreApplication::translate(context, text).remove(u'&');
    EXPECT_TRUE(shown != source || source == u"OK") << context << ": " << text;
  }
}

}  // namespace
}  // namespace kelvarin
