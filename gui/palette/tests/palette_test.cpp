// The palette: what a search finds first, how groups are ordered, and adding by keys alone.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include "gui/document/action_type_mime.h"
#include "gui/palette/action_chooser.h"
#include "gui/palette/action_search.h"
#include "gui/palette/palette_model.h"
#include "gui/palette/quick_add.h"
#include "host/tables/table_actions.h"
#include "host/widget_testing/widget_walk.h"

namespace kelvarin {

namespace {

bool all(const CatalogueEntry&) {
  return true;
}

class PaletteTest : public ::testing::Test {
 protected:
  QStringList found(const QString& text) const {
    QStringList names;
    for (const CatalogueEntry* entry : searchActions(catalogue, text, all)) {
      names += entry->typeName;
    }
    return names;
  }

  ActionCatalogue catalogue{nullptr, makeTableActions()};
};

TEST_F(PaletteTest, NamesComeBeforeWordsInThemAndThoseBeforeKeywords) {
  EXPECT_EQ(found("read").mid(0, 3), (QStringList{"ReadCSV", "ReadParquet", "ReadArrow"}));
  EXPECT_EQ(found("csv").mid(0, 2), (QStringList{"ReadCSV", "WriteCSV"}));
  EXPECT_EQ(found("par").front(), "ReadParquet");
  EXPECT_EQ(found("export csv"), QStringList{"WriteCSV"});
  EXPECT_EQ(found("rcsv").front(), "ReadCSV");  // letters in this order
  EXPECT_TRUE(found("  ").isEmpty());
  EXPECT_TRUE(found("zzz").isEmpty());
}

TEST_F(PaletteTest, GroupsAreOrderedByTheirNumbersWhichAreNotShown) {
  QStringList names;
  QStringList inOutput;
  for (const ActionGroup& group : actionGroups(catalogue, all)) {
    names += group.name;
    for (const CatalogueEntry* entry : group.actions) {
      if (group.name == "Output") {
        inOutput += entry->typeName;
      }
    }
  }
  EXPECT_EQ(names, (QStringList{"Common", "Standard", "Output"}));
  EXPECT_EQ(inOutput, (QStringList{"WriteCSV", "WriteParquet", "WriteArrow"}));
}

TEST_F(PaletteTest, AFileIsReadByWhatItsNameEndsWith) {
  ASSERT_NE(readerOf(catalogue, "/data/a.b/Sales.CSV"), nullptr);
  EXPECT_EQ(readerOf(catalogue, "/data/a.b/Sales.CSV")->typeName, "ReadCSV");
  EXPECT_EQ(readerOf(catalogue, "x.feather")->typeName, "ReadArrow");
  EXPECT_EQ(readerOf(catalogue, "csv"), nullptr);
  EXPECT_EQ(readerOf(catalogue, "letter.docx"), nullptr);
  EXPECT_TRUE(readableFileTypes(catalogue).contains("parquet"));
}

TEST_F(PaletteTest, LettersAndEnterChooseTheBestMatch) {
  ActionChooser chooser(catalogue, all);
  QSignalSpy chosen(&chooser, &ActionChooser::chosen);
  chooser.show();
  auto* field = chooser.findChild<QLineEdit*>("searchActions");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_TRUE(chosen.isEmpty());  // nothing was searched for
  QTest::keyClicks(field, "writep");
  QTest::keyClick(field, Qt::Key_Return);
  ASSERT_EQ(chosen.size(), 1);
  EXPECT_EQ(chosen.front().front().toString(), "WriteParquet");

  // The arrows of the field move in the list; letters in the list go on in the field.
  field->setText("csv");
  QTest::keyClick(field, Qt::Key_Down);
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(chosen.back().front().toString(), "WriteCSV");
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_TRUE(field->text().isEmpty());
  QTest::keyClicks(chooser.findChild<QTreeView*>("actionTypes"), "d");
  EXPECT_EQ(field->text(), "d");
}

TEST_F(PaletteTest, ADraggedActionCarriesItsType) {
  PaletteModel model(catalogue, all);
  const std::unique_ptr<QMimeData> data(model.mimeData({model.firstAction()}));
  EXPECT_EQ(QString::fromUtf8(data->data(kActionTypeMime)), model.firstAction().data().toString());
  const QModelIndex group = model.index(0, 0);
  EXPECT_FALSE(model.flags(group).testFlag(Qt::ItemIsDragEnabled));
}

TEST_F(PaletteTest, QuickAddOffersWhatFitsAndEverythingHasAName) {
  const auto follows = [](const CatalogueEntry& entry) { return entry.pinsIn > 0; };
  auto* offer = new QuickAdd(catalogue, follows, nullptr);
  QSignalSpy chosen(offer, &QuickAdd::chosen);
  QSignalSpy gone(offer, &QObject::destroyed);
  offer->open({100, 100}, "r");
  EXPECT_TRUE(testing::controlsWithoutName(*offer).isEmpty());
  auto* field = offer->findChild<QLineEdit*>("searchActions");
  EXPECT_EQ(field->text(), "r");
  QTest::keyClicks(field, "ead");  // no reader has an input pin
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_TRUE(chosen.isEmpty());
  field->setText("disc");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(chosen.front().front().toString(), "Discard");
  QTRY_COMPARE(gone.size(), 1);
}

}  // namespace

}  // namespace kelvarin
